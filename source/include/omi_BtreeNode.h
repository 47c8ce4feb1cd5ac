#pragma once

#include "cow_String.h"

#include <algorithm>
#include <bit>
#include <concepts>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

namespace omi_detail
{
/// A key to look for, with its first 15 bytes as two numbers that order as the bytes do. A zero byte ends the text.
class TextProbe
{
public:
    explicit TextProbe(const cow_String& text) noexcept : m_text(text.AsCharPtr())
    {
        const cow_String::Rank rank = text.GetRank();
        m_high = UpToZero(rank.high);
        m_low = m_high == rank.high && LastByte(rank.high) != 0 ? UpToZero(rank.low & ~std::uint64_t{0xFF}) : 0;
    }

    std::uint64_t High() const noexcept { return m_high; }
    std::uint64_t Low() const noexcept { return m_low; }

    /// What std::strcmp says of texts that have the same first 15 bytes.
    int CompareRest(const cow_String& other) const noexcept
    {
        constexpr int COMPARED = 15;
        const bool isWhole = LastByte(m_low >> 8) == 0;
        return isWhole ? 0 : std::strcmp(m_text + COMPARED, other.AsCharPtr() + COMPARED);
    }

private:
    static constexpr unsigned char LastByte(std::uint64_t bytes) noexcept { return static_cast<unsigned char>(bytes); }
    /// The bytes before the first, most significant, zero byte; zeros from there on.
    static constexpr std::uint64_t UpToZero(std::uint64_t bytes) noexcept
    {
        constexpr std::uint64_t LOW_BITS = 0x7F7F7F7F7F7F7F7F;
        const std::uint64_t zeros = ~(((bytes & LOW_BITS) + LOW_BITS) | bytes | LOW_BITS);
        const int kept = std::countl_zero(zeros) / 8 * 8;
        return kept == 64 ? bytes : bytes & ~(~std::uint64_t{0} >> kept);
    }

    const char* m_text;
    std::uint64_t m_high;
    std::uint64_t m_low;
};
} // namespace omi_detail

/// A key, its value and the two subtrees of smaller and larger keys of an omi_Btree.
///
/// Ownership:  the tree frees its nodes, not a node its children.
/// Complexity: O(height), see omi_Btree; Balance O(1).
/// Avoid for:  use without a tree, except to walk over one.
template <class K, class V>
    requires std::same_as<K, cow_String>
class omi_BtreeNode
{
public:
    omi_BtreeNode(const K& key, const V& value) : omi_BtreeNode(omi_detail::TextProbe(key), key, value) {}
    omi_BtreeNode(const omi_BtreeNode&) = delete;
    omi_BtreeNode& operator=(const omi_BtreeNode&) = delete;

    const K& Key() const noexcept { return m_key; }
    const V& Value() const noexcept { return m_value; }
    omi_BtreeNode* Left() const noexcept { return m_children[LEFT]; }
    omi_BtreeNode* Right() const noexcept { return m_children[RIGHT]; }
    /// 0 without children, otherwise one more than the larger height noted of a child; a removal below may have left that
    /// too large.
    int Height() const noexcept
    {
        const int larger = std::max<int>(m_heights[LEFT], m_heights[RIGHT]);
        return larger == 0 && m_children[LEFT] == nullptr && m_children[RIGHT] == nullptr ? 0 : larger + 1;
    }

    /// The node of `key` in this subtree, or null.
    const omi_BtreeNode* Find(const K& key) const noexcept;
    /// Inserts below; false when the key is there.
    bool Insert(const K& key, const V& value) { return Insert(omi_detail::TextProbe(key), key, value); }
    /// Removes the key from this subtree, which hangs below `parent`; false when it is absent.
    bool Remove(const K& key, omi_BtreeNode* parent) { return Remove(omi_detail::TextProbe(key), key, parent); }
    /// Rotates once when the children's heights, 0 for an absent one, differ by 2 or more; the new root of the subtree,
    /// or null when nothing changed. A zig-zag gets the same single rotation, which is promised.
    omi_BtreeNode* Balance() noexcept
    {
        const int difference = m_heights[RIGHT] - m_heights[LEFT];
        return difference >= 2 ? Rotate(RIGHT) : difference <= -2 ? Rotate(LEFT) : nullptr;
    }

private:
    template <class Key, class Value>
        requires std::same_as<Key, cow_String>
    friend class omi_Btree;

    enum Side
    {
        LEFT,
        RIGHT
    };
    /// Frees a subtree that is not in a tree yet.
    struct Free
    {
        void operator()(omi_BtreeNode* node) const noexcept { FreeAll(node); }
    };
    using Owner = std::unique_ptr<omi_BtreeNode, Free>;

    omi_BtreeNode(const omi_detail::TextProbe& probe, const K& key, const V& value)
        : m_high(probe.High()), m_low(probe.Low()), m_value(value), m_key(key)
    {}

