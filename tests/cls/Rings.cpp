#include "VEXCRT.h"
#include "cls_HistoryEntry.h"
#include "cls_PC.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
struct Entry : cls_HistoryEntry
{
    using cls_HistoryEntry::Link;
    using cls_HistoryEntry::UnLink;
};

template <class Node> std::vector<const Node*> Ring(const Node& head)
{
    std::vector<const Node*> nodes;
    for (const auto* node = head.Next(); node != &head; node = node->Next()) {
        nodes.push_back(static_cast<const Node*>(node));
    }
    return nodes;
}

TEST(HistoryEntry, Links_before_another_and_leaves_its_neighbours_joined)
{
    Entry head, a, b, c;
    a.Link(&head);
    c.Link(&head);
    b.Link(&c);
    EXPECT_EQ(Ring<cls_HistoryEntry>(head), (std::vector<const cls_HistoryEntry*>{&a, &b, &c}));
    b.UnLink();
    EXPECT_EQ(Ring<cls_HistoryEntry>(head), (std::vector<const cls_HistoryEntry*>{&a, &c}));
    EXPECT_EQ(b.Next(), &b);
    a.UnLink();
    c.UnLink();
    EXPECT_TRUE(Ring<cls_HistoryEntry>(head).empty());
}

TEST(PC, A_linked_node_goes_to_the_tail_and_leaves_its_former_ring)
{
    cls_PC first, second, a, b;
    first.Link(&a);
    first.Link(&b);
    EXPECT_EQ(Ring(first), (std::vector<const cls_PC*>{&a, &b}));
    second.Link(&a);
    EXPECT_EQ(Ring(first), std::vector<const cls_PC*>{&b});
    EXPECT_EQ(Ring(second), std::vector<const cls_PC*>{&a});
    first.Link(&first);
    EXPECT_EQ(first.Next(), &first);
    EXPECT_EQ(b.Next(), &b);
}

TEST(PC, Destruction_leaves_the_ring_and_copies_never_join_it)
{
    cls_PC head, other;
    {
        cls_PC node;
        head.Link(&node);
        const cls_PC copy(node);
        EXPECT_EQ(copy.Next(), &copy);
        other = node;
        EXPECT_EQ(other.Next(), &other);
        EXPECT_EQ(head.Next(), &node);
    }
    EXPECT_EQ(head.Next(), &head);
}

TEST(PC, A_plain_node_cannot_be_flushed)
{
    static std::string reported;
    const auto former = VEXCRT::SetAssertHandler(
        [](const char* condition, const char* source, int) { reported = std::string(condition) + " " + source; });
    cls_PC().Flush();
    VEXCRT::SetAssertHandler(former);
    EXPECT_EQ(reported, "Can't flush non-specialized cls_PC object. source/cls/impl/cls_PC");
}
} // namespace
