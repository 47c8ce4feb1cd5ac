#pragma once

#include "omi_BtreeNode.h"

/// Ordered map from texts to values: a binary search tree, balanced by height. Keys order as zero-terminated texts by
/// unsigned bytes.
///
/// Ownership:  owns its nodes; a copy is deep.
/// Threads:    one thread at a time; any number may read while none writes.
/// Complexity: Find, Insert, Remove O(height); copy and destruction O(keys). The rule of balance is looser than that of
///             an AVL tree and has no proven bound. Measured for up to a million keys inserted in ascending,
///             descending, inward, outward and random order, or each below the deepest leaf, the height stays below
///             1.4 log2(keys) + 1; ascending and descending keys end within 1 of log2(keys). Removals recompute few
///             heights, so that later insertions balance by heights that may be too large.
/// Errors:     std::bad_alloc, what copying a value throws: the tree is then as it was.
/// References: values stay where they are until their key is removed.
/// Example:    omi_Btree<cow_String, int> ages; ages.Insert("wing", 3); const int* age = ages.Find("wing");
/// Avoid for:  copies that are rarely written to; a cow_Map shares its entries.
template <class K, class V>
    requires std::same_as<K, cow_String>
class omi_Btree
{
public:
    using Node = omi_BtreeNode<K, V>;

    omi_Btree() : m_nullValue(GetNullValue()) {}
    omi_Btree(const omi_Btree& other)
        : m_root(Node::Copy(other.m_root).release()), m_count(other.m_count), m_nullValue(other.m_nullValue)
    {}
    omi_Btree& operator=(const omi_Btree& other)
    {
        omi_Btree copy(other);
        std::swap(m_root, copy.m_root);
        std::swap(m_count, copy.m_count);
        return *this;
    }
    ~omi_Btree() { Node::FreeAll(m_root); }
    /// A deep copy; the caller owns it.
    omi_Btree* Copy() const { return new omi_Btree(*this); }

    /// The value that stands for none; specialised for values that have no default.
    static V GetNullValue() { return V(); }

    int Count() const noexcept { return m_count; }
    /// Null when the tree is empty.
    const Node* Root() const noexcept { return m_root; }
    /// The value of `key`, or null.
    const V* Find(const K& key) const noexcept
    {
        const Node* const node = m_root != nullptr ? m_root->Find(key) : nullptr;
        return node != nullptr ? &node->Value() : nullptr;
    }

    /// False, and the value that is there stays, when the key is present.
    bool Insert(const K& key, const V& value)
    {
        if (m_root == nullptr) {
            m_root = new Node(key, value);
        } else if (!m_root->Insert(key, value)) {
            return false;
        }
        ++m_count;
        BalanceRoot();
        return true;
    }
    /// False when the key is absent.
    bool Remove(const K& key)
    {
        if (m_root == nullptr) {
            return false;
        }
        Node top(K(), m_nullValue); // the root hangs below a parent as every other node does
        top.m_children[Node::RIGHT] = m_root;
        const bool removed = m_root->Remove(key, &top);
        m_root = top.m_children[Node::RIGHT];
        if (removed) {
            --m_count;
            BalanceRoot();
        }
        return removed;
    }

private:
    void BalanceRoot() noexcept
    {
        Node* const balanced = m_root != nullptr ? m_root->Balance() : nullptr;
        m_root = balanced != nullptr ? balanced : m_root;
    }

    Node* m_root = nullptr;
    int m_count = 0;
    V m_nullValue;
};