    /// Negative, 0, positive: the probe's key is smaller, equal, larger.
    int Compare(const omi_detail::TextProbe& probe) const noexcept
    {
        if (probe.High() != m_high) {
            return probe.High() < m_high ? -1 : 1;
        }
        if (probe.Low() != m_low) {
            return probe.Low() < m_low ? -1 : 1;
        }
        return probe.CompareRest(m_key);
    }
    bool Insert(const omi_detail::TextProbe& probe, const K& key, const V& value);
    bool Remove(const omi_detail::TextProbe& probe, const K& key, omi_BtreeNode* parent);
    void RemoveNode(omi_BtreeNode* child, omi_BtreeNode* replacement) noexcept;
    /// What takes this node's place when it is removed, with its children; null when there is nothing below.
    omi_BtreeNode* Replacement() noexcept;
    /// Takes the smallest node out of the subtree on the right, where it is not the top, and gives it.
    omi_BtreeNode* TakeSmallest() noexcept;

    void SetChild(Side side, omi_BtreeNode* child) noexcept
    {
        m_children[side] = child;
        m_heights[side] = static_cast<std::int16_t>(child != nullptr ? child->Height() : 0);
    }
    /// Balances the child and notes its height, after something changed below it.
    void Settle(Side side) noexcept
    {
        SetChild(side, m_children[side] != nullptr ? m_children[side]->Balanced() : nullptr);
    }
    static void Settle(omi_BtreeNode* subtree, omi_BtreeNode** path, const Side* sides, int depth) noexcept;
    omi_BtreeNode* Balanced() noexcept
    {
        omi_BtreeNode* const balanced = Balance();
        return balanced != nullptr ? balanced : this;
    }
    omi_BtreeNode* Rotate(Side up) noexcept;

    static Owner Copy(const omi_BtreeNode* node);
    static void FreeAll(omi_BtreeNode* node) noexcept;

    // What a walk down the tree reads comes first, so that it is mostly one cache line of each node.
    std::uint64_t m_high; // the key's first 15 bytes, see TextProbe: most comparisons end here
    std::uint64_t m_low;
    omi_BtreeNode* m_children[2] = {nullptr, nullptr};
    std::int16_t m_heights[2] = {0, 0}; // of the children, so that an insertion reads no node beside its path
    V m_value;
    K m_key;
};

template <class K, class V>
    requires std::same_as<K, cow_String>
const omi_BtreeNode<K, V>* omi_BtreeNode<K, V>::Find(const K& key) const noexcept
{
    const omi_detail::TextProbe probe(key);
    const omi_BtreeNode* node = this;
    while (node != nullptr) {
        const int order = node->Compare(probe);
        if (order == 0) {
            break;
        }
        node = node->m_children[order < 0 ? LEFT : RIGHT];
    }
    return node;
}

template <class K, class V>
    requires std::same_as<K, cow_String>
bool omi_BtreeNode<K, V>::Insert(const omi_detail::TextProbe& probe, const K& key, const V& value)
{
    constexpr int STEPS = 16; // of higher trees another call does the rest
    omi_BtreeNode* path[STEPS];
    Side sides[STEPS];
    int depth = 0;
    omi_BtreeNode* subtree = this;
    do {
        if (depth == STEPS) {
            if (!subtree->Insert(probe, key, value)) {
                return false;
            }
            subtree = subtree->Balanced();
            break;
        }
        __builtin_prefetch(subtree->m_children[LEFT]); // either, before the comparison tells which
        __builtin_prefetch(subtree->m_children[RIGHT]);
        const int order = subtree->Compare(probe);
        if (order == 0) {
            return false;
        }
        path[depth] = subtree;
        if (order < 0) { // no arithmetic: a wrongly guessed side costs less than waiting for the comparison
            sides[depth] = LEFT;
            subtree = subtree->m_children[LEFT];
        } else {
            sides[depth] = RIGHT;
            subtree = subtree->m_children[RIGHT];
        }
        ++depth;
    } while (subtree != nullptr);
    if (subtree == nullptr) {
        subtree = new omi_BtreeNode(probe, key, value);
    }
    Settle(subtree, path, sides, depth);
    return true;
}

/// Hangs the subtree, which is balanced, below the last node of the path, and so on up to the first node.
template <class K, class V>
    requires std::same_as<K, cow_String>
void omi_BtreeNode<K, V>::Settle(omi_BtreeNode* subtree, omi_BtreeNode** path, const Side* sides, int depth) noexcept
{
    for (int height = subtree->Height();;) {
        --depth;
        omi_BtreeNode* const node = path[depth];
        const int other = node->m_heights[1 - sides[depth]];
        node->m_children[sides[depth]] = subtree;
        node->m_heights[sides[depth]] = static_cast<std::int16_t>(height);
        if (depth == 0) {
            return;
        }
        if (std::abs(height - other) < 2) [[likely]] {
            subtree = node;
            height = std::max(height, other) + 1;
        } else {
            subtree = node->Balance();
            height = subtree->Height();
        }
    }
}

