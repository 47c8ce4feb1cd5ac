#pragma once

#include "VEXCRT.h"
#include "omi_UintTable.h"

#include <cstdlib>
#include <iterator>

/// Walks over an omi_UintTable, both ways: in the order of the keys, or in that of a comparison.
///
/// Ownership:  refers to the table; any insertion or removal there invalidates it. Owns the sorted entries.
/// Threads:    one thread at a time.
/// Complexity: Next, Previous a few instructions within 64 keys, else O(empty cells / 64); First and Last O(blocks), in
///             sorted mode O(keys log keys).
/// Errors:     std::bad_alloc. Use before First or Last is an assertion: done, key 0, the zero value. Past the end it
///             stays done until First or Last.
/// Example:    for (it.First(); !it.IsDone(); it.Next()) { use(it.CurrentKey(), it.CurrentValue()); }
template <class T> class omi_UintTableIterator
{
public:
    /// What a comparison gets two pointers to pointers to, as std::qsort hands them over.
    struct Entry
    {
        unsigned int key;
        T value;
    };
    using Compare = int (*)(const void* left, const void* right);

    explicit omi_UintTableIterator(const omi_UintTable<T>& table) : m_table(&table) {}
    omi_UintTableIterator(const omi_UintTable<T>& table, Compare compare) : m_table(&table), m_compare(compare) {}
    // The sorted order points into the entries.
    omi_UintTableIterator(const omi_UintTableIterator&) = delete;
    omi_UintTableIterator& operator=(const omi_UintTableIterator&) = delete;

    bool IsDone() const
    {
        if (m_ahead == 0) {
            CheckStarted("currentIndex != -2", 154);
        }
        return m_ahead == 0;
    }
    unsigned int CurrentKey() const
    {
        if (m_ahead == 0) {
            CheckStarted("currentIndex > -2", 204);
            return 0;
        }
        return m_wordKey + CurrentBit();
    }
    const T& CurrentValue() const
    {
        if (m_ahead == 0) {
            CheckStarted("currentIndex > -2", 251);
            return m_noValue;
        }
        return m_cells[CurrentBit()];
    }

    void First();
    void Last();
    void Next()
    {
        m_ahead &= m_ahead - 1;
        if (m_ahead == 0) {
            NextElsewhere();
        }
    }
    void Previous();

private:
    using Block = omi_UintTableBlock<T>;

    static constexpr std::int64_t UNSTARTED = -2;

    void CheckStarted(const char* condition, int line) const
    {
        if (m_current == UNSTARTED) {
            VEXCRT::_assert(condition, "source/include/omi_UintTable", line);
        }
    }
    unsigned int CurrentBit() const noexcept { return static_cast<unsigned int>(std::countr_zero(m_ahead)); }
    void Finish() noexcept
    {
        m_isDone = true;
        m_ahead = 0;
    }
    /// Next when no occupied cell of the word is ahead.
    void NextElsewhere();
    void Sort();
    void MoveToEntry(std::int64_t index) noexcept;
    void NextBlock() noexcept;
    void PreviousBlock() noexcept;
    /// The block to walk over next; false when there is none at that index.
    bool EnterBlock(std::int64_t index) noexcept;
    /// The word that starts at `cell`; gives which of its cells are occupied.
    std::uint64_t EnterWord(unsigned int cell) noexcept
    {
        m_wordCell = cell;
        m_wordKey = (static_cast<unsigned int>(m_current) << m_table->m_shift) + cell;
        return m_block->Occupied(cell, &m_cells);
    }
    /// To the first occupied cell at or behind `cell`, the start of a word; false when there is none in the block.
    bool SearchUp(unsigned int cell) noexcept;
    /// To the last occupied cell in the words before `cell`, the start of a word; false when there is none.
    bool SearchDown(std::uint64_t cell) noexcept;

    const omi_UintTable<T>* m_table;
    Compare m_compare = nullptr;        // null: in the order of the keys
    std::int64_t m_current = UNSTARTED; // index of the block, or of the entry
    bool m_isDone = true;
    T m_noValue{};
    // Bit 0 stands for the cell, or the entry, at m_cells. The lowest bit set is the current one, the others are the
    // occupied cells of the word behind it; 0: there is no current one.
    std::uint64_t m_ahead = 0;
    unsigned int m_wordKey = 0; // the key of bit 0
    const T* m_cells = nullptr;
    // In the order of the keys.
    const Block* m_block = nullptr;
    unsigned int m_wordCell = 0; // the first cell of the word in the block
    // In the order of a comparison.
    std::vector<Entry> m_entries;
    std::vector<const Entry*> m_sorted;
};

