#pragma once

#include "VEXCRT.h"
#include "omu_KeyRanks.h"
#include "omu_Word.h"

#include <algorithm>
#include <cstdint>

/// The entries of an omu_Table and their search: the part of it that is inlined into its callers.
template <omu_Word T> class omu_SortedEntries
{
public:
    struct Entry
    {
        unsigned int index_; // the key
        T value;
    };

    omu_SortedEntries(const omu_SortedEntries&) = delete;
    omu_SortedEntries& operator=(const omu_SortedEntries&) = delete;

    unsigned int Length() const noexcept { return m_length; }
    unsigned int Capacity() const noexcept { return m_capacity; }
    double GrowthFactor() const noexcept { return m_growthFactor; }

    /// True when `key` is there; sets `pos` to its position, or else to the one at which it would be inserted. Key 0 is
    /// an assertion; it is never there.
    bool FindEntry(unsigned int key, unsigned int* pos) const;

    bool Get(unsigned int key, T* value) const
    {
        const Entry* const found = FindKey(key);
        if (found != nullptr) {
            *value = found->value;
        }
        return found != nullptr;
    }
    bool Exists(unsigned int key) const { return FindKey(key) != nullptr; }
    /// Sets key and value of the entry at `pos`; false, and nothing set, when there is none.
    bool GetEntry(unsigned int pos, unsigned int& key, T& value) const noexcept
    {
        if (pos >= m_length) {
            return false;
        }
        key = m_entries[pos].index_;
        value = m_entries[pos].value;
        return true;
    }

protected:
    static constexpr unsigned int DEFAULT_SIZE = 16;
    static constexpr double DEFAULT_GROWTH = 2.0;
    static constexpr unsigned int FRONT = omu_KeyRanks::BLOCK_KEYS;

    omu_SortedEntries(unsigned int size, double growth) noexcept : m_initialSize(size), m_growthFactor(growth) {}
    ~omu_SortedEntries() = default;

    /// Adds an entry behind all others when that needs no memory; false, and nothing done, otherwise.
    bool Append(unsigned int key, T value) noexcept
    {
        const bool fits =
            m_length != 0 && m_length + 1 < m_capacity && key > Last().index_ && m_ranks.Append(key, m_length + 1);
        if (fits) {
            m_entries[m_length++] = {key, value};
            m_reach = key - m_base + 1;
            m_runLength += m_reach == m_length;
        }
        return fits;
    }
    const Entry& Last() const noexcept { return m_entries[m_length - 1]; }
    /// The entry of `key`, or null: a handful of steps while the ranks are on. As FindEntry for key 0.
    const Entry* FindKey(unsigned int key) const
    {
        const unsigned int offset = key - m_base;
        if (offset < m_runLength) {
            return m_entries + offset;
        }
        if (offset < m_reach) {
            const Entry* guess = m_entries + m_ranks.LowGuess(offset);
            guess += guess->index_ < key; // no branch: nothing foretells where the gaps are
            if (guess->index_ == key) [[likely]] {
                return guess;
            }
        } else if (m_ranks.IsOn() && key != 0) {
            return nullptr;
        }
        unsigned int pos;
        return FindEntry(key, &pos) ? m_entries + pos : nullptr;
    }
    /// The position of the first entry from `low` on whose key is not less, or `high`.
    unsigned int LowerBound(unsigned int low, unsigned int high, unsigned int key) const
    {
        const Entry* const found =
            std::lower_bound(m_entries + low, m_entries + high, key,
                             [](const Entry& entry, unsigned int wanted) { return entry.index_ < wanted; });
        return static_cast<unsigned int>(found - m_entries);
    }
    /// To be called after every change.
    void NoteReach() noexcept
    {
        m_base = m_ranks.Base();
        m_reach = m_length != 0 && m_ranks.IsOn() ? Last().index_ - m_base + 1 : 0;
        m_runLength = m_reach == m_length ? m_length : 0;
    }
    /// FindEntry for first key <= key <= last key when the ranks are off.
    bool FindSparse(unsigned int key, unsigned int* pos) const;

    unsigned int m_initialSize;
    double m_growthFactor;
    unsigned int m_capacity = 0;
    unsigned int m_length = 0;
    // Invariant: sorted by strictly ascending key; one entry more than the capacity is allocated, so that
    // m_entries[m_length] can always be written to, and FRONT entries with key 0 before them, where low guesses end.
    Entry* m_entries = nullptr;
    omu_KeyRanks m_ranks; // of the entries' keys, or off
    // What a look-up needs of them while the ranks are on.
    unsigned int m_base = 0;      // no key is below it
    unsigned int m_reach = 0;     // numbers from there to the last key; 0 while the ranks are off
    unsigned int m_runLength = 0; // so many keys, at least, are in sequence from there on
};

template <omu_Word T> bool omu_SortedEntries<T>::FindEntry(unsigned int key, unsigned int* pos) const
{
    if (key == 0) {
        VEXCRT::_assert("Invalid key (0) for table", "source/include/omu_Table", __LINE__);
    }
    if (m_length == 0 || key < m_entries[0].index_) {
        *pos = 0;
        return false;
    }
    if (key > m_entries[m_length - 1].index_) {
        *pos = m_length;
        return false;
    }
    if (!m_ranks.IsOn()) {
        return FindSparse(key, pos);
    }
    const unsigned int offset = key - m_base;
    const omu_KeyRanks::Range range = m_ranks.Around(offset);
    const unsigned int guess = omu_KeyRanks::EvenGuess(offset, range);
    *pos = m_entries[guess].index_ == key ? guess : LowerBound(range.begin, range.end, key);
    return m_entries[*pos].index_ == key;
}

template <omu_Word T> bool omu_SortedEntries<T>::FindSparse(unsigned int key, unsigned int* pos) const
{
    // Keys spread evenly are met within a few interpolated probes; whatever they are, halving follows soon.
    constexpr int MAX_PROBES = 4;
    unsigned int low = 0;
    unsigned int high = m_length - 1;
    for (int probe = 0; probe < MAX_PROBES; ++probe) {
        const unsigned int lowKey = m_entries[low].index_;
        const unsigned int highKey = m_entries[high].index_;
        if (key <= lowKey || key >= highKey) {
            break;
        }
        const unsigned int middle =
            low + static_cast<unsigned int>(std::uint64_t{key - lowKey} * (high - low) / (highKey - lowKey));
        (m_entries[middle].index_ < key ? low : high) = middle;
    }
    *pos = LowerBound(low, high, key);
    if (m_entries[*pos].index_ == key) {
        return true;
    }
    const unsigned int guess = std::min(key - m_entries[0].index_, m_length - 1);
    if (m_entries[guess].index_ < key) { // promised, but never so while the keys ascend
        if (guess != m_length - 1) {
            VEXCRT::_assert("guess == length-1", "source/include/omu_Table", __LINE__);
        }
        *pos = m_length - 1;
    }
    return false;
}
