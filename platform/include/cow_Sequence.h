#pragma once

#include "cow_Block.h"
#include "cow_CloneCount.h"
#include "cow_Relocate.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

/// What cow_List, cow_1DArray and cow_1DArrayList have in common: items in one run of memory that copies share until
/// one side writes. Item types need a copy, and a move (or copy) that cannot throw.
///
/// Ownership:  owns its items; copies share them until one side writes. The empty sequence owns nothing.
/// Threads:    one thread at a time; distinct copies may live on distinct threads.
/// Complexity: copy and reading an item O(1); the first write to a shared sequence O(items), counted as a clone of
///             cow_Sequence<T>; Append amortised O(1); Insert and RemoveAt O(items behind).
/// Errors:     std::bad_alloc, std::length_error, what copying an item throws: the sequence is then as it was. Writing
///             at an index outside reports an assertion and changes nothing.
/// References: pointers, references and iterators die with the next write or the last holder.
template <class T> class cow_Sequence
{
public:
    using cow_Relocatable = cow_Sequence;
    using value_type = T;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;
    using reference = const T&;
    using const_reference = const T&;
    using iterator = const T*;
    using const_iterator = const T*;

    cow_Sequence() noexcept = default;
    cow_Sequence(std::initializer_list<T> items) : cow_Sequence(items.begin(), items.end()) {}
    // By way of an empty one: a sequence that exists is destroyed when copying an item throws.
    template <std::input_iterator It> cow_Sequence(It first, It last) : cow_Sequence()
    {
        if constexpr (std::forward_iterator<It>) {
            Reserve(static_cast<int>(std::distance(first, last)));
        }
        for (; first != last; ++first) {
            Append(*first);
        }
    }
    cow_Sequence(const cow_Sequence& other) noexcept : m_block(other.m_block)
    {
        if (m_block != nullptr) {
            m_block->holders.Raise();
        }
    }
    cow_Sequence(cow_Sequence&& other) noexcept : m_block(std::exchange(other.m_block, nullptr)) {}
    cow_Sequence& operator=(const cow_Sequence& other) noexcept
    {
        cow_Sequence(other).Swap(*this);
        return *this;
    }
    cow_Sequence& operator=(cow_Sequence&& other) noexcept
    {
        cow_Sequence(std::move(other)).Swap(*this);
        return *this;
    }
    ~cow_Sequence() { Drop(); }

    int Length() const noexcept { return m_block != nullptr ? m_block->length : 0; }
    std::size_t size() const noexcept { return static_cast<std::size_t>(Length()); }
    bool IsEmpty() const noexcept { return Length() == 0; }
    bool empty() const noexcept { return IsEmpty(); }

    const T* data() const noexcept { return ItemsOf(m_block); }
    const T* begin() const noexcept { return data(); }
    const T* end() const noexcept { return data() + Length(); }
    const T& operator[](int index) const
    {
        assert(index >= 0 && index < Length());
        return data()[index];
    }

    /// Position of the first item equal to `item`, or -1.
    int Find(const T& item) const
    {
        const T* const found = std::find(begin(), end(), item);
        return found != end() ? static_cast<int>(found - begin()) : -1;
    }
    bool IsMember(const T& item) const { return Find(item) >= 0; }

    /// True when both hold the same items in the same memory, or both hold none at all.
    bool SharesWith(const cow_Sequence& other) const noexcept { return m_block == other.m_block; }
    /// True when another holder has the same memory.
    bool IsShared() const noexcept { return m_block != nullptr && !m_block->holders.IsUnique(); }

    void Set(int index, T value)
    {
        if (cow_Block::IsInside(index, Length())) {
            std::swap(Write()[index], value);
        }
    }
    /// The item for writing.
    T& Get(int index)
    {
        assert(index >= 0 && index < Length());
        return Write()[index];
    }
    /// All items for writing; null when there are none.
    T* Write()
    {
        if (m_block == nullptr) {
            return nullptr;
        }
        Detach();
        return reinterpret_cast<T*>(m_block + 1);
    }
    /// The same, but null also when another holder has the same memory.
    T* WriteUnshared() noexcept { return IsUnshared() ? reinterpret_cast<T*>(m_block + 1) : nullptr; }

    void Append(T value)
    {
        MakeRoom(1);
        Construct(m_block->length, std::move(value));
    }
    /// Makes an item at the end, of what is no part of the sequence.
    template <class... Args> void Emplace(Args&&... args)
    {
        MakeRoom(1);
        ::new (static_cast<void*>(ItemsOf(m_block) + m_block->length)) T(std::forward<Args>(args)...);
        ++m_block->length;
    }
    /// Appends all of `items`, which may be this sequence; moves them when nobody else holds them.
    void AppendAll(cow_Sequence items)
    {
        if (items.IsEmpty()) {
            return;
        }
        MakeRoom(items.Length());
        T* const place = ItemsOf(m_block) + m_block->length;
        if (items.IsUnshared()) {
            cow_Relocate(ItemsOf(items.m_block), items.size(), place);
            m_block->length += std::exchange(items.m_block->length, 0);
        } else {
            std::uninitialized_copy(items.begin(), items.end(), place);
            m_block->length += items.Length();
        }
    }
    /// Inserts `value` before the item at `index`; an index of Length() appends.
    void Insert(int index, T value)
    {
        if (!cow_Block::IsInside(index, Length() + 1)) {
            return;
        }
        MakeRoom(1);
        T* const place = ItemsOf(m_block) + index;
        cow_Relocate(place, Behind(index), place + 1);
        Construct(index, std::move(value));
    }
    void RemoveAt(int index)
    {
        if (!cow_Block::IsInside(index, Length())) {
            return;
        }
        T* const place = Write() + index;
        place->~T();
        cow_Relocate(place + 1, Behind(index + 1), place);
        --m_block->length;
    }
    /// Removes the first item equal to `item`; false when there is none.
    bool RemoveFirst(const T& item)
    {
        const int index = Find(item);
        if (index >= 0) {
            RemoveAt(index);
        }
        return index >= 0;
    }

    /// Drops items from the end, or adds value-initialised ones.
    void Resize(int length)
    {
        if (length < Length()) {
            Truncate(std::max(length, 0));
        } else if (length > Length()) {
            const int more = length - Length();
            if (m_block == nullptr) {
                m_block = cow_Block::New(length, sizeof(T), 1); // most that are made with a length keep it
            } else {
                MakeRoom(more);
            }
            std::uninitialized_value_construct_n(ItemsOf(m_block) + m_block->length, more);
            m_block->length = length;
        }
    }
    /// Makes room for `length` items in all, so that appending up to there does not allocate.
    void Reserve(int length)
    {
        if (length > Length() && !(IsUnshared() && length <= m_block->capacity)) {
            Reallocate(length, Length());
        }
    }
    /// Makes room for `more` items behind the present ones, and some to spare: adding them then cannot throw.
    void MakeRoom(int more)
    {
        if (!IsUnshared() || more > m_block->capacity - m_block->length) {
            Reallocate(cow_Block::GrownCapacity(m_block, more, sizeof(T)), Length());
        }
    }
    /// Number of items there is room for without an allocation, unless the sequence is shared.
    int Capacity() const noexcept { return m_block != nullptr ? m_block->capacity : 0; }
    /// Drops all items; room that nobody shares is kept.
    void Clear() { Truncate(0); }

    /// Moves the items from `index` on, 0 to Length(), into a sequence of their own with as much room.
    cow_Sequence SplitOff(int index)
    {
        cow_Sequence tail;
        if (m_block != nullptr && cow_Block::IsInside(index, Length() + 1)) {
            Detach();
            tail.Reallocate(m_block->capacity, 0);
            tail.m_block->length = m_block->length - index;
            cow_Relocate(ItemsOf(m_block) + index, Behind(index), ItemsOf(tail.m_block));
            m_block->length = index;
        }
        return tail;
    }

protected:
    /// No items; room for `capacity`, growing by multiples of `step`.
    cow_Sequence(int capacity, int step) : m_block(cow_Block::New(capacity, sizeof(T), step)) {}

private:
    static T* ItemsOf(cow_Block* block) noexcept
    {
        return block != nullptr ? reinterpret_cast<T*>(block + 1) : nullptr;
    }
    bool IsUnshared() const noexcept { return m_block != nullptr && m_block->holders.IsUnique(); }
    /// Number of items from `index` on.
    std::size_t Behind(int index) const noexcept { return static_cast<std::size_t>(m_block->length - index); }

    void Drop() noexcept
    {
        if (m_block != nullptr && m_block->holders.Lower()) {
            Free();
        }
    }
    // Apart from Drop(), of which every destructor has a copy.
    [[gnu::noinline]] void Free() noexcept
    {
        std::destroy_n(ItemsOf(m_block), m_block->length);
        cow_Block::Free(m_block, sizeof(T));
    }
    void Swap(cow_Sequence& other) noexcept { std::swap(m_block, other.m_block); }

    /// Makes an item on the raw memory at `index`, as one more.
    void Construct(int index, T&& value) noexcept
    {
        ::new (static_cast<void*>(ItemsOf(m_block) + index)) T(std::move(value));
        ++m_block->length;
    }

    void Detach()
    {
        if (IsShared()) {
            Reallocate(m_block->length, m_block->length);
        }
    }

    void Truncate(int length)
    {
        if (IsUnshared()) {
            std::destroy(ItemsOf(m_block) + length, ItemsOf(m_block) + m_block->length);
            m_block->length = length;
        } else if (m_block != nullptr) {
            Reallocate(length, length);
        }
    }

    /// Puts the first `kept` items into an unshared block with room for `capacity` and drops the others.
    void Reallocate(int capacity, int kept)
    {
        static_assert(alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__, "blocks are aligned as operator new does");
        if (m_block == nullptr) {
            m_block = cow_Block::New(capacity, sizeof(T), 1);
            return;
        }
        cow_Sequence fresh;
        fresh.m_block = cow_Block::New(capacity, sizeof(T), m_block->step);
        if (IsUnshared()) {
            cow_Relocate(ItemsOf(m_block), static_cast<std::size_t>(kept), ItemsOf(fresh.m_block));
            // Items may be left when another holder, on another thread, let go since the caller looked.
            std::destroy(ItemsOf(m_block) + kept, ItemsOf(m_block) + m_block->length);
            m_block->length = 0;
        } else if (kept != 0) {
            cow_NoteClone<cow_Sequence<T>>();
            std::uninitialized_copy_n(data(), kept, ItemsOf(fresh.m_block));
        }
        fresh.m_block->length = kept;
        Swap(fresh);
    }

    // Invariant: null, or the block's first `length` items are alive. Written only while its holder count is 1.
    cow_Block* m_block = nullptr;
};

template <class T> bool operator==(const cow_Sequence<T>& left, const cow_Sequence<T>& right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end());
}
