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
        if (m_left == 0) {
            CheckStarted("currentIndex != -2", 154);
        }
        return m_left == 0;
    }
    unsigned int CurrentKey() const
    {
        if (m_left == 0) {
            CheckStarted("currentIndex > -2", 204);
            return 0;
        }
        return m_endKey + static_cast<unsigned int>(m_left);
    }
    const T& CurrentValue() const
    {
        if (m_left == 0) {
            CheckStarted("currentIndex > -2", 251);
            return m_noValue;
        }
        return m_endValue[m_left];
    }

    void First();
    void Last();
    void Next()
    {
        if (m_left < -1) [[likely]] {
            ++m_left;
        } else {
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
    void Finish() noexcept
    {
        m_isDone = true;
        m_left = 0;
        m_ahead = 0;
    }
    /// Next at the end of a run.
    void NextElsewhere();
    void Sort();
    void MoveToEntry(std::int64_t index) noexcept;
    void NextBlock() noexcept;
    void PreviousBlock() noexcept;
    /// The block to walk over next; false when there is none at that index.
    bool EnterBlock(std::int64_t index) noexcept;
    /// To the cell of `bit` in the word that starts at `cell`, whose value that is.
    void EnterWord(unsigned int cell, const typename Block::Word& word, unsigned int bit, const T* value) noexcept;
    /// To the run that starts with `key` and `value`; `bits` are the occupied cells of the word from there on.
    void EnterRun(unsigned int key, const T* value, std::uint64_t bits) noexcept
    {
        const int length = std::countr_one(bits);
        m_left = -length;
        m_ahead = bits >> (length - 1) >> 1; // at most by 64
        m_endKey = key + static_cast<unsigned int>(length);
        m_endValue = value + length;
    }
    /// The start of the current word in its block.
    unsigned int WordCell() const noexcept
    {
        return CurrentKey() & m_table->m_lowMask & ~(m_block->CellsPerWord() - 1);
    }
    /// To the first occupied cell at or behind `cell`, the start of a word; false when there is none in the block.
    bool SearchUp(std::uint64_t cell) noexcept;
    /// To the last occupied cell in the words before `cell`, the start of a word; false when there is none.
    bool SearchDown(std::uint64_t cell) noexcept;

    const omi_UintTable<T>* m_table;
    Compare m_compare = nullptr;        // null: in the order of the keys
    std::int64_t m_current = UNSTARTED; // index of the block, or of the entry
    bool m_isDone = true;
    T m_noValue{};
    // A run of keys that follow each other, as their values do, from the current one to before the end.
    std::ptrdiff_t m_left = 0; // minus their number; 0: there is no current one
    unsigned int m_endKey = 0;
    const T* m_endValue = nullptr;
    // In the order of the keys.
    std::uint64_t m_ahead = 0; // occupied cells behind the run in the word where it ends
    bool m_isPacked = false;   // the values of the next run in the word follow at once
    const Block* m_block = nullptr;
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
    if (m_ahead != 0) {
        const int gap = std::countr_zero(m_ahead);
        return EnterRun(m_endKey + static_cast<unsigned int>(gap), m_endValue + (m_isPacked ? 0 : gap), m_ahead >> gap);
    }
    CheckStarted("currentIndex != -2", 236);
    if (m_isDone) {
        return;
    }
    if (m_compare != nullptr) {
        MoveToEntry(m_current + 1);
    } else if (!SearchUp(std::uint64_t{WordCell()} + m_block->CellsPerWord())) {
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
    const unsigned int cell = WordCell();
    const typename Block::Word word = m_block->WordAt(cell);
    const unsigned int bit = (CurrentKey() & m_table->m_lowMask) - cell;
    if (const std::uint64_t below = word.bits & ((std::uint64_t{1} << bit) - 1)) {
        const auto last = static_cast<unsigned int>(std::bit_width(below)) - 1;
        EnterWord(cell, word, last, m_block->Find(cell + last));
    } else if (!SearchDown(cell)) {
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
    EnterRun(entry.key, &entry.value, 1);
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

template <class T>
void omi_UintTableIterator<T>::EnterWord(unsigned int cell, const typename Block::Word& word, unsigned int bit,
                                         const T* value) noexcept
{
    m_isPacked = word.isPacked;
    EnterRun((static_cast<unsigned int>(m_current) << m_table->m_shift) + cell + bit, value, word.bits >> bit);
    if (bit - m_left == Block::WORD_BITS && !m_isPacked) {
        const unsigned int more = m_block->WholeWordsBehind(cell);
        m_left -= more;
        m_endKey += more;
        m_endValue += more;
    }
}

template <class T> bool omi_UintTableIterator<T>::SearchUp(std::uint64_t cell) noexcept
{
    const typename Block::Word word = m_block->FindWord(cell);
    if (word.bits != 0) {
        const auto first = static_cast<unsigned int>(std::countr_zero(word.bits));
        EnterWord(static_cast<unsigned int>(cell), word, first, word.values + (word.isPacked ? 0 : first));
    }
    return word.bits != 0;
}

template <class T> bool omi_UintTableIterator<T>::SearchDown(std::uint64_t cell) noexcept
{
    while (cell != 0) {
        cell -= m_block->CellsPerWord();
        const auto start = static_cast<unsigned int>(cell);
        if (const typename Block::Word word = m_block->WordAt(start); word.bits != 0) {
            const auto last = static_cast<unsigned int>(std::bit_width(word.bits)) - 1;
            EnterWord(start, word, last, m_block->Find(start + last));
            return true;
        }
    }
    return false;
}
