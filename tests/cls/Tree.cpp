#include "Test.h"
#include "cls_AttributeMetadata.h"
#include "omi_BtreeIterator.h"

namespace
{
using Tree = omi_Btree<cow_String, int>;
using Node = omi_BtreeNode<cow_String, int>;
using Items = std::vector<std::pair<std::string, int>>;

/// The height of a subtree whose nodes all know theirs, as they do before anything is removed.
int CheckedHeight(const Node* node)
{
    const int left = node->Left() != nullptr ? CheckedHeight(node->Left()) : -1;
    const int right = node->Right() != nullptr ? CheckedHeight(node->Right()) : -1;
    EXPECT_EQ(node->Height(), 1 + std::max(left, right));
    return node->Height();
}

void Check(const Tree& tree, const std::map<std::string, int>& model)
{
    ASSERT_EQ(tree.Count(), std::ssize(model));
    Items up;
    Items down;
    omi_BtreeIterator<cow_String, int> each(tree);
    EXPECT_TRUE(each.IsDone());
    for (each.First(); !each.IsDone(); each.Next()) {
        up.emplace_back(each.Key().AsCharPtr(), each.Value());
    }
    for (each.Last(); !each.IsDone(); each.Previous()) {
        down.emplace_back(each.Key().AsCharPtr(), each.Value());
    }
    each.Next();
    EXPECT_TRUE(each.IsDone());
    ASSERT_EQ(up, Items(model.begin(), model.end()));
    ASSERT_EQ(down, Items(model.rbegin(), model.rend()));
}
} // namespace

TEST(Tree, Random_operations_agree_with_a_map)
{
    // Texts that differ early, behind 8 and behind 15 bytes, or only in length, and bytes above 127.
    const std::string stems[] = {"", "B", "\xE9", "eightchr", "sixteen letters!", "fifteen letters"};
    std::mt19937 random(8);
    Tree tree;
    std::map<std::string, int> model;
    const auto pick = [&] {
        return stems[random() % 6] + std::string(random() % 3, 'a') + std::to_string(random() % 90);
    };
    for (int step = 0; step < 12000; ++step) {
        const std::string key = pick().substr(0, 16 + random() % 4);
        const cow_String text(std::string_view{key});
        if (random() % 2 == 0) {
            ASSERT_EQ(tree.Insert(text, step), model.emplace(key, step).second) << key;
        } else {
            ASSERT_EQ(tree.Remove(text), model.erase(key) == 1) << key;
        }
        const std::string other = pick();
        const int* const found = tree.Find(std::string_view(other));
        ASSERT_EQ(found != nullptr, model.contains(other)) << other;
        ASSERT_TRUE(found == nullptr || *found == model[other]);
        if (step % 500 == 0) {
            Check(tree, model);
            const std::unique_ptr<Tree> copy(tree.Copy());
            copy->Insert("only in the copy", 1);
            tree = tree;
            Check(tree, model);
        }
    }
    while (!model.empty()) {
        ASSERT_TRUE(tree.Remove(std::string_view(model.begin()->first)));
        model.erase(model.begin());
    }
    Check(tree, {});
}

TEST(Tree, A_zero_byte_ends_a_key)
{
    Tree tree;
    for (const std::string& text : {std::string("ab"), std::string("a long text of its own")}) {
        EXPECT_TRUE(tree.Insert(std::string_view(text), 1));
        EXPECT_FALSE(tree.Insert(std::string_view(text + std::string(1, '\0') + "more"), 2)) << text;
        EXPECT_EQ(*tree.Find(std::string_view(text + std::string(1, '\0') + "a text behind it")), 1) << text;
    }
    EXPECT_TRUE(tree.Insert(std::string_view("\0x", 2), 3));
    EXPECT_FALSE(tree.Insert("", 4));
}

TEST(Tree, Rotations_come_as_late_as_stated)
{
    Tree tree;
    for (const char* const key : {"a", "b", "c"}) {
        tree.Insert(key, 0);
    }
    EXPECT_EQ(tree.Root()->Key(), "a");
    EXPECT_EQ(tree.Root()->Height(), 2);
    tree.Insert("d", 0);
    EXPECT_EQ(tree.Root()->Key(), "b");
    EXPECT_EQ(tree.Root()->Right()->Key(), "c");
    EXPECT_EQ(tree.Root()->Height(), 2);

    Tree stale;
    for (const char* const key : {"d", "b", "h", "a", "f", "k", "e"}) {
        stale.Insert(key, 0);
    }
    stale.Remove("d"); // "e" takes its place; the height of "f" is recomputed, that of "h" is not
    EXPECT_EQ(stale.Root()->Key(), "e");
    EXPECT_EQ(stale.Root()->Height(), 3);
    EXPECT_EQ(stale.Root()->Right()->Left()->Height(), 0);
    stale.Insert("g", 0); // on the way up from "g" the others are
    EXPECT_EQ(stale.Root()->Height(), 3);
    stale.Remove("g");
    EXPECT_EQ(stale.Root()->Height(), 2);

    const auto none = omi_Btree<cow_String, cls_AttributeMetadata>::GetNullValue();
    EXPECT_EQ(none.FieldID(), -1);
    EXPECT_EQ(none.FieldName(), "");
    EXPECT_EQ(static_cast<unsigned>(none.Type()), 0U);
    EXPECT_EQ(none.Count(), 1U);
    EXPECT_EQ(none.Collection(), cls_COLLECTION_NONE);
}

TEST(Tree, Keys_in_any_order_make_a_shallow_tree)
{
    constexpr int KEYS = 200000;
    const std::tuple<const char*, int (*)(int i)> rows[] = {
        {"ascending", [](int i) { return i; }},
        {"descending", [](int i) { return KEYS - i; }},
        {"zig-zag", [](int i) { return i % 2 == 0 ? i : 2 * KEYS - i; }}};
    for (const auto& [name, number] : rows) {
        Tree tree;
        for (int i = 0; i < KEYS; ++i) {
            tree.Insert(cow_String(10000000 + number(i)), i);
        }
        EXPECT_EQ(tree.Count(), KEYS);
        EXPECT_LT(CheckedHeight(tree.Root()), 1.4 * std::log2(KEYS) + 1) << name;
        const Tree copy = tree;
        EXPECT_EQ(copy.Root()->Height(), tree.Root()->Height());
    }
}
