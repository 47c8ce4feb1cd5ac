#pragma once

#include "VEXCRT.h"
#include "omu_Word.h"

#include <algorithm>
#include <cstdint>
#include <type_traits>
#include <vector>

/// The entries of an omu_Table and their search: the part of it that is inlined into its callers.
///
/// While most numbers between the first and the last key are keys the values stand "direct", in a cell for each of these
/// numbers: a look-up is then one subtraction and one load. The cell of a number that is no key holds a mark; a bit tells
/// the cells of keys that may hold the same as a value. Otherwise the values stand "packed", one beside the other.
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
        const T* const found = FindValue(key);
        if (found != nullptr) {
            *value = *found;
        }
        return found != nullptr;
    }
    bool Exists(unsigned int key) const { return FindValue(key) != nullptr; }
    /// Sets key and value of the entry at `pos`; false, and nothing set, when there is none.
    bool GetEntry(unsigned int pos, unsigned int& key, T& value) const noexcept
    {
        if (pos >= m_length) {
            return false;
        }
        key = m_keys[pos];
        value = ValueAt(pos);
        return true;
    }

protected:
    static constexpr unsigned int DEFAULT_SIZE = 16;
    static constexpr double DEFAULT_GROWTH = 2.0;
    static constexpr unsigned int WORD_BITS = 64;

    omu_SortedEntries(unsigned int size, double growth) noexcept : m_initialSize(size), m_growthFactor(growth) {}
    ~omu_SortedEntries() = default;

    /// An odd number, as no address of an object is, and large for a position.
    static T Mark() noexcept
    {
        constexpr std::uint32_t MARK = 0xB5297A4D;
        if constexpr (std::is_pointer_v<T>) {
            return reinterpret_cast<T>(std::uintptr_t{MARK});
        } else {
            return MARK;
        }
    }

    /// Adds an entry behind all others when that needs no memory; false, and nothing done, otherwise.
    bool Append(unsigned int key, T value) noexcept
    {
        // In variables, since for the compiler the value may be written over a count.
        const unsigned int offset = m_reach;
        const unsigned int pos = m_length;
        if (key - m_base != offset || offset >= m_cells || pos + 1 >= m_capacity || value == Mark()) [[unlikely]] {
            return AppendBehindGap(key, value);
        }
        m_values[offset] = value;
        m_keys[pos] = key;
        m_reach = offset + 1;
        m_length = pos + 1;
        return true;
    }
    bool IsDirect() const noexcept { return m_reach != 0; }
    /// True for the cell of a key that may hold the mark as its value.
    bool MayBeMark(unsigned int offset) const noexcept
    {
        const std::size_t word = offset / WORD_BITS;
        return word < m_mayBeMark.size() && (m_mayBeMark[word] >> offset % WORD_BITS & 1) != 0;
    }
    const T& ValueAt(unsigned int pos) const noexcept { return m_values[IsDirect() ? m_keys[pos] - m_base : pos]; }

    /// The value of `key`, or null. As FindEntry for key 0.
    const T* FindValue(unsigned int key) const
    {
        const unsigned int offset = key - m_base;
        if (offset < m_reach && m_values[offset] != Mark()) [[likely]] {
            return m_values + offset;
        }
        return FindValueSlowly(key);
    }

    unsigned int m_initialSize;
    double m_growthFactor;
    unsigned int m_capacity = 0; // of m_keys, where there is room for one more
    unsigned int m_length = 0;
    unsigned int* m_keys = nullptr; // strictly ascending; behind the values, in their block of memory
    // Direct: the cell of `key` is m_values[key - m_base]. Packed: the value of m_keys[pos] is m_values[pos].
    T* m_values = nullptr;
    unsigned int m_room = 0; // of m_values, with one more behind, the spare word; not less than m_capacity
    // All 0 and no bits while packed.
    unsigned int m_base = 0;                // the number of the first cell; no key is below it
    unsigned int m_reach = 0;               // cells up to that of the last key; what is behind them holds anything
    unsigned int m_cells = 0;               // cells that there is room for
    std::vector<std::uint64_t> m_mayBeMark; // a bit for each cell up to the last one set

private:
    /// Append when a few numbers behind the last key are left out.
    [[gnu::noinline]] bool AppendBehindGap(unsigned int key, T value) noexcept;
    [[gnu::noinline]] const T* FindValueSlowly(unsigned int key) const;
    /// FindEntry for first key <= key <= last key: brings `low` and `high`, which enclose the position, close to it.
    void NarrowByDistance(unsigned int key, unsigned int& low, unsigned int& high) const;
};

template <omu_Word T> bool omu_SortedEntries<T>::AppendBehindGap(unsigned int key, T value) noexcept
{
    constexpr unsigned int SMALL_GAP = 8; // a larger one may be too large for cells
    const unsigned int offset = key - m_base;
    const unsigned int gap = offset - m_reach; // large for a key that is not behind all others
    const bool fits = m_length + 1 < m_capacity && gap < SMALL_GAP && offset < m_cells && value != Mark();
    if (fits) {
        std::fill_n(m_values + m_reach, gap, Mark());
        m_values[offset] = value;
        m_keys[m_length++] = key;
        m_reach = offset + 1;
    }
    return fits;
}

template <omu_Word T> const T* omu_SortedEntries<T>::FindValueSlowly(unsigned int key) const
{
    if (IsDirect() && key != 0) {
        const unsigned int offset = key - m_base;
        return offset < m_reach && MayBeMark(offset) ? m_values + offset : nullptr;
    }
    unsigned int pos;
    return FindEntry(key, &pos) ? m_values + pos : nullptr;
}

template <omu_Word T> bool omu_SortedEntries<T>::FindEntry(unsigned int key, unsigned int* pos) const
{
    if (key == 0) {
        VEXCRT::_assert("Invalid key (0) for table", "source/include/omu_Table", __LINE__);
    }
    if (m_length == 0 || key < m_keys[0]) {
        *pos = 0;
        return false;
    }
    if (key > m_keys[m_length - 1]) {
        *pos = m_length;
        return false;
    }
    unsigned int low = 0;
    unsigned int high = m_length - 1;
    if (IsDirect()) { // no more numbers can be left out before the key than are left out at all
        const unsigned int offset = key - m_base;
        low = offset - std::min(offset, m_reach - m_length);
        high = std::min(offset, high);
    } else {
        NarrowByDistance(key, low, high);
    }
    *pos = static_cast<unsigned int>(std::lower_bound(m_keys + low, m_keys + high, key) - m_keys);
    if (m_keys[*pos] == key) {
        return true;
    }
    const unsigned int guess = std::min(key - m_keys[0], m_length - 1);
    if (m_keys[guess] < key) { // promised, but never so while the keys ascend
        if (guess != m_length - 1) {
            VEXCRT::_assert("guess == length-1", "source/include/omu_Table", __LINE__);
        }
        *pos = m_length - 1;
    }
    return false;
}

template <omu_Word T>
void omu_SortedEntries<T>::NarrowByDistance(unsigned int key, unsigned int& low, unsigned int& high) const
{
    // Keys spread evenly are met within a few interpolated probes; whatever they are, halving follows soon.
    constexpr int MAX_PROBES = 4;
    for (int probe = 0; probe < MAX_PROBES; ++probe) {
        const unsigned int lowKey = m_keys[low];
        const unsigned int highKey = m_keys[high];
        if (key <= lowKey || key >= highKey) {
            break;
        }
        const unsigned int middle =
            low + static_cast<unsigned int>(std::uint64_t{key - lowKey} * (high - low) / (highKey - lowKey));
        (m_keys[middle] < key ? low : high) = middle;
    }
}