template <class K, class V>
    requires std::same_as<K, cow_String>
bool omi_BtreeNode<K, V>::Remove(const omi_detail::TextProbe& probe, const K& key, omi_BtreeNode* parent)
{
    const int order = Compare(probe);
    if (order == 0) {
        parent->RemoveNode(this, Replacement());
        return true;
    }
    const Side side = order < 0 ? LEFT : RIGHT;
    omi_BtreeNode* const child = m_children[side];
    if (child == nullptr || !child->Remove(probe, key, this)) {
        return false;
    }
    if (m_children[side] == child) {
        Settle(side);
    } else if (omi_BtreeNode* const replacement = m_children[side]) {
        if (omi_BtreeNode* const balanced = replacement->Balance()) {
            SetChild(side, balanced);
        }
    }
    return true;
}

// A removal recomputes few heights, and leaves those between the removed node's right child and the parent of its
// replacement as they were noted: promised, for the shape of the tree hangs on it, and it must stay.

template <class K, class V>
    requires std::same_as<K, cow_String>
omi_BtreeNode<K, V>* omi_BtreeNode<K, V>::Replacement() noexcept
{
    if (m_children[RIGHT] == nullptr || m_children[LEFT] == nullptr) {
        return m_children[m_children[RIGHT] == nullptr ? LEFT : RIGHT];
    }
    omi_BtreeNode* smallest = m_children[RIGHT];
    if (smallest->m_children[LEFT] != nullptr) {
        smallest = TakeSmallest();
        smallest->m_children[RIGHT] = m_children[RIGHT];
        smallest->m_heights[RIGHT] = m_heights[RIGHT];
    }
    smallest->m_children[LEFT] = m_children[LEFT];
    smallest->m_heights[LEFT] = m_heights[LEFT];
    return smallest;
}

template <class K, class V>
    requires std::same_as<K, cow_String>
omi_BtreeNode<K, V>* omi_BtreeNode<K, V>::TakeSmallest() noexcept
{
    omi_BtreeNode* above = this;
    Side side = RIGHT;
    omi_BtreeNode* parent = m_children[RIGHT];
    while (parent->m_children[LEFT]->m_children[LEFT] != nullptr) {
        above = std::exchange(parent, parent->m_children[LEFT]);
        side = LEFT;
    }
    omi_BtreeNode* const smallest = parent->m_children[LEFT];
    parent->m_children[LEFT] = smallest->m_children[RIGHT];
    parent->m_heights[LEFT] = smallest->m_heights[RIGHT];
    above->SetChild(side, parent);
    return smallest;
}

template <class K, class V>
    requires std::same_as<K, cow_String>
void omi_BtreeNode<K, V>::RemoveNode(omi_BtreeNode* child, omi_BtreeNode* replacement) noexcept
{
    const Side side = m_children[RIGHT] == child ? RIGHT : LEFT;
    if (child->m_children[LEFT] != nullptr && child->m_children[RIGHT] != nullptr) {
        SetChild(side, replacement);
    } else {
        m_children[side] = replacement;
        m_heights[side] = std::max(child->m_heights[LEFT], child->m_heights[RIGHT]); // that of an only child
    }
    delete child;
}

template <class K, class V>
    requires std::same_as<K, cow_String>
omi_BtreeNode<K, V>* omi_BtreeNode<K, V>::Rotate(Side up) noexcept
{
    const Side down = up == LEFT ? RIGHT : LEFT;
    omi_BtreeNode* const root = m_children[up];
    m_children[up] = root->m_children[down];
    m_heights[up] = root->m_heights[down];
    root->SetChild(down, this);
    return root;
}

template <class K, class V>
    requires std::same_as<K, cow_String>
typename omi_BtreeNode<K, V>::Owner omi_BtreeNode<K, V>::Copy(const omi_BtreeNode* node)
{
    if (node == nullptr) {
        return nullptr;
    }
    Owner copy(new omi_BtreeNode(node->m_key, node->m_value));
    for (const Side side : {LEFT, RIGHT}) {
        copy->m_children[side] = Copy(node->m_children[side]).release();
        copy->m_heights[side] = node->m_heights[side];
    }
    return copy;
}

template <class K, class V>
    requires std::same_as<K, cow_String>
void omi_BtreeNode<K, V>::FreeAll(omi_BtreeNode* node) noexcept
{
    // The left chain is turned into a right one, so that no stack is needed whatever the height.
    while (node != nullptr) {
        if (omi_BtreeNode* const left = node->m_children[LEFT]) {
            node->m_children[LEFT] = left->m_children[RIGHT];
            left->m_children[RIGHT] = node;
            node = left;
        } else {
            delete std::exchange(node, node->m_children[RIGHT]);
        }
    }
}
