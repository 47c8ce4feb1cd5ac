#include "Test.h"
#include "omu_ArrayReal64.h"
#include "omu_ListArrayInt.h"
#include "omu_VaryMatrixUint32.h"

namespace
{
using IdRun = omu_IntAndArrayInt;

omu_ListArrayInt List(std::initializer_list<IdRun> runs)
{
    return omu_ListArrayInt(omu_ListArrayInt::Runs(runs));
}

} // namespace

TEST(ListOfRuns, Runs_merge_only_one_at_a_time)
{
    omu_ListArrayInt list;
    for (const IdRun& run : {IdRun(7, {1, 2}), IdRun(7, {3}), IdRun(9, {4})}) {
        list.AppendOrMerge(run);
    }
    EXPECT_EQ(list, List({{7, {1, 2, 3}}, {9, {4}}}));
    omu_ListArrayInt more = list;
    more.AppendOrMerge(List({{9, {5}}}));
    EXPECT_EQ(more, List({{7, {1, 2, 3}}, {9, {4, 5}}}));
    more.AppendOrMerge(List({{9, {6}}, {9, {7}}}));
    more.AppendOrMerge(omu_ListArrayInt());
    EXPECT_EQ(more, List({{7, {1, 2, 3}}, {9, {4, 5}}, {9, {6}}, {9, {7}}}));
    list.AppendOrMerge(list);
    EXPECT_EQ(list, List({{7, {1, 2, 3}}, {9, {4}}, {7, {1, 2, 3}}, {9, {4}}}));

    omu_ListArrayInt self = List({{7, {1, 2}}});
    self.AppendOrMerge(self);
    self.AppendOrMerge(self.ConstRuns()[0]);
    EXPECT_EQ(self, List({{7, {1, 2, 1, 2, 1, 2, 1, 2}}}));
    EXPECT_EQ(DebugText([&] { List({{7, {1, 2}}, {-9, {}}}).Print(); }), "InstId = 7\nIds = 1 2\nInstId = -9\nIds =\n");
}

TEST(ListOfRuns, Slices_and_positions_agree_with_the_flat_list)
{
    const omu_ListArrayInt list = List({{7, {1, 2, 3}}, {9, {4}}, {8, {}}, {7, {5, 6}}});
    EXPECT_EQ(list.Slice(1, 3), List({{7, {2, 3}}}));
    EXPECT_EQ(list.Slice(0, 100), list);
    EXPECT_TRUE(list.Slice(0, 100).ConstRuns()[0].ConstIds().SharesWith(list.ConstRuns()[0].ConstIds()));
    EXPECT_EQ(list.Length(), 6);
    for (int from = -2; from < 9; ++from) {
        for (int to = -2; to < 9; ++to) {
            const omu_ListArrayInt slice = list.Slice(from, to);
            std::vector<int> ids;
            int id, instance = 0, offset, run;
            for (int i = 0; i < slice.Length(); ++i) {
                slice.Index(i, id, instance, offset, run);
                EXPECT_EQ(instance, id == 4 ? 9 : 7);
                EXPECT_EQ(slice.ConstRuns()[run].ConstIds()[offset], id);
                ids.push_back(id);
            }
            std::vector<int> expected;
            for (int i = std::max(from, 0); i < std::min(to, 6); ++i) {
                expected.push_back(i + 1);
            }
            EXPECT_EQ(ids, expected) << from << ' ' << to;
        }
    }
    int untouched = 5;
    list.Index(6, untouched, untouched, untouched, untouched);
    list.Index(-1, untouched, untouched, untouched, untouched);
    EXPECT_EQ(untouched, 5);
}

TEST(ListOfRuns, Compressed_runs_agree_with_sets)
{
    EXPECT_EQ(List({{9, {5, 2}}, {7, {1}}, {9, {2, 3}}}).Compress(), List({{9, {2, 3, 5}}, {7, {1}}}));
    EXPECT_EQ(List({{1, {}}}).Compress(), List({{1, {}}}));
    for (const int range : {20, 100000, 2147483647}) {
        std::mt19937 random(6);
        omu_ListArrayInt list;
        std::map<int, std::set<int>> model;
        cow_List<int> order;
        for (int i = 0; i < 3000; ++i) {
            const int instance = static_cast<int>(random() % 5) - 2;
            const int id = static_cast<int>(random() % static_cast<unsigned int>(range)) * (i % 2 == 0 ? 1 : -1);
            list.AppendOrMerge(IdRun(instance, {id}));
            if (model[instance].empty()) {
                order.Append(instance);
            }
            model[instance].insert(id);
        }
        cow_List<int> keys{99};
        list.GetKeys(keys);
        EXPECT_EQ(keys, order);
        const omu_ListArrayInt compressed = list.Compress();
        ASSERT_EQ(compressed.ConstRuns().Length(), order.Length());
        for (const IdRun& run : compressed.ConstRuns()) {
            const std::set<int>& ids = model[run.InstanceId()];
            EXPECT_EQ(run.ConstIds(), IdRun::Ids(ids.begin(), ids.end())) << range;
        }
    }
}

