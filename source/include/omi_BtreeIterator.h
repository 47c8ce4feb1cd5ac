#pragma once

#include "omi_Btree.h"

#include <vector>

/// Walks over an omi_Btree in the order of its keys, both ways. Done until First or Last.
///
/// Ownership:  refers to the tree; any insertion or removal there invalidates it.
/// Threads:    one thread at a time.
/// Complexity: First, Last O(height); Next, Previous amortised O(1).
/// Errors:     std::bad_alloc. Past the end Next and Previous do nothing; Key and Value must not be called.
/// Example:    for (it.First(); !it.IsDone(); it.Next()) { use(it.Key(), it.Value()); }
template <class K, class V> class omi_BtreeIterator
{
public:
    using Node = omi_BtreeNode<K, V>;

    explicit omi_BtreeIterator(const omi_Btree<K, V>& tree) : m_tree(&tree) {}

    bool IsDone() const noexcept { return m_path.empty(); }
    const K& Key() const noexcept { return m_path.back()->Key(); }
    const V& Value() const noexcept { return m_path.back()->Value(); }

    void First()
    {
        m_path.clear();
        Push<&Node::Left>(m_tree->Root());
    }
    void Last()
    {
        m_path.clear();
        Push<&Node::Right>(m_tree->Root());
    }
    void Next() { Advance<&Node::Right, &Node::Left>(); }
    void Previous() { Advance<&Node::Left, &Node::Right>(); }

private:
    using Child = Node* (Node::*)() const noexcept;

    /// Pushes the node and the chain of its children on one side.
    template <Child side> void Push(const Node* node)
    {
        for (; node != nullptr; node = (node->*side)()) {
            m_path.push_back(node);
        }
    }
    /// To the outermost node of the subtree ahead, or up to the first node that has this one behind it.
    template <Child ahead, Child behind> void Advance()
    {
        if (m_path.empty()) {
            return;
        }
        if (const Node* const subtree = (m_path.back()->*ahead)()) {
            Push<behind>(subtree);
            return;
        }
        const Node* left;
        do {
            left = m_path.back();
            m_path.pop_back();
        } while (!m_path.empty() && (m_path.back()->*ahead)() == left);
    }

    const omi_Btree<K, V>* m_tree;
    std::vector<const Node*> m_path; // from the root to the current node; empty: done
};
