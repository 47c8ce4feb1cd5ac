#include "Test.h"
#include "cls_PC.h"

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

TEST(PC, A_node_is_the_last_of_one_ring_until_it_dies_and_its_copies_are_in_none)
{
    cls_PC first, second, a;
    {
        cls_PC b, other;
        first.Link(&a);
        first.Link(&b);
        EXPECT_EQ(Ring(first), (Nodes{&a, &b}));
        second.Link(&a);
        EXPECT_EQ(Ring(second), Nodes{&a});
        const cls_PC copy(b);
        other = b;
        EXPECT_EQ(Ring(copy), Nodes{});
        EXPECT_EQ(Ring(other), Nodes{});
        EXPECT_EQ(Ring(first), Nodes{&b});
    }
    EXPECT_EQ(Ring(first), Nodes{});
    second.Link(&second);
    EXPECT_EQ(Ring(second), Nodes{});
}

TEST(PC, A_plain_node_cannot_be_flushed)
{
    RecordedAssertions assertions;
    cls_PC().Flush();
    EXPECT_EQ(assertions.Take(), Texts{"Can't flush non-specialized cls_PC object."});
}
} // namespace