TEST(RaggedMatrix, Rows_have_lengths_of_their_own)
{
    RecordedAssertions assertions;
    omu_VaryMatrixUint32 matrix(2, 1, 1.5, 2);
    EXPECT_TRUE(matrix.AddRow() && matrix.InsertRow(0) && matrix.InsertRow(1) && !matrix.InsertRow(4));
    for (unsigned int i = 0; i < 9; ++i) {
        ASSERT_TRUE(matrix.Add(1, i));
    }
    EXPECT_TRUE(matrix.Remove(1, 0) && !matrix.Remove(1, 8));
    EXPECT_TRUE(matrix.Insert(2, 0, 5) && matrix.Insert(2, 1, 8) && !matrix.Insert(2, 3, 9));
    EXPECT_TRUE(matrix.Set(2, 0, 6) && !matrix.Set(2, 2, 9));
    EXPECT_FALSE(matrix.Add(3, 9) || matrix.Set(3, 0, 9) || matrix.Insert(3, 0, 9) || matrix.Remove(3, 0));
    EXPECT_EQ(DebugText([&] { matrix.Debug(); }),
              "Start of Matrix\nNo. of rows = 3\nRow 0:\nRow 1: 1 2 3 4 5 6 7 8\nRow 2: 6 8\nEnd of Matrix\n");
    EXPECT_EQ(matrix.Get(2, 1) + matrix.Get(2, 2) + matrix.Get(3, 0) + matrix.RowLength(3), 8U);
    EXPECT_TRUE(matrix.RemoveRow(1) && !matrix.RemoveRow(2));
    EXPECT_EQ(matrix.RowLength(1), 2U);
    EXPECT_EQ(assertions.Take(), Texts{});
    EXPECT_EQ(matrix[matrix.NumRows()], nullptr);
    EXPECT_EQ(assertions.Take(), Texts{"i < length_"});
    EXPECT_TRUE(omu_VaryMatrixUint32().AddRow());
    EXPECT_FALSE(omu_VaryMatrixUint32(0, 4, 2, 2).AddRow());
}

TEST(RealArray, States_and_ownership_are_as_promised)
{
    RecordedAssertions assertions;
    double values[] = {1.5, 2.5};
    const std::unique_ptr<omu_ArrayReal64> wrap(omu_ArrayReal64::NewWrap(2, values));
    const omu_ArrayReal64 own(2, values);
    const std::unique_ptr<omu_ArrayReal64> copy(wrap->Copy());
    (*wrap)[1] = 9;
    const std::unique_ptr<double[]> data(wrap->GetData());
    EXPECT_EQ((std::vector{values[1], data[1], own[1], (*copy)[1]}), (std::vector{9.0, 9.0, 2.5, 2.5}));
    EXPECT_EQ(omu_ArrayReal64(0).GetData(), nullptr);
    EXPECT_EQ(assertions.Take(), Texts{});

    omu_ArrayReal64 fresh;
    const std::unique_ptr<omu_ArrayReal64> freshCopy(fresh.Copy());
    EXPECT_EQ(fresh.Length(), 0U);
    EXPECT_EQ(freshCopy->GetData(), nullptr);
    EXPECT_EQ(assertions.Take(), (Texts{"initialized", "initialized"}));
    fresh.Initialize(3);
    fresh.Initialize(4);
    EXPECT_EQ(fresh.Length(), 3U);
    EXPECT_EQ(fresh[2], 0);
    EXPECT_EQ(omu_ArrayReal64(0, nullptr).Length(), 0U);
    EXPECT_EQ(omu_ArrayReal64(4, nullptr).Length(), 0U);
    const std::unique_ptr<omu_ArrayReal64> none(omu_ArrayReal64::NewWrap(0, values));
    EXPECT_EQ(assertions.Take(), (Texts{"! initialized", "len != 0", "dat != 0", "dat != 0", "len != 0"}));
}
