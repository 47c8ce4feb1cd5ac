#pragma once

#include "omi_BlockedArray.h"
#include "omi_PackedChunk.h"

#include <bit>

/// The keys of one block of an omi_UintTable: a cell for each, and a bit that tells whether it is occupied. The bits
/// stand behind the cells of their chunk, so that looking at one costs no search. A chunk of 1024 cells is packed until
/// more than a few of them are occupied, or one is freed.
///
/// Ownership, threads, complexity, errors: see omi_BlockedArray.
template <class T> class omi_UintTableBlock : public omi_BlockedArray<T>
{
public:
    using Packed = typename omi_PackedChunk<T>::Place;

    static constexpr unsigned int WORD_BITS = 64;
    static constexpr std::uintptr_t PACKED = 1;

    omi_UintTableBlock(unsigned int initialSlots, unsigned int bits)
        : omi_BlockedArray<T>(initialSlots, bits, WordsOffset(bits) - CellBytes(bits) + WordCount(bits) * 8),
          m_wordsOffset(WordsOffset(this->Bits()))
    {}

    /// Number of occupied cells.
    unsigned int Population() const noexcept { return m_population; }

    /// As for an array without bits: the cell is then written, but no more occupied than before.
    void SetCell(unsigned int index, const T& value)
    {
        Unpack(index >> this->Bits());
        omi_BlockedArray<T>::SetCell(index, value);
    }
    /// The cell, or null when it is not occupied.
    const T* Find(unsigned int cell) const noexcept
    {
        const unsigned int k = cell >> this->Bits();
        const unsigned int i = cell & (this->ChunkSize() - 1);
        if (const Packed* const packed = PackedAt(k)) {
            return packed->Find(i);
        }
        const T* const chunk = this->Chunk(k);
        return chunk != nullptr && (Words(chunk)[i / WORD_BITS] >> i % WORD_BITS & 1) != 0 ? chunk + i : nullptr;
    }
    /// Sets the cell; true when it was not occupied.
    bool Insert(unsigned int cell, T value)
    {
        if (T* const present = const_cast<T*>(Find(cell))) {
            *present = value;
            return false;
        }
        const unsigned int k = cell >> this->Bits();
        m_used.resize(std::max(m_used.size(), k / WORD_BITS + std::size_t{1}));
        m_leftovers.resize(m_used.size());
        if (IsToBePacked(k)) {
            this->MakeSlot(k);
            m_packed.resize(this->SlotCount());
            m_packed[k].Insert(cell & (this->ChunkSize() - 1), value);
        } else {
            SetCell(cell, value);
            WordOf(cell) |= BitOf(cell);
        }
        m_used[k / WORD_BITS] |= std::uint64_t{1} << k % WORD_BITS;
        ++m_population;
        return true;
    }
    /// True when the cell was occupied. It keeps its value, for which a packed chunk gets all its cells.
    bool Remove(unsigned int cell)
    {
        if (Find(cell) == nullptr) {
            return false;
        }
        const unsigned int k = cell >> this->Bits();
        Unpack(k);
        WordOf(cell) &= ~BitOf(cell);
        m_leftovers[k / WORD_BITS] |= std::uint64_t{1} << k % WORD_BITS;
        --m_population;
        return true;
    }
    void Clear() noexcept
    {
        omi_BlockedArray<T>::Clear();
        m_packed.clear();
        m_used.clear();
        m_leftovers.clear();
        m_population = 0;
    }
    void DumpArray() const
    {
        omi_UintTableBlock unpacked(*this);
        for (unsigned int k = 0; k < m_packed.size(); ++k) {
            unpacked.Unpack(k);
        }
        unpacked.omi_BlockedArray<T>::DumpArray();
    }

    /// What leads to chunk `k` without the block: the address of its cells, of which those that are not all zero are
    /// occupied, others may be; that of a packed chunk and PACKED; or 0 for neither, as where cells keep what was removed.
    /// The chunk must be there.
    std::uintptr_t DirectionTo(unsigned int k) const noexcept
    {
        if (const Packed* const packed = PackedAt(k)) {
            return reinterpret_cast<std::uintptr_t>(packed) + PACKED;
        }
        const bool hasLeftovers = (m_leftovers[k / WORD_BITS] >> k % WORD_BITS & 1) != 0;
        return hasLeftovers ? 0 : reinterpret_cast<std::uintptr_t>(this->Chunk(k));
    }

    /// The cells, 64 or fewer in a smaller chunk, that share a word.
    struct Word
    {
        std::uint64_t bits = 0; // of the occupied ones
        const T* values = nullptr;
        bool isPacked = false; // values of the occupied cells only
    };
    /// The word that starts at `cell`.
    Word WordAt(unsigned int cell) const noexcept
    {
        const unsigned int k = cell >> this->Bits();
        const unsigned int i = cell & (this->ChunkSize() - 1);
        if (const Packed* const packed = PackedAt(k)) {
            return {packed->Bits(i), packed->ValuesFrom(i), true};
        }
        const T* const chunk = this->Chunk(k);
        return chunk != nullptr ? Word{Words(chunk)[i / WORD_BITS], chunk + i, false} : Word{};
    }
    /// How many cells behind those of the word at `cell` are occupied, as far as all of a word are, in the same chunk.
    unsigned int WholeWordsBehind(unsigned int cell) const noexcept
    {
        unsigned int length = 0;
        if (const T* const chunk = this->Chunk(cell >> this->Bits())) {
            const std::uint64_t* const words = Words(chunk);
            for (unsigned int i = (cell & (this->ChunkSize() - 1)) + WORD_BITS;
                 i < this->ChunkSize() && words[i / WORD_BITS] == ~std::uint64_t{0}; i += WORD_BITS) {
                length += WORD_BITS;
            }
        }
        return length;
    }
    /// The first word with an occupied cell at or behind `cell`, the start of a word, which it is moved to; an empty one
    /// when there is none.
    Word FindWord(std::uint64_t& cell) const noexcept
    {
        Word word;
        for (; cell < CellCount(); cell += CellsPerWord()) {
            if ((cell & (this->ChunkSize() - 1)) == 0) {
                cell = std::uint64_t{NextUsed(static_cast<unsigned int>(cell >> this->Bits()))} << this->Bits();
            }
            word = WordAt(static_cast<unsigned int>(cell));
            if (word.bits != 0) {
                break;
            }
        }
        return word;
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

    /// Null when the chunk is not there or not packed.
    const Packed* PackedAt(unsigned int k) const noexcept { return k < m_packed.size() ? m_packed[k].Get() : nullptr; }
    /// True when another cell of the chunk is to be occupied without making all of them.
    bool IsToBePacked(unsigned int k) const noexcept
    {
        const Packed* const packed = PackedAt(k);
        return packed != nullptr ? packed->Count() < omi_PackedChunk<T>::MOST
                                 : this->Bits() == omi_PackedChunk<T>::BITS && this->Chunk(k) == nullptr;
    }
    void Unpack(unsigned int k)
    {
        const Packed* const packed = PackedAt(k);
        if (packed == nullptr) {
            return;
        }
        for (unsigned int i = 0; i < this->ChunkSize(); ++i) {
            if (const T* const value = packed->Find(i)) {
                const unsigned int cell = (k << this->Bits()) + i;
                omi_BlockedArray<T>::SetCell(cell, *value); // only the first one may throw
                WordOf(cell) |= BitOf(cell);
            }
        }
        m_packed[k] = omi_PackedChunk<T>();
    }
    /// The first slot from `k` on in whose chunk a cell was occupied; SlotCount() when there is none.
    unsigned int NextUsed(unsigned int k) const noexcept
    {
        for (std::size_t w = k / WORD_BITS; w < m_used.size(); ++w) {
            const std::uint64_t bits =
                m_used[w] & (w == k / WORD_BITS ? ~std::uint64_t{0} << k % WORD_BITS : ~std::uint64_t{0});
            if (bits != 0) {
                return static_cast<unsigned int>(w * WORD_BITS) + static_cast<unsigned int>(std::countr_zero(bits));
            }
        }
        return this->SlotCount();
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
    std::vector<omi_PackedChunk<T>> m_packed; // by slot; empty where the chunk is not packed
    std::vector<std::uint64_t> m_used;        // a bit for each slot whose chunk ever had an occupied cell
    std::vector<std::uint64_t> m_leftovers;   // the same where cells that are not occupied may keep values
};
