#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

/// Array of cells that is allocated in chunks of 2^bits cells when they are first written to.
///
/// Ownership:  owns its chunks; a copy is deep.
/// Threads:    one thread at a time; any number may read while none writes.
/// Complexity: SetCell O(1) once the chunk is there.
/// Errors:     std::bad_alloc; the cells are then as they were.
/// Avoid for:  elements that are all written; a vector has no chunks to look up.
template <class T> class omi_BlockedArray
{
    static_assert(std::is_trivially_copyable_v<T>, "cells are made as zero bytes");

public:
    static constexpr unsigned int MAX_BITS = 31;

    /// Room for `initialSlots` chunks, which is also the number by which the room grows; 0: none at first, then by 128.
    omi_BlockedArray(unsigned int initialSlots, unsigned int bits) : omi_BlockedArray(initialSlots, bits, 0) {}
    omi_BlockedArray(const omi_BlockedArray& other)
        : m_step(other.m_step), m_bits(other.m_bits), m_chunkBytes(other.m_chunkBytes), m_chunks(other.m_chunks.size())
    {
        for (std::size_t k = 0; k < m_chunks.size(); ++k) {
            if (other.m_chunks[k] != nullptr) {
                m_chunks[k] = NewChunk();
                std::memcpy(m_chunks[k].get(), other.m_chunks[k].get(), m_chunkBytes);
            }
        }
    }
    omi_BlockedArray& operator=(const omi_BlockedArray& other)
    {
        omi_BlockedArray copy(other);
        std::swap(m_step, copy.m_step);
        std::swap(m_bits, copy.m_bits);
        std::swap(m_chunkBytes, copy.m_chunkBytes);
        m_chunks.swap(copy.m_chunks);
        return *this;
    }
    virtual ~omi_BlockedArray() = default;

    unsigned int SlotCount() const noexcept { return static_cast<unsigned int>(m_chunks.size()); }
    unsigned int ChunkSize() const noexcept { return 1U << m_bits; }
    /// The cells of chunk `k`, or null when none was ever written.
    const T* Chunk(unsigned int k) const noexcept { return k < m_chunks.size() ? m_chunks[k].get() : nullptr; }

    void SetCell(unsigned int index, const T& value)
    {
        const unsigned int k = index >> m_bits;
        MakeSlot(k);
        if (m_chunks[k] == nullptr) {
            m_chunks[k] = NewChunk();
        }
        m_chunks[k].get()[index & (ChunkSize() - 1)] = value;
    }

    /// Writes to standard output, for each chunk that is there, the indices it covers and the bytes of its cells.
    void DumpArray() const
    {
        for (unsigned int k = 0; k < m_chunks.size(); ++k) {
            if (m_chunks[k] != nullptr) {
                const unsigned int first = k << m_bits;
                std::printf("Block indices= %d - %d\n", static_cast<int>(first),
                            static_cast<int>(first + ChunkSize() - 1));
                DumpCells(m_chunks[k].get());
            }
        }
    }

protected:
    /// With `tailBytes` behind the cells of every chunk, zero at first, for a derived class.
    omi_BlockedArray(unsigned int initialSlots, unsigned int bits, std::size_t tailBytes)
        : m_step(initialSlots != 0 ? initialSlots : 128), m_bits(std::min(bits, MAX_BITS)),
          m_chunkBytes((std::size_t{1} << m_bits) * sizeof(T) + tailBytes), m_chunks(initialSlots)
    {}

    /// Frees all chunks; their slots stay.
    void Clear() noexcept
    {
        for (auto& chunk : m_chunks) {
            chunk.reset();
        }
    }
    /// Makes room for `slots` chunks; only grows.
    void Realloc(unsigned int slots)
    {
        if (slots > m_chunks.size()) {
            m_chunks.resize(slots);
        }
    }
    /// Makes the slot of chunk `k`, if need be with others in a step.
    void MakeSlot(unsigned int k)
    {
        if (k >= m_chunks.size()) {
            Realloc((k / m_step + 1) * m_step);
        }
    }
    T* ChunkCells(unsigned int k) noexcept { return m_chunks[k].get(); }
    unsigned int Bits() const noexcept { return m_bits; }

private:
    struct FreeChunk
    {
        void operator()(T* chunk) const noexcept { std::free(chunk); }
    };
    using ChunkOwner = std::unique_ptr<T, FreeChunk>;

    ChunkOwner NewChunk() const
    {
        void* const chunk = std::calloc(1, m_chunkBytes);
        if (chunk == nullptr) {
            throw std::bad_alloc();
        }
        return ChunkOwner(static_cast<T*>(chunk));
    }
    void DumpCells(const T* cells) const
    {
        constexpr unsigned int CELLS_PER_LINE = 8;
        for (unsigned int i = 0; i < ChunkSize(); ++i) {
            unsigned char bytes[sizeof(T)];
            std::memcpy(bytes, cells + i, sizeof(T));
            for (const unsigned char byte : bytes) {
                std::printf("%02x", byte);
            }
            std::printf("|%s", i % CELLS_PER_LINE == CELLS_PER_LINE - 1 ? "\n" : "");
        }
        std::printf("\n");
    }

    unsigned int m_step; // slots by which the room grows
    unsigned int m_bits;
    std::size_t m_chunkBytes;
    std::vector<ChunkOwner> m_chunks; // null: never written
};
