#include "RecordedAssertions.h"
#include "cls_PC.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{
using Nodes = std::vector<const cls_PC*>;

Nodes Ring(const cls_PC& head)
{
    Nodes nodes;
    for (const cls_PC* node = head.Next(); node != &head; node = node->Next()) {
        nodes.push_back(node);
    }
    return nodes;
}

TEST(PC, A_linked_node_goes_to_the_tail_and_leaves_its_former_ring)
{
    cls_PC first, second, a, b;
    first.Link(&a);
    first.Link(&b);
    EXPECT_EQ(Ring(first), (Nodes{&a, &b}));
    second.Link(&a);
    EXPECT_EQ(Ring(first), Nodes{&b});
    EXPECT_EQ(Ring(second), Nodes{&a});
    first.Link(&first);
    EXPECT_EQ(Ring(first), Nodes{});
}

TEST(PC, Destruction_leaves_the_ring_and_copies_never_join_it)
{
    cls_PC head, other;
    {
        cls_PC node;
        head.Link(&node);
        const cls_PC copy(node);
        other = node;
        EXPECT_EQ(Ring(copy), Nodes{});
        EXPECT_EQ(Ring(other), Nodes{});
        EXPECT_EQ(Ring(head), Nodes{&node});
    }
    EXPECT_EQ(Ring(head), Nodes{});
}

TEST(PC, A_plain_node_cannot_be_flushed)
{
    RecordedAssertions assertions;
    cls_PC().Flush();
    EXPECT_EQ(assertions.Take(), std::vector<std::string>{"Can't flush non-specialized cls_PC object."});
}
} // namespace
