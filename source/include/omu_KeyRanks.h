#pragma once

#include "VEXomu_export.h"

#include <cstdint>
#include <vector>

/// Tells a key's position among sorted keys in constant time: for each 64 numbers from the first key on, which of them
/// are keys, and how many keys stand before them. Costs a quarter of a byte for each key when few numbers are left out,
/// two bytes at one key in eight; keys that lie wider apart switch it off.
///
/// Ownership:  owns its blocks; the keys themselves are the caller's, who reports every change.
/// Threads:    one thread at a time; Find may run on many while nothing changes.
/// Complexity: Find O(1); Insert at the end amortised O(1), elsewhere O(blocks behind), as Remove.
/// Errors:     none: without memory it switches itself off.
class VEXOMU_API omu_KeyRanks
{
public:
    static constexpr std::uint32_t BLOCK_KEYS = 64;
    /// Fewest keys, on average, in the numbers of eight blocks.
    static constexpr std::size_t KEYS_FOR_BLOCK = BLOCK_KEYS / 8;

    bool IsOn() const noexcept { return !m_blocks.empty(); }

    /// True when `key` is there; sets `position` to the number of keys below it. Only while on, and for keys from the
    /// first to the last.
    bool Find(std::uint32_t key, std::uint32_t* position) const noexcept
    {
        const Block& block = m_blocks[(key - m_base) / BLOCK_KEYS];
        const std::uint64_t bit = BitOf(key);
        *position = block.before + Population(block.keys & (bit - 1));
        return (block.keys & bit) != 0;
    }

    /// Notes a key behind all others; false, and nothing done, unless it falls into the last block.
    bool Append(std::uint32_t key) noexcept
    {
        const bool fits = IsOn() && (key - m_base) / BLOCK_KEYS + 1 == m_blocks.size();
        if (fits) {
            m_blocks.back().keys |= BitOf(key);
            ++m_count;
        }
        return fits;
    }
    /// A key was added as one of `length` keys.
    void Insert(std::uint32_t key, std::size_t length) noexcept;
    /// A key was removed, `length` are left.
    void Remove(std::uint32_t key, std::size_t length) noexcept;
    void SwitchOff() noexcept;

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
            m_blocks.back().keys |= BitOf(entries[i].index_);
            ++m_count;
        }
    }

private:
    struct Block
    {
        std::uint64_t keys;   // bit i: number i of the block is a key
        std::uint32_t before; // keys in all blocks before this one
    };

    static constexpr std::uint64_t BitOf(std::uint32_t key) noexcept { return std::uint64_t{1} << key % BLOCK_KEYS; }
    /// Number of bits set; without a processor's instruction for it std::popcount is a call.
    static constexpr std::uint32_t Population(std::uint64_t bits) noexcept
    {
        bits -= (bits >> 1) & 0x5555555555555555;
        bits = (bits & 0x3333333333333333) + ((bits >> 2) & 0x3333333333333333);
        bits = (bits + (bits >> 4)) & 0x0F0F0F0F0F0F0F0F;
        return static_cast<std::uint32_t>((bits * 0x0101010101010101) >> 56);
    }

    /// Makes the blocks reach to `key`, one of `length` keys; switches off and gives false when they are too many.
    bool Cover(std::uint32_t key, std::size_t length) noexcept;

    std::vector<Block> m_blocks; // from that of m_base on, without holes; empty: off
    std::uint32_t m_base = 0;    // a multiple of BLOCK_KEYS
    std::uint32_t m_count = 0;   // keys in all blocks
};
