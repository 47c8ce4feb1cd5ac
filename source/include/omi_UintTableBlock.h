#pragma once

#include "omi_BlockedArray.h"

#include <bit>

/// The keys of one block of an omi_UintTable: a cell for each, and a bit that tells whether it is occupied. The bits
/// stand behind the cells of their chunk, so that looking at one costs no search.
///
/// Ownership, threads, complexity, errors: see omi_BlockedArray.
template <class T> class omi_UintTableBlock : public omi_BlockedArray<T>
{
public:
    static constexpr unsigned int NONE = 0xFFFFFFFF;
    static constexpr unsigned int WORD_BITS = 64;

    omi_UintTableBlock(unsigned int initialSlots, unsigned int bits)
        : omi_BlockedArray<T>(initialSlots, bits, WordsOffset(bits) - CellBytes(bits) + WordCount(bits) * 8),
          m_wordsOffset(WordsOffset(this->Bits()))
    {}

    /// True when a cell that is not occupied may keep the value that it had.
    bool HasLeftovers() const noexcept { return m_hasLeftovers; }
    /// Number of occupied cells.
    unsigned int Population() const noexcept { return m_population; }

    /// The cell, or null when it is not occupied.
    const T* Find(unsigned int cell) const noexcept
    {
        const T* const chunk = this->Chunk(cell >> this->Bits());
        if (chunk == nullptr) {
            return nullptr;
        }
        const unsigned int i = cell & (this->ChunkSize() - 1);
        return (Words(chunk)[i / WORD_BITS] >> (i % WORD_BITS) & 1) != 0 ? chunk + i : nullptr;
    }
    /// Sets the cell; true when it was not occupied.
    bool Insert(unsigned int cell, const T& value)
    {
        this->SetCell(cell, value);
        std::uint64_t& word = WordOf(cell);
        const std::uint64_t before = std::exchange(word, word | BitOf(cell));
        m_population += word != before;
        return word != before;
    }
    /// The cell keeps its value; true when it was occupied.
    bool Remove(unsigned int cell) noexcept
    {
        if (Find(cell) == nullptr) {
            return false;
        }
        m_hasLeftovers = true;
        WordOf(cell) &= ~BitOf(cell);
        --m_population;
        return true;
    }
    void Clear() noexcept
    {
        omi_BlockedArray<T>::Clear();
        m_population = 0;
        m_hasLeftovers = false;
    }

    /// The occupied cells among the 64 (fewer in a smaller chunk) that share a word with `cell`, as bits; `cells` is set
    /// to the first of these cells, or null.
    std::uint64_t Occupied(unsigned int cell, const T** cells) const noexcept
    {
        const T* const chunk = this->Chunk(cell >> this->Bits());
        const unsigned int i = (cell & (this->ChunkSize() - 1)) / WORD_BITS;
        *cells = chunk != nullptr ? chunk + std::size_t{i} * WORD_BITS : nullptr;
        return chunk != nullptr ? Words(chunk)[i] : 0;
    }
    /// The first cell of the first word with an occupied cell at or behind `cell`, the start of a word; CellCount() when
    /// there is none.
    std::uint64_t FindWord(unsigned int cell) const noexcept
    {
        const unsigned int slots = this->SlotCount();
        unsigned int i = (cell & (this->ChunkSize() - 1)) / WORD_BITS;
        for (unsigned int k = cell >> this->Bits(); k < slots; ++k, i = 0) {
            const T* const chunk = this->ChunkAt(k);
            if (chunk == nullptr) {
                continue;
            }
            for (; i < WordCount(this->Bits()); ++i) {
                if (Words(chunk)[i] != 0) {
                    return (std::uint64_t{k} << this->Bits()) + i * WORD_BITS;
                }
            }
        }
        return CellCount();
    }
    /// Cells that share a word.
    unsigned int CellsPerWord() const noexcept { return std::min(this->ChunkSize(), WORD_BITS); }
    /// Up to 2^32, and more where slots were made in steps beyond the block.
    std::uint64_t CellCount() const noexcept { return std::uint64_t{this->SlotCount()} << this->Bits(); }

private:
    static constexpr std::size_t CellBytes(unsigned int bits) noexcept { return (std::size_t{1} << bits) * sizeof(T); }
    static constexpr std::size_t WordsOffset(unsigned int bits) noexcept { return (CellBytes(bits) + 7) / 8 * 8; }
    static constexpr std::size_t WordCount(unsigned int bits) noexcept
    {
        return ((std::size_t{1} << bits) + WORD_BITS - 1) / WORD_BITS;
    }

    const std::uint64_t* Words(const T* chunk) const noexcept
    {
        return reinterpret_cast<const std::uint64_t*>(reinterpret_cast<const char*>(chunk) + m_wordsOffset);
    }
    std::uint64_t& WordOf(unsigned int cell) noexcept
    {
        const unsigned int i = cell & (this->ChunkSize() - 1);
        return const_cast<std::uint64_t&>(Words(this->ChunkCells(cell >> this->Bits()))[i / WORD_BITS]);
    }
    std::uint64_t BitOf(unsigned int cell) const noexcept
    {
        return std::uint64_t{1} << (cell & (this->ChunkSize() - 1)) % WORD_BITS;
    }

    std::size_t m_wordsOffset; // bytes from a chunk's start to its bits
    unsigned int m_population = 0;
    bool m_hasLeftovers = false;
};
