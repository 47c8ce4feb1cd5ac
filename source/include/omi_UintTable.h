#pragma once

#include "omi_UintTableBlock.h"

/// Map from unsigned 32-bit keys to small values, for keys that come in clusters, such as class ids. The high bits of a
/// key tell its block, the low ones its cell there; cells are allocated in chunks, and in chunks of 1024 one by one as long
/// as few of them are occupied and none is freed.
///
/// Ownership:  owns its blocks, not what a pointer value points to; a copy is deep.
/// Threads:    one thread at a time; any number may read while none writes.
/// Complexity: Find O(1): two or three loads that depend on each other where the directory leads to the chunk, otherwise
///             six. The directory takes 8 bytes for a chunk's keys from 0 on, whether the chunk is there or not, up to 128
///             KiB and 8 bytes a key; of chunks with all their cells, those that keys were removed from are not in it.
///             Insert and Remove O(1), with up to 128 values moved. Removing the first key of a chunk may take memory.
/// Errors:     std::bad_alloc; the table is then as it was.
/// References: what Find gives dies with the next Insert or Remove.
/// Example:    omi_UintTable<const char*> names; names.Insert(id, "wing"); const char* const* name = names.Find(id);
/// Avoid for:  keys spread over the whole range; each then costs a chunk. A hash table is smaller.
template <class T> class omi_UintTable
{
public:
    using Block = omi_UintTableBlock<T>;

    /// As omi_UintTable(12, 10, 24): 4096 blocks, chunks of 1024 cells.
    omi_UintTable() : omi_UintTable(12, 10, 24) {}
    /// 2^highBits blocks of up to 2^chunkIndexBits chunks, whose slots come `chunkSlotStep` at a time; highBits is 1 to
    /// 31, and both together at most 32: what is outside is brought inside.
    omi_UintTable(unsigned int highBits, unsigned int chunkIndexBits, unsigned int chunkSlotStep)
        : m_blocks(INITIAL_SLOTS), m_shift(KEY_BITS - std::clamp(highBits, 1U, KEY_BITS - 1)),
          m_lowMask((1U << m_shift) - 1), m_chunkBits(m_shift - std::min(chunkIndexBits, m_shift)),
          m_chunkSlotStep(chunkSlotStep)
    {}
    omi_UintTable(const omi_UintTable& other)
        : m_blocks(other.m_blocks.size()), m_shift(other.m_shift), m_lowMask(other.m_lowMask),
          m_chunkBits(other.m_chunkBits), m_chunkSlotStep(other.m_chunkSlotStep), m_count(other.m_count),
          m_directory(other.m_directory.size()), m_hasDirectory(other.m_hasDirectory)
    {
        for (std::size_t b = 0; b < m_blocks.size(); ++b) {
            if (other.m_blocks[b] != nullptr) {
                m_blocks[b] = std::make_unique<Block>(*other.m_blocks[b]);
            }
        }
        for (std::size_t k = 0; k < m_directory.size(); ++k) {
            m_directory[k] = other.m_directory[k] != 0 ? DirectionTo(static_cast<unsigned int>(k << m_chunkBits)) : 0;
        }
    }
    omi_UintTable(omi_UintTable&&) noexcept = default;
    omi_UintTable& operator=(omi_UintTable other) noexcept
    {
        m_blocks.swap(other.m_blocks);
        std::swap(m_shift, other.m_shift);
        std::swap(m_lowMask, other.m_lowMask);
        std::swap(m_chunkBits, other.m_chunkBits);
        std::swap(m_chunkSlotStep, other.m_chunkSlotStep);
        std::swap(m_count, other.m_count);
        m_directory.swap(other.m_directory);
        std::swap(m_hasDirectory, other.m_hasDirectory);
        return *this;
    }
    /// A deep copy; the caller owns it.
    omi_UintTable* Copy() const { return new omi_UintTable(*this); }

    /// Number of keys.
    unsigned int Count() const noexcept { return m_count; }
    unsigned int BlockSlots() const noexcept { return static_cast<unsigned int>(m_blocks.size()); }
    /// The block that holds the key, or null when no key falls there.
    const Block* FindTableBlock(unsigned int key) const noexcept { return BlockOf(key); }
    /// The same, for writing. Count() does not follow, and there is no directory any more until the table is cleared.
    Block* FindTableBlock(unsigned int key) noexcept
    {
        m_hasDirectory = false;
        m_directory.clear();
        return BlockOf(key);
    }
    /// The value of `key`, or null.
    const T* Find(unsigned int key) const noexcept
    {
        const std::size_t k = key >> m_chunkBits;
        if (k < m_directory.size()) {
            const std::uintptr_t direction = m_directory[k];
            const unsigned int cell = key & ((1U << m_chunkBits) - 1);
            if ((direction & Block::PACKED) != 0) {
                return reinterpret_cast<const typename Block::Packed*>(direction - Block::PACKED)->Find(cell);
            }
            const T* const cells = reinterpret_cast<const T*>(direction);
            if (cells != nullptr && !IsZero(cells[cell])) [[likely]] {
                return cells + cell;
            }
        }
        const Block* const block = FindTableBlock(key);
        return block != nullptr ? block->Find(key & m_lowMask) : nullptr;
    }

    /// True when the key is new. The value is set all the same when it is not, which is promised.
    bool Insert(unsigned int key, const T& value)
    {
        const unsigned int b = key >> m_shift;
        if (b >= m_blocks.size()) {
            m_blocks.resize((b / SLOT_STEP + 1) * SLOT_STEP);
        }
        const std::size_t k = key >> m_chunkBits;
        if (k >= m_directory.size() && k < FREE_DIRECTORY + m_count && m_hasDirectory) {
            m_directory.resize(k + 1);
        }
        bool isNew = true;
        if (m_blocks[b] == nullptr) {
            auto block = std::make_unique<Block>(m_chunkSlotStep, m_chunkBits);
            block->Insert(key & m_lowMask, value);
            m_blocks[b] = std::move(block);
        } else {
            isNew = m_blocks[b]->Insert(key & m_lowMask, value);
        }
        if (k < m_directory.size()) {
            m_directory[k] = DirectionTo(key);
        }
        m_count += isNew;
        return isNew;
    }
    /// False when the key is absent.
    bool Remove(unsigned int key)
    {
        Block* const block = BlockOf(key);
        if (block == nullptr || !block->Remove(key & m_lowMask)) {
            return false;
        }
        const bool isEmpty = block->Population() == 0;
        const unsigned int slotBits = isEmpty ? m_shift - m_chunkBits : 0; // of all of the block's chunks, or of one
        const std::size_t first = key >> m_chunkBits >> slotBits << slotBits;
        for (std::size_t k = first; k < std::min(first + (std::size_t{1} << slotBits), m_directory.size()); ++k) {
            m_directory[k] = isEmpty ? 0 : DirectionTo(key);
        }
        if (isEmpty) {
            m_blocks[key >> m_shift].reset();
        }
        --m_count;
        return true;
    }
    /// Removes all keys; the slots of the blocks stay.
    void Clear() noexcept
    {
        for (auto& block : m_blocks) {
            block.reset();
        }
        m_directory.clear();
        m_hasDirectory = true;
        m_count = 0;
    }

private:
    template <class Value> friend class omi_UintTableIterator;

    static constexpr unsigned int KEY_BITS = 32;
    static constexpr unsigned int INITIAL_SLOTS = 2;
    static constexpr unsigned int SLOT_STEP = 64;
    static constexpr std::size_t FREE_DIRECTORY = 16384; // entries whatever the number of keys, one more for each

    static bool IsZero(const T& cell) noexcept
    {
        if constexpr (std::is_scalar_v<T>) {
            return cell == T{};
        } else {
            constexpr char ZERO[sizeof(T)]{};
            return std::memcmp(&cell, ZERO, sizeof(T)) == 0;
        }
    }
    Block* BlockOf(unsigned int key) const noexcept
    {
        const unsigned int b = key >> m_shift;
        return b < m_blocks.size() ? m_blocks[b].get() : nullptr;
    }
    /// To the chunk with a key whose block is there.
    std::uintptr_t DirectionTo(unsigned int key) const noexcept
    {
        return m_blocks[key >> m_shift]->DirectionTo((key & m_lowMask) >> m_chunkBits);
    }

    std::vector<std::unique_ptr<Block>> m_blocks; // null where no key falls; otherwise of at least one key
    unsigned int m_shift;                         // key >> m_shift is the block
    unsigned int m_lowMask;                       // key & m_lowMask is the cell there
    unsigned int m_chunkBits;
    unsigned int m_chunkSlotStep;
    unsigned int m_count = 0;
    // What leads to the chunk of each 2^m_chunkBits keys from 0 on, as far as it reaches. Invariant: where cells are led
    // to, those that are not all zero are occupied, so that their bits need not be looked at.
    std::vector<std::uintptr_t> m_directory;
    bool m_hasDirectory = true; // false while others may change blocks, of which it would not know
};
