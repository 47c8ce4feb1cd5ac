#pragma once

#include "thr_RefCount.h"
#include "utl_BlockPool.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

/// Shared holder: all copies mean one object, which goes with the last of them.
///
/// Ownership:  owns a share of the object; object and count are one allocation.
/// Threads:    the count may be used from several threads; the object is as safe as its type.
/// Complexity: all O(1).
/// Errors:     Make: std::bad_alloc and what T's constructor throws.
/// Avoid for:  values; cow_COW shares until one side writes.
template <class T> class cow_CountedHld
{
public:
    using cow_Relocatable = cow_CountedHld;

    cow_CountedHld() noexcept = default;
    template <class... Args> static cow_CountedHld Make(Args&&... args)
    {
        static_assert(alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);
        void* const memory = utl_BlockPool::Allocate(sizeof(Node));
        try {
            return cow_CountedHld(::new (memory) Node(std::forward<Args>(args)...));
        } catch (...) {
            utl_BlockPool::Free(memory, sizeof(Node));
            throw;
        }
    }
    cow_CountedHld(const cow_CountedHld& other) noexcept : m_node(other.m_node)
    {
        if (m_node != nullptr) {
            m_node->holders.Raise();
        }
    }
    cow_CountedHld(cow_CountedHld&& other) noexcept : m_node(std::exchange(other.m_node, nullptr)) {}
    cow_CountedHld& operator=(cow_CountedHld other) noexcept
    {
        std::swap(m_node, other.m_node);
        return *this;
    }
    ~cow_CountedHld()
    {
        if (m_node != nullptr && m_node->holders.Lower()) {
            m_node->~Node();
            utl_BlockPool::Free(m_node, sizeof(Node));
        }
    }

    bool IsNull() const noexcept { return m_node == nullptr; }
    explicit operator bool() const noexcept { return m_node != nullptr; }

    T* get() const noexcept { return m_node != nullptr ? &m_node->object : nullptr; }
    T* operator->() const noexcept { return get(); }
    T& operator*() const noexcept { return m_node->object; }

    /// Number of holders of the object; 0 for none. Other threads may change it at any time.
    std::uint32_t UseCount() const noexcept { return m_node != nullptr ? m_node->holders.Get() : 0; }
    /// True when this is the only holder; what former holders did to the object is then seen.
    bool IsUnique() const noexcept { return m_node != nullptr && m_node->holders.IsUnique(); }

    /// Equal when both mean the same object.
    friend bool operator==(const cow_CountedHld& left, const cow_CountedHld& right) noexcept = default;

private:
    struct Node
    {
        template <class... Args> explicit Node(Args&&... args) : object(std::forward<Args>(args)...) {}

        thr_RefCount holders{1};
        T object;
    };

    explicit cow_CountedHld(Node* node) noexcept : m_node(node) {}

    Node* m_node = nullptr;
};
