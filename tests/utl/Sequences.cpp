#include "Counted.h"
#include "cow_1DArray.h"
#include "cow_1DArrayList.h"
#include "cow_2DArray.h"
#include "cow_List.h"

namespace
{
using SequencesOfCounted = CountedTest;
using Random = std::mt19937;

template <class T> T MakeItem(std::size_t number)
{
    if constexpr (std::same_as<T, cow_String>) {
        return cow_String(std::string(number * 3, 'x'));
    } else {
        return T(static_cast<int>(number));
    }
}

/// One random change of `list` and its model, with items of the list itself; `other` is another list, or the same.
template <class T>
void Change(Random& random, cow_List<T>& list, std::vector<T>& model, const cow_List<T>& other, const std::vector<T>&)
{
    const std::size_t at = model.empty() ? 0 : random() % model.size();
    const int index = static_cast<int>(at);
    const auto place = [&model, at] { return model.begin() + static_cast<std::ptrdiff_t>(at); };
    const int what = model.empty() ? 0 : static_cast<int>(random() % 9);
    if (what == 0) {
        const T item = MakeItem<T>(random() % 10);
        list.Append(item);
        model.push_back(item);
    } else if (what == 1) {
        list.Append(list[index]);
        model.push_back(T(model[at]));
    } else if (what == 2) {
        list.Prepend(list[index]);
        model.insert(model.begin(), T(model[at]));
    } else if (what == 3) {
        list.Insert(index, list[list.Length() - 1]);
        model.insert(place(), T(model.back()));
    } else if (what == 4) {
        EXPECT_TRUE(list.RemoveFirst(list[index]));
        model.erase(std::find(model.begin(), model.end(), T(model[at])));
    } else if (what == 5) {
        const std::vector<T> added(other.begin(), other.end());
        list.AppendAll(other);
        model.insert(model.end(), added.begin(), added.end());
    } else if (what == 6) {
        const cow_Sequence<T> tail = list.SplitOff(index);
        EXPECT_TRUE(std::equal(tail.begin(), tail.end(), place(), model.end()));
        model.erase(place(), model.end());
    } else if (what == 7) {
        list.Set(index, list[0]);
        list.Get(0) = list[list.Length() - 1];
        *place() = T(model.front());
        model.front() = T(model.back());
    } else {
        list.RemoveAt(index);
        model.erase(place());
    }
    if (model.size() > 200) {
        list.Clear();
        model.clear();
    }
}

template <class T> void RunBesideVectors(unsigned seed)
{
    const auto check = [](const cow_List<T>& list, const std::vector<T>& model) {
        EXPECT_TRUE(std::ranges::equal(list, model));
    };
    RunBesideModels<cow_List<T>, std::vector<T>>(seed, 6000, &Change<T>, check);
}

} // namespace

TEST_F(SequencesOfCounted, Random_changes_and_copies_agree_with_std_vector)
{
    RunBesideVectors<Counted>(1);
    RunBesideVectors<cow_String>(2);
    RunBesideVectors<double>(3);
}

TEST_F(SequencesOfCounted, A_failing_copy_changes_nothing_and_loses_nothing)
{
    const cow_List<Counted> start{1, 2, 3, 4};
    const cow_List<Counted> more{5, 6};
    const Counted item = 7;
    using List = cow_List<Counted>;
    ExpectAllOrNothing(start, [&](List& list) { list.Append(item); });
    ExpectAllOrNothing(start, [&](List& list) { list.AppendAll(more); });
    ExpectAllOrNothing(start, [&](List& list) { list.AppendAll(list); });
    ExpectAllOrNothing(start, [&](List& list) { list.Insert(1, item); });
    ExpectAllOrNothing(start, [&](List& list) { list.Set(1, item); });
    ExpectAllOrNothing(start, [&](List& list) { list.Get(1); });
    ExpectAllOrNothing(start, [&](List& list) { list.RemoveAt(1); });
    ExpectAllOrNothing(start, [&](List& list) { list.Reserve(100); });
    ExpectAllOrNothing(start, [&](List& list) { list.SplitOff(2); });
    ExpectAllOrNothing(start, [&](List& list) { list = List(more.begin(), more.end()); });
}

TEST_F(SequencesOfCounted, Reading_never_clones_and_only_the_first_write_to_a_shared_one_does)
{
    const cow_List<Counted> source{1, 2, 3};
    Counted::copies = 0;
    const Clones<cow_Sequence<Counted>> clones;
    cow_List<Counted> copy(source);
    EXPECT_TRUE(copy.Find(3) == 2 && copy.IsMember(1) && copy == source);
    EXPECT_EQ(Counted::copies, 0);
    copy.Set(0, 4);
    copy.Append(5);
    copy.Set(1, 6);
    EXPECT_EQ(Counted::copies, 3);
    EXPECT_TRUE(clones.Are(1));
}

TEST(Sequences, Indices_outside_report_and_change_nothing)
{
    RecordedAssertions assertions;
    cow_List<Counted> list{1, 2};
    const cow_List<Counted> copy(list);
    list.Set(2, 9);
    list.Set(-1, 9);
    list.Insert(3, 9);
    list.Insert(-1, 9);
    list.RemoveAt(2);
    list.RemoveAt(-1);
    cow_2DArray<int> table(2, 3);
    table.Set(2, 0, 9);
    table.Set(0, 3, 9);
    table.Set(0, -1, 9);
    EXPECT_EQ(assertions.Take(), Texts(9, "index >= 0 && index < length"));
    EXPECT_TRUE(list.SharesWith(copy));
    EXPECT_EQ(table, cow_2DArray<int>(2, 3));
}

