#include "FakeListAgent.h"
#include "cls_2dArrayPrim.h"
#include "cls_ReadVisitor.h"
#include "cls_WriteVisitor.h"
#include "utl/StreamChecks.h"

#include <climits>

namespace
{
using Ints = cls_ArrayPrim<int>;

template <class T> T ValueOf(int number)
{
    if constexpr (std::same_as<T, cow_String>) {
        return cow_String(("a text that needs memory of its own: " + std::to_string(number)).c_str());
    } else {
        return static_cast<T>(std::same_as<T, bool> ? number & 1 : number);
    }
}

Ints Filled(int length)
{
    Ints array;
    for (int i = 0; i < length; ++i) {
        array.Append(i);
    }
    return array;
}

void Store(const Ints& array, FakeList& list)
{
    array.DBWrite(cls_WriteVisitor(new FakeListRecord<MementoWriteDouble>(list)));
}

std::unique_ptr<Ints> Open(FakeList& list)
{
    cls_ReadVisitor visitor(new FakeListRecord<MementoReadDouble>(list));
    return std::unique_ptr<Ints>(static_cast<Ints*>(Ints::Ctor(visitor)));
}

template <class T> void ExpectHolds(const cls_ArrayPrim<T>& array, const std::vector<T>& model)
{
    ASSERT_EQ(array.Size(), static_cast<int>(model.size()));
    for (int i = 0; i < array.Size(); ++i) {
        ASSERT_EQ(array.ConstGet(i), model[static_cast<std::size_t>(i)]) << "at " << i;
    }
}

TEST(ArrayPrim, Is_stored_block_by_block_and_paged_in_a_block_at_a_time)
{
    FakeList list;
    {
        Ints array = Filled(5000);
        EXPECT_EQ(array.Get(4999), 4999);
        array.Get(5000) = 7; // the free place
        EXPECT_EQ(array.Size(), 5000);
        Store(array, list);
        EXPECT_EQ(list.TakeLog(), Texts({"agent", "attach", "register", "size", "write 0+2048", "write 2048+2048",
                                         "readonly", "write 4096+904", "end"}));
        array.Get(4999) = -1;
        Store(array, list);
        EXPECT_EQ(list.TakeLog(), Texts());
        EXPECT_EQ(array.ConstGet(0), 0);
        EXPECT_EQ(list.TakeLog(), Texts({"write 4096+904", "read 0+2048"}));
        array.Get(2047) = -2;
        EXPECT_EQ(array.ConstGet(3000), 3000);
        EXPECT_EQ(list.TakeLog(), Texts({"write 0+2048", "read 2048+2048"}));
        EXPECT_EQ(array.ConstGet(2048), 2048);
        array.Flush();
        EXPECT_EQ(list.TakeLog(), Texts({"readonly", "end"}));
        array.Release();
        array.Get(2048) = -3;
        EXPECT_EQ(list.TakeLog(), Texts({"read 2048+2048"}));
    }
    EXPECT_EQ(list.TakeLog(),
              Texts({"detach", "readonly", "write 2048+2048", "end", "owned", "readonly", "end", "gone"}));
    EXPECT_EQ(list.values[4999] + list.values[2047] + list.values[2048], -6);

    const auto array = Open(list);
    EXPECT_EQ(list.TakeLog(), Texts({"agent", "size", "attach", "register"}));
    const int more[] = {10, 11, 12};
    array->Get(4096) = -4;
    array->AppendBlock(more, 3);
    EXPECT_EQ(list.TakeLog(),
              Texts({"read 4096+904", "readonly", "write 4096+904", "end", "write 5000+3", "readonly", "end"}));
    EXPECT_EQ(array->ConstGet(5002), 12);
    EXPECT_EQ(list.TakeLog(), Texts({"read 4096+907"}));
    EXPECT_EQ(array->Snap(), 0);
    list.values.resize(3000);
    list.isChanged = true;
    EXPECT_EQ(array->Snap(), 1);
    EXPECT_EQ(array->Size(), 3000);
    EXPECT_EQ(array->ConstGet(2999), 2999);
    EXPECT_EQ(list.TakeLog(), Texts({"changed", "changed", "size", "read 2048+952"}));
    array->Get(2999) = 2;
    array->SetLength(INT_MIN);
    array->Flush();
    EXPECT_EQ(list.TakeLog(), Texts({"readonly", "end"}));
    array->SetLength(3000);
    list.isReadOnly = true;
    array->Get(2999) = 1;
    array->Flush();
    EXPECT_EQ(list.TakeLog(), Texts({"readonly"}));
}

TEST(ArrayPrim, Copies_share_blocks_and_agent_until_one_side_writes)
{
    FakeList list;
    Ints array = Filled(3000);
    Ints copy(array);
    EXPECT_EQ(&copy.ConstGet(2999), &array.ConstGet(2999));
    array.Get(2999) = 1;
    copy.Append(2);
    EXPECT_EQ(copy.ConstGet(2999), 2999);
    EXPECT_EQ(array.ConstGet(2999), 1);
    EXPECT_EQ(&copy.ConstGet(0), &array.ConstGet(0));
    EXPECT_EQ(copy.Uid(), array.Uid());

    // A copy that shares blocks with an array stored meanwhile still stores all of them in a list of its own.
    FakeList other;
    const Ints third(copy);
    Store(copy, list);
    Store(third, other);
    EXPECT_EQ(list.values, other.values);
    list.TakeLog();
    {
        Ints fourth(copy);
        array = copy;
        EXPECT_EQ(list.TakeLog(), Texts({"attach", "register", "attach", "register"}));
        EXPECT_EQ(list.attached, 3);
        array = copy;
        EXPECT_EQ(list.TakeLog(), Texts({"attach", "detach", "readonly", "end", "owned", "register"}));
        fourth.Get(0) = 5;
        list.TakeLog();
    }
    EXPECT_EQ(list.TakeLog(), Texts({"detach", "readonly", "write 0+2048", "end", "owned"}));
    EXPECT_EQ(array.ConstGet(0), 5);
}

/// Random operations on `array` and `model`, the same ones.
template <class T> void Disturb(cls_ArrayPrim<T>& array, std::vector<T>& model, std::mt19937& random, bool hasAgent)
{
    const auto roll = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    const int what = model.empty() ? 0 : roll(8);
    const int at = model.empty() ? 0 : roll(static_cast<int>(model.size()));
    if (what == 0) {
        for (int left = roll(3) == 0 ? roll(3000) : 1; left >= 0; --left) {
            model.push_back(ValueOf<T>(left));
            array.Append(model.back());
        }
    } else if (what == 1) {
        model.push_back(model[static_cast<std::size_t>(at)]);
        array.Append(array.ConstGet(at));
    } else if (what < 4) {
        model[static_cast<std::size_t>(at)] = ValueOf<T>(roll(1000));
        array.Get(at) = model[static_cast<std::size_t>(at)];
    } else if (what == 4) {
        model.resize(static_cast<std::size_t>(at));
        array.SetLength(at);
    } else if (what == 5) {
        roll(2) == 0 ? array.Flush() : array.Release();
    } else if (what == 6 && hasAgent) {
        const T more[] = {ValueOf<T>(1), ValueOf<T>(2), ValueOf<T>(3)};
        model.insert(model.end(), more, more + 3);
        array.AppendBlock(more, 3);
    } else {
        ASSERT_EQ(array.ConstGet(at), model[static_cast<std::size_t>(at)]);
    }
    ASSERT_EQ(array.Size(), static_cast<int>(model.size()));
}

template <class T> class ArrayOf : public testing::Test
{};
using Elements = testing::Types<bool, double, float, int, cow_String, std::uint32_t>;
TYPED_TEST_SUITE(ArrayOf, Elements);

TYPED_TEST(ArrayOf, Random_operations_match_a_vector_in_memory_and_in_the_store)
{
    using T = TypeParam;
    for (unsigned seed = 1; seed <= 8; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        cls_ArrayPrim<T> arrays[2];
        std::vector<T> models[2];
        for (int step = 0; step < 300; ++step) {
            const std::size_t one = random() % 2;
            Disturb(arrays[one], models[one], random, /*hasAgent=*/false);
            if (random() % 16 == 0) {
                arrays[1 - one] = arrays[one];
                models[1 - one] = models[one];
            }
        }
        if constexpr (std::same_as<T, int>) { // the engine that stores arrays is tested with all
            FakeList list;
            {
                Ints array(arrays[0]);
                Store(array, list);
                for (int step = 0; step < 300; ++step) {
                    Disturb(array, models[0], random, /*hasAgent=*/true);
                }
            }
            list.values.resize(models[0].size());
            ExpectHolds(*Open(list), models[0]);
        }
        arrays[0] = cls_ArrayPrim<T>();
        ExpectHolds(arrays[1], models[1]);
    }
}

TEST(ArrayPrim, A_failure_of_the_agent_loses_nothing_whichever_call_it_is)
{
    const int more[] = {7, 8};
    const Ints original = Filled(5000);
    for (int call = 1, failures = 1; failures != 0; ++call) {
        SCOPED_TRACE(call);
        FakeList list;
        failures = 0;
        const auto untilItWorks = [&](auto step) {
            try {
                step();
            } catch (const std::runtime_error&) {
                ++failures;
                step();
            }
        };
        {
            Ints array(original);
            const int size = array.Size();
            list.failAt = call;
            untilItWorks([&] {
                list.values.clear(); // as a save that failed is rolled back
                Store(array, list);
            });
            untilItWorks([&] { array.Get(4999) = 1; });
            untilItWorks([&] { array.Get(0) = 2; });
            untilItWorks([&] { array.Append(array.ConstGet(0)); });
            untilItWorks([&] { array.AppendBlock(more, 2); });
            untilItWorks([&] { const Ints copy(array); });
            untilItWorks([&] { array = Ints(array); });
            untilItWorks([&] { EXPECT_EQ(array.ConstGet(2048), 2048); });
            untilItWorks([&] { EXPECT_EQ(array.Get(size + 2), 8); });
            untilItWorks([&] { array.Release(); });
            untilItWorks([&] { array.Flush(); });
            untilItWorks([&] { array.Get(3) = 4; });
        }
        failures += !list.failedAtCommit.empty();
        EXPECT_EQ(list.values[3], 4);
        EXPECT_EQ(list.values.size(), 5003u);
        EXPECT_EQ(std::count(list.log.begin(), list.log.end(), "gone"),
                  std::count(list.log.begin(), list.log.end(), "agent") - (call == 1));
        EXPECT_EQ(list.attached, 0);
        EXPECT_EQ(std::vector<int>(list.values.end() - 3, list.values.end()), std::vector<int>({2, 7, 8}));
    }
    FakeList list;
    list.values.resize(10);
    list.failAt = 2;
    EXPECT_THROW(Open(list), std::runtime_error);
    EXPECT_EQ(list.TakeLog(), Texts({"agent", "size", "owned", "gone"}));
}

TEST(ArrayPrim, Failures_say_what_is_wrong_and_change_nothing)
{
    FakeList conflict;
    conflict.values = {1};
    Ints array = Filled(10);
    const Ints gap = [] {
        Ints made;
        made.SetLength(10);
        return made;
    }();
    cls_2dArrayPrim<float> matrix;
    cls_2dArrayPrim<float> matrixGap;
    matrixGap.SetLength(10);
    const int values[] = {1};
    const float reals[] = {1};
    const std::tuple<std::function<void()>, const char*> rows[] = {
        {[&] { gap.ConstGet(1); }, "In cls_ArrayPrim::GetBuffer() Missing agent."},
        {[&] { array.ConstGet(11); }, "In cls_ArrayPrim::ConstGet() Index out of range."},
        {[&] { array.ConstGet(INT_MIN); }, "In cls_ArrayPrim::ConstGet() Index out of range."},
        {[&] { array.Get(11); }, "In cls_ArrayPrim::Get() Index out of range."},
        {[&] { array.Get(-1); }, "In cls_ArrayPrim::Get() Index out of range."},
        {[&] { array.AppendBlock(values, 1); },
         "cls_ArrayPrim::AppendBlock: Collection must be associated with a database for this method."},
        {[&] { Store(array, conflict); }, "cls_ArrayPrim::DBWrite: Index conflicts(s) in list."},
        {[&] { array.DBWrite(cls_WriteVisitor(new MementoWriteDouble)); }, "cls_ArrayPrim::DBWrite: Missing agent."},
        {[&] { Ints(cls_ReadVisitor(new MementoReadDouble)); }, "In cls_ArrayPrim::cls_ArrayPrim() Missing agent."},
        {[&] { Open(conflict)->AppendBlock(values, -1); }, "cls_ArrayPrim::AppendBlock: Count out of range."},
        {[&] { Open(conflict)->AppendBlock(values, INT_MAX); }, "cls_ArrayPrim::AppendBlock: Count out of range."},
        {[&] { matrixGap.Append(1); }, "In cls_2dArrayPrim::GetBuffer() Missing agent."},
        {[&] { matrix.ConstGet(1, 0); }, "In cls_2dArrayPrim::ConstGet() Index out of range."},
        {[&] { matrix.Get(0, -1); }, "In cls_2dArrayPrim::Get() Index out of range."},
        {[&] { matrix.AppendBlock(reals, 1); },
         "cls_2dArrayPrim::AppendBlock: Collection must be associated with a database for this method."},
        {[&] { matrix.SetRowLength(0); }, "In cls_2dArrayPrim::SetRowLength() Row length out of range."},
    };
    for (const auto& [call, text] : rows) {
        EXPECT_EQ(RefusalOf(call), text);
    }
    EXPECT_EQ(array.Size(), 10);
    EXPECT_EQ(array.ConstGet(9), 9);
    EXPECT_EQ(conflict.values, std::vector<int>{1});
    EXPECT_EQ(conflict.attached, 0);
    Ints().DBWrite(
        cls_WriteVisitor(new FakeListRecord<MementoWriteDouble>(conflict))); // an empty array conflicts with nothing
    EXPECT_EQ(Ints(cls_ReadVisitor(nullptr)).Size(), 0);
}

TEST(ArrayPrim, Names_elements_by_row_and_column)
{
    cls_2dArrayPrim<double> matrix;
    for (int i = 0; i < 9; ++i) {
        matrix.Append(i);
    }
    EXPECT_EQ(matrix.ConstGet(8, 0), 8);
    matrix.SetRowLength(3);
    EXPECT_EQ(matrix.ConstGet(1, 2), 5);
    EXPECT_EQ(matrix.ConstGet(0, 7), 7);
    matrix.Get(2, 1) = -7;
    EXPECT_EQ(matrix.ConstGet(0, 7), -7);
    matrix.SetRowLength(INT_MAX);
    EXPECT_NE(RefusalOf([&] { matrix.ConstGet(2, 2); }), "");
    EXPECT_EQ(cls_2dArrayPrim<double>(matrix).RowLength(), 1);
    EXPECT_EQ(matrix.DynTypeId(), cls_ArrayPrim<double>::TypeId());
}
} // namespace
