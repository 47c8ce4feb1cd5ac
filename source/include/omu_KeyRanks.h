#pragma once

#include "VEXomu_export.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// Tells where a key stands among sorted keys: for each 16 numbers from the first key on, how many numbers up to there are
/// no keys. Costs a quarter of a byte for each key when few numbers are left out, two bytes at one key in eight; keys that
/// lie wider apart switch it off.
///
/// Ownership:  owns its counts; the keys themselves are the caller's, who reports every change.
/// Threads:    one thread at a time; the guesses and Around may run on many while nothing changes.
/// Complexity: guesses and Around O(1); Insert at the end amortised O(1), elsewhere O(blocks behind), as Remove.
/// Errors:     none: without memory it switches itself off.
class VEXOMU_API omu_KeyRanks
{
public:
    static constexpr std::uint32_t BLOCK_KEYS = 16;
    /// Fewest keys, on average, in the numbers of eight blocks.
    static constexpr std::size_t KEYS_FOR_BLOCK = BLOCK_KEYS / 8;

    /// Where the keys of a block stand.
    struct Range
    {
        std::uint32_t begin;
        std::uint32_t end;
    };

    bool IsOn() const noexcept { return !m_leftOut.empty(); }

    /// A number that no key is below; it changes as keys are inserted. Keys are told by their offset from it.
    std::uint32_t Base() const noexcept { return static_cast<std::uint32_t>(m_base); }

    // Only while on, and for offsets up to that of the last key:

    /// Where a key would stand were the numbers that its block leaves out the lowest there: right, or one too small, where
    /// it leaves out one. Up to BLOCK_KEYS too small, and then perhaps below 0.
    std::ptrdiff_t LowGuess(std::uint32_t offset) const noexcept
    {
        const std::int64_t leftOut = m_leftOut[std::size_t{offset} / BLOCK_KEYS + 1];
        return static_cast<std::ptrdiff_t>(offset - leftOut); // the number of a place, or little below 0
    }
    /// Where the keys of a key's block stand.
    Range Around(std::uint32_t offset) const noexcept
    {
        const std::uint32_t block = offset / BLOCK_KEYS;
        return {block * BLOCK_KEYS - m_leftOut[block], (block + 1) * BLOCK_KEYS - m_leftOut[block + 1]};
    }
    /// Where a key would stand were the keys of its block, given by Around, evenly spread.
    static std::uint32_t EvenGuess(std::uint32_t offset, Range range) noexcept
    {
        return range.begin + (range.end - range.begin) * (offset % BLOCK_KEYS) / BLOCK_KEYS;
    }

    /// Notes a key behind all others, as one of `length`; false, and nothing done, unless it falls into the last block or
    /// the next one.
    bool Append(std::uint32_t key, std::size_t length) noexcept
    {
        const auto left = static_cast<std::uint64_t>(m_lastCovered - key);
        if (left >= BLOCK_KEYS && !StartBlock(key, length)) {
            return false;
        }
        --m_leftOut.back();
        return true;
    }
    /// A key was added as one of `length` keys.
    void Insert(std::uint32_t key, std::size_t length) noexcept;
    /// A key was removed, `length` are left.
    void Remove(std::uint32_t key, std::size_t length) noexcept;
    void SwitchOff() noexcept
    {
        m_leftOut.clear();
        m_lastCovered = -1;
    }

    /// Starts again with the keys of all entries, which stays off unless they ascend and lie close enough.
    template <class Entry> void Build(const Entry* entries, std::size_t count)
    {
        SwitchOff();
        for (std::size_t i = 0; i < count; ++i) {
            if (i > 0 && entries[i].index_ <= entries[i - 1].index_) {
                return SwitchOff();
            }
            if (!Cover(entries[i].index_, count)) {
                return;
            }
            --m_leftOut.back();
        }
    }

private:
    std::size_t BlockOf(std::uint32_t key) const noexcept
    {
        return static_cast<std::size_t>((key - m_base) / BLOCK_KEYS);
    }
    /// One more block, in which `key` must fall; false, and nothing done, when they are too many for `length` keys.
    bool StartBlock(std::uint32_t key, std::size_t length) noexcept;
    static constexpr std::size_t MostBlocks(std::size_t length) noexcept { return length / KEYS_FOR_BLOCK + 8; }
    /// Makes the blocks reach to `key`, one of `length` keys; switches off and gives false when they are too many.
    bool Cover(std::uint32_t key, std::size_t length) noexcept;

    // Numbers that are no keys, from m_base on, up to the start of each block and to the end of the last; empty: off.
    std::vector<std::uint32_t> m_leftOut;
    std::int64_t m_base = 0;         // no key is below it; perhaps negative
    std::int64_t m_lastCovered = -1; // the last number of the last block; -1: off
};
