#include "Test.h"
#include "omi_UintTableIterator.h"

namespace
{
using Table = omi_UintTable<unsigned int>;
using Iterator = omi_UintTableIterator<unsigned int>;
using Items = std::vector<std::pair<unsigned int, unsigned int>>;

Items Walk(Iterator& each, bool upwards)
{
    Items items;
    for (upwards ? each.First() : each.Last(); !each.IsDone(); upwards ? each.Next() : each.Previous()) {
        items.emplace_back(each.CurrentKey(), each.CurrentValue());
    }
    return items;
}

/// Larger values first.
int ByValueDown(const void* left, const void* right)
{
    const auto value = [](const void* each) { return (*static_cast<const Iterator::Entry* const*>(each))->value; };
    return value(left) > value(right) ? -1 : 1;
}

void Check(const Table& table, const std::map<unsigned int, unsigned int>& model)
{
    ASSERT_EQ(table.Count(), model.size());
    Iterator each(table);
    ASSERT_EQ(Walk(each, true), Items(model.begin(), model.end()));
    ASSERT_EQ(Walk(each, false), Items(model.rbegin(), model.rend()));
    each.First();
    for (auto entry = model.begin(); entry != model.end(); ++entry) { // back and forth again
        const unsigned int* const found = table.Find(entry->first);
        ASSERT_TRUE(found != nullptr && *found == entry->second) << entry->first;
        each.Next();
        if (!each.IsDone()) {
            each.Previous();
            ASSERT_EQ(each.CurrentKey(), entry->first);
            each.Next();
        }
    }
    ASSERT_TRUE(each.IsDone());
}
} // namespace

TEST(UintTable, Random_operations_agree_with_a_map)
{
    const std::tuple<unsigned int, unsigned int, unsigned int, unsigned int> rows[] = {
        {12, 10, 24, 5000}, {12, 10, 24, 3000000}, {31, 1, 0, 600},      {4, 24, 1, 4000},
        {99, 99, 3, 300},   {30, 0, 1, 4000},      {20, 5, 1, 100000000}};
    for (const auto& [highBits, chunkIndexBits, growth, range] : rows) {
        std::mt19937 random(9);
        Table table(highBits, chunkIndexBits, growth);
        std::map<unsigned int, unsigned int> model;
        for (unsigned int step = 0; step < 4000; ++step) {
            const auto key = static_cast<unsigned int>(random()) % range;
            const auto near = model.lower_bound(key);
            const unsigned int present = near != model.end() ? near->first : key;
            if (random() % 5 < 2) {
                ASSERT_EQ(table.Remove(present), model.erase(present) == 1);
            } else {
                ASSERT_EQ(table.Insert(key, step), model.insert_or_assign(key, step).second);
            }
            for (const unsigned int each : {key, key + 1, present}) {
                const unsigned int* const found = table.Find(each);
                ASSERT_EQ(found != nullptr, model.contains(each)) << each;
                ASSERT_TRUE(found == nullptr || *found == model[each]);
            }
            if (step % 400 == 0) {
                Check(table, model);
            }
        }
        const std::unique_ptr<Table> copy(table.Copy());
        table.Clear();
        Check(table, {});
        Check(*copy, model);
        table = *copy;
        Check(table, model);
        Items byValue(model.begin(), model.end());
        std::sort(byValue.begin(), byValue.end(), [](const auto& l, const auto& r) { return l.second > r.second; });
        Iterator sorted(table, ByValueDown);
        EXPECT_EQ(Walk(sorted, true), byValue);
        std::reverse(byValue.begin(), byValue.end());
        EXPECT_EQ(Walk(sorted, false), byValue);
    }
}

TEST(UintTable, Blocks_come_and_go_as_stated)
{
    Table table;
    EXPECT_EQ(table.BlockSlots(), 2U);
    EXPECT_TRUE(table.Insert(0, 1));
    EXPECT_TRUE(table.Insert(0xFFFFFFFF, 2));
    EXPECT_EQ(table.BlockSlots(), 4096U);
    Check(table, {{0, 1}, {0xFFFFFFFF, 2}});
    EXPECT_FALSE(table.Insert(0, 3));
    EXPECT_EQ(*table.Find(0), 3U);
    EXPECT_NE(table.FindTableBlock(1000), nullptr);
    EXPECT_TRUE(table.Remove(0));
    EXPECT_EQ(table.FindTableBlock(1000), nullptr);
    EXPECT_FALSE(table.Remove(0));

    omi_BlockedArray<unsigned int> array(24, 10);
    array.SetCell(5000, 7);
    const omi_BlockedArray<unsigned int> copy(array);
    array.SetCell(5000, 8);
    array.SetCell(24 * 1024, 9);
    EXPECT_EQ(array.SlotCount(), 48U);
    EXPECT_EQ(copy.SlotCount(), 24U);
    for (unsigned int k = 0; k < 24; ++k) {
        EXPECT_EQ(copy.Chunk(k) != nullptr, k == 4) << k;
    }
    EXPECT_EQ(copy.Chunk(4)[5000 % 1024], 7U);
    omi_BlockedArray<unsigned int> small(0, 2);
    small.SetCell(5, 0x01020304);
    EXPECT_EQ(small.SlotCount(), 128U);
    testing::internal::CaptureStdout();
    small.DumpArray();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Block indices= 4 - 7\n00000000|04030201|00000000|00000000|\n");

    omi_UintTableBlock<unsigned int> packed(24, 10);
    omi_BlockedArray<unsigned int> plain(24, 10);
    for (const unsigned int cell : {1500U, 1100U, 3U}) {
        packed.Insert(cell, cell);
        plain.SetCell(cell, cell);
    }
    EXPECT_TRUE(packed.Remove(1100)); // keeps its value
    EXPECT_FALSE(packed.Remove(1100));
    packed.SetCell(5, 7);
    EXPECT_EQ(packed.Find(5), nullptr);
    plain.SetCell(5, 7);
    testing::internal::CaptureStdout();
    packed.DumpArray();
    const std::string dump = testing::internal::GetCapturedStdout();
    testing::internal::CaptureStdout();
    plain.DumpArray();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), dump);

    for (unsigned int key = 0; key < 300; ++key) {
        table.Insert(key, key + 1);
    }
    table.FindTableBlock(0)->Clear();
    EXPECT_EQ(table.Find(200), nullptr);
}

TEST(UintTable, An_iterator_must_be_started)
{
    RecordedAssertions assertions;
    Table table;
    table.Insert(5, 50);
    for (const bool isSorted : {false, true}) {
        Iterator each(table, isSorted ? ByValueDown : nullptr);
        EXPECT_TRUE(each.IsDone());
        each.Next();
        each.Previous();
        EXPECT_EQ(each.CurrentKey(), 0U);
        EXPECT_EQ(each.CurrentValue(), 0U);
        EXPECT_EQ(assertions.Take(),
                  (Texts{"currentIndex != -2", "currentIndex != -2", "currentIndex > -2", "currentIndex > -2"}));
        each.First();
        each.Next();
        each.Next();
        EXPECT_TRUE(each.IsDone());
        each.Last();
        EXPECT_EQ(each.CurrentValue(), 50U);
        table.Remove(5);
        each.First();
        EXPECT_TRUE(each.IsDone());
        table.Insert(5, 50);
        EXPECT_EQ(assertions.Take(), Texts{});
    }
}