TEST(Sequences, Sizes_at_the_limits)
{
    cow_1DArray<double> array(3);
    EXPECT_EQ(array, (cow_1DArray<double>{0, 0, 0}));
    array.Set(2, 1.5);
    array.Resize(5);
    array.Resize(-1);
    EXPECT_TRUE(array.IsEmpty());
    EXPECT_EQ(cow_1DArray<int>(0).Write(), nullptr);
    EXPECT_EQ(cow_1DArray<int>(-7).Length(), 0);

    const cow_1DArray<char> one{'a'};
    cow_1DArray<char> grown(one);
    EXPECT_THROW(grown.MakeRoom(cow_Block::MAX_ITEMS), std::length_error);
    const cow_1DArray<char> moved(std::move(grown));
    EXPECT_TRUE(moved.SharesWith(one) && grown.IsEmpty()); // NOLINT: a moved-from sequence is an empty one
    EXPECT_THROW(cow_2DArray<char>(65536, 32768), std::length_error);
    EXPECT_EQ(cow_2DArray<char>(cow_Block::MAX_ITEMS, 0).Rows(), cow_Block::MAX_ITEMS);
}

TEST(Sequences, Array_lists_grow_by_whole_blocks_counted_in_their_unit)
{
    struct Point
    {
        float xyz[3];
    };
    cow_1DArrayList<int> list(16, 40);
    EXPECT_EQ(list.Capacity(), 48);
    for (int i = 0; i < 49; ++i) {
        list.Append(i);
    }
    EXPECT_EQ(list.Capacity() % 16, 0);
    cow_1DArrayList<int> copy(list);
    copy.Clear();
    copy.Append(1);
    EXPECT_EQ(copy.Capacity() % 16, 0);
    EXPECT_EQ((cow_1DArrayList<Point, float>(/*blockSize=*/48, /*expectedCount=*/50).Capacity()), 32);
    EXPECT_EQ(cow_1DArrayList<int>(0, -1).Length(), 0);
}

TEST(Sequences, Tables_keep_their_shape)
{
    cow_2DArray<int> table(2, 3);
    table.Set(1, 2, 7);
    const cow_2DArray<int> copy(table);
    EXPECT_TRUE(copy.SharesWith(table));
    table.Set(0, 1, 8);
    EXPECT_EQ(copy(0, 1), 0);
    EXPECT_EQ(table.data()[5], 7);
    EXPECT_NE(cow_2DArray<int>(2, 3), cow_2DArray<int>(3, 2));

    const cow_2DArray<int> moved(std::move(table));
    EXPECT_EQ(moved(0, 1), 8);
    EXPECT_EQ(table.Rows(), 0); // NOLINT: a moved-from table is an empty one
}

TEST(Sequences, Streams_and_dumps_keep_all_and_damage_costs_no_memory)
{
    ExpectStreamed(cow_List<cow_String>{"", "a", "a text that is too long to live in the object"});
    ExpectStreamed(cow_1DArray<double>{1.5, -0.0, 1e300});
    ExpectStreamed(cow_1DArrayList<bool>{true, false, true});
    ExpectStreamed(cow_List<cow_List<int>>{{1, 2}, {}, {3}});
    cow_2DArray<float> table(2, 2);
    table.Set(1, 0, 2.5f);
    ExpectStreamed(table);
    ExpectStreamed(cow_2DArray<int>(0, 4));

    EXPECT_EQ(BytesOf(cow_1DArray<std::uint16_t>{1, 0x0203}), std::string("\2\0\0\0\1\0\3\2", 8));
    EXPECT_EQ(BytesOf(cow_2DArray<char>(1, 2)), std::string("\1\0\0\0\2\0\0\0\0\0", 10));

    cow_1DArray<bool> bools;
    EXPECT_EQ(ReadFrom(std::string("\1\0\0\0\2", 5), bools), "a bool that is neither 0 nor 1 at offset 4");
    cow_2DArray<char> huge;
    EXPECT_EQ(ReadFrom(std::string("\0\0\1\0\0\x80\0\0", 8), huge),
              "rows and columns of more items than can be counted at offset 0");

    std::stringbuf source(std::string("\xFF\xFF\xFF\x7F", 4) + std::string(100, '\1'));
    bio_Ifilter in(source);
    cow_1DArray<double> array;
    EXPECT_THROW(in >> array, nex_TextException);
    EXPECT_LT(array.Capacity(), 100000);

    EXPECT_EQ(DumpOf(cow_List<cow_String>{"a", "b"}), "(cow_List\n  a\n  b\n)");
    EXPECT_EQ(DumpOf(cow_1DArray<cow_1DArrayList<int>>{{1, 2}, {}}),
              "(cow_1DArray\n  (cow_1DArrayList\n    1\n    2\n  )\n  (cow_1DArrayList\n  )\n)");
    EXPECT_EQ(DumpOf(cow_2DArray<bool>(2, 1)), "(cow_2DArray\n  (row\n    false\n  )\n  (row\n    false\n  )\n)");
}