template <class T> void omi_UintTableIterator<T>::First()
{
    m_isDone = false;
    if (m_compare != nullptr) {
        Sort();
        MoveToEntry(0);
        return;
    }
    m_current = -1;
    NextBlock();
}

template <class T> void omi_UintTableIterator<T>::Last()
{
    m_isDone = false;
    if (m_compare != nullptr) {
        Sort();
        MoveToEntry(std::ssize(m_sorted) - 1);
        return;
    }
    m_current = m_table->BlockSlots();
    PreviousBlock();
}

template <class T> void omi_UintTableIterator<T>::NextElsewhere()
{
    CheckStarted("currentIndex != -2", 236);
    if (m_isDone) {
        return;
    }
    if (m_compare != nullptr) {
        MoveToEntry(m_current + 1);
    } else if (!SearchUp(m_wordCell + m_block->CellsPerWord())) {
        NextBlock();
    }
}

template <class T> void omi_UintTableIterator<T>::Previous()
{
    if (m_isDone) {
        return;
    }
    if (m_compare != nullptr) {
        MoveToEntry(m_current - 1);
        return;
    }
    const std::uint64_t word = m_block->Occupied(m_wordCell, &m_cells);
    const std::uint64_t current = m_ahead & (~m_ahead + 1);
    if (const std::uint64_t below = word & (current - 1)) {
        m_ahead = word & ~(std::bit_floor(below) - 1);
    } else if (!SearchDown(m_wordCell)) {
        PreviousBlock();
    }
}

template <class T> void omi_UintTableIterator<T>::Sort()
{
    m_entries.clear();
    m_sorted.clear();
    m_entries.reserve(m_table->Count());
    m_sorted.reserve(m_table->Count());
    omi_UintTableIterator each(*m_table);
    for (each.First(); !each.IsDone(); each.Next()) {
        m_entries.push_back({each.CurrentKey(), each.CurrentValue()});
        m_sorted.push_back(&m_entries.back());
    }
    if (!m_sorted.empty()) {
        std::qsort(m_sorted.data(), m_sorted.size(), sizeof m_sorted[0], m_compare);
    }
}

template <class T> void omi_UintTableIterator<T>::MoveToEntry(std::int64_t index) noexcept
{
    m_current = std::max<std::int64_t>(index, -1);
    if (index < 0 || index >= std::ssize(m_sorted)) {
        return Finish();
    }
    const Entry& entry = *m_sorted[static_cast<std::size_t>(index)];
    m_wordKey = entry.key;
    m_cells = &entry.value;
    m_ahead = 1;
}

template <class T> void omi_UintTableIterator<T>::NextBlock() noexcept
{
    for (std::int64_t b = m_current + 1; b < m_table->BlockSlots(); ++b) {
        if (EnterBlock(b) && SearchUp(0)) {
            return;
        }
    }
    Finish();
}

template <class T> void omi_UintTableIterator<T>::PreviousBlock() noexcept
{
    for (std::int64_t b = m_current - 1; b >= 0; --b) {
        if (EnterBlock(b) && SearchDown(m_block->CellCount())) {
            return;
        }
    }
    Finish();
}

template <class T> bool omi_UintTableIterator<T>::EnterBlock(std::int64_t index) noexcept
{
    m_current = index;
    m_block = m_table->m_blocks[static_cast<std::size_t>(index)].get();
    return m_block != nullptr;
}

template <class T> bool omi_UintTableIterator<T>::SearchUp(unsigned int cell) noexcept
{
    m_ahead = EnterWord(cell);
    if (m_ahead == 0) {
        const std::uint64_t found = m_block->FindWord(cell);
        m_ahead = found < m_block->CellCount() ? EnterWord(static_cast<unsigned int>(found)) : 0;
    }
    return m_ahead != 0;
}

template <class T> bool omi_UintTableIterator<T>::SearchDown(std::uint64_t cell) noexcept
{
    m_ahead = 0;
    while (m_ahead == 0 && cell != 0) {
        cell -= m_block->CellsPerWord();
        m_ahead = std::bit_floor(EnterWord(static_cast<unsigned int>(cell)));
    }
    return m_ahead != 0;
}
