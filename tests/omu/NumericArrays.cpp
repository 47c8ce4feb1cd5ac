#include "Values.h"

namespace
{

using Number = omu_PrimNumber;
using Kind = omu_PrimNumber::DataTypeEnm;

constexpr int HIGHEST = std::numeric_limits<int>::max();

omu_PrimArray Matrix()
{
    return omu_PrimArray(Tuple({Tuple({1, 2, 3}), Tuple({4, 5, 6})}));
}

std::string BuildError(const omu_PrimSequence& sequence)
{
    return RefusalOf([&] { omu_PrimArray array(sequence); });
}

/// A sequence that is shorter from the third look on: its shape is read first, then its values.
struct Fickle : omu_PrimTuple
{
    Fickle() : omu_PrimTuple(Tuple({1, 2})) {}
    int Length() const override { return ++looks > 2 ? 1 : 2; }
    mutable int looks = 0;
};

} // namespace

TEST(NumericArrays, Shape_strides_and_text)
{
    const int shape[] = {2, 3};
    const double values[] = {1, 2, 3, 4.5, 5, 6};
    const omu_PrimArray real(2, shape, values);
    EXPECT_EQ(std::pair(real.ConstGetStride(0), real.ConstGetStride(1)), std::pair(24, 8));
    EXPECT_EQ(Text(real), "array([[1.0, 2.0, 3.0], [4.5, 5.0, 6.0]], 'd')");
    const float half = 0.5F;
    EXPECT_EQ(Text(omu_PrimArray(0, nullptr, Number::REAL32, &half)), "array(0.5, 'f')");
    EXPECT_EQ(real.TypeString(), "omu_PrimArray");
    RecordedAssertions assertions;
    EXPECT_EQ(omu_PrimArray().AsString(-1), "array([], 'd')");
    EXPECT_EQ(assertions.Take(), Texts{"PrimArray::AsString depth < 0"});
}

TEST(NumericArrays, Impossible_shapes_are_refused_in_the_promised_order)
{
    const auto make = [](std::initializer_list<int> shape, Kind type) {
        return RefusalOf([&] { omu_PrimArray(static_cast<int>(shape.size()), shape.begin(), type, nullptr); });
    };
    EXPECT_EQ(make({2, -1}, Number::UINT32), "PrimArray only INT32, REAL32, REAL64 allowed");
    EXPECT_EQ(make({-1, HIGHEST}, Number::INT32), "PrimArray negative dimensions are not allowed");
    EXPECT_EQ(make({65536, 65536}, Number::INT32), "PrimArray can't allocate memory for array (data)");
    EXPECT_EQ(make({HIGHEST, HIGHEST, HIGHEST}, Number::REAL64), "PrimArray can't allocate memory for array (data)");
    EXPECT_EQ(make({HIGHEST, HIGHEST, 0}, Number::REAL64), "PrimArray can't allocate memory for array (data)");
    EXPECT_EQ(make({0, 3}, Number::REAL64), "");
    const std::vector<int> ones(201, 1);
    EXPECT_EQ(RefusalOf([&] { omu_PrimArray(201, ones.data(), Number::INT32, nullptr); }),
              "PrimArray more than 200 dimensions");
    RecordedAssertions assertions;
    EXPECT_EQ(omu_PrimArray(-1, nullptr, Number::UINT32, nullptr).Length(), 0);
    EXPECT_EQ(assertions.Take(), Texts{"PrimArray number of dimensions must be >= 0"});
}

TEST(NumericArrays, Sequences_of_numbers_become_arrays)
{
    EXPECT_EQ(Text(omu_PrimArray(Tuple({Tuple({1, 2.5}), Tuple({3, 4})}))), "array([[1.0, 2.5], [3.0, 4.0]], 'd')");
    EXPECT_EQ(Text(omu_PrimArray(List({1, omu_PrimNumber(0.5F)}))), "array([1.0, 0.5], 'f')");
    EXPECT_EQ(Text(omu_PrimArray(List({omu_PrimNumber(0.5F), 1.0}))), "array([0.5, 1.0], 'd')");
    EXPECT_EQ(Text(omu_PrimArray(Tuple({omu_PrimNumber(5, Number::INT8)}))), "array([5], 'i')");
    EXPECT_EQ(Text(omu_PrimArray(Tuple({omu_PrimNumber(Number::UINT32, 0, 5)}))), "array([5], 'i')");
    EXPECT_EQ(Text(omu_PrimArray(Tuple({omu_PrimNumber(4000000000U), 1.0}))), "array([4000000000.0, 1.0], 'd')");
    EXPECT_EQ(Text(omu_PrimArray(Tuple({Matrix(), Matrix()}))),
              "array([[[1, 2, 3], [4, 5, 6]], [[1, 2, 3], [4, 5, 6]]], 'i')");
    EXPECT_EQ(Text(omu_PrimArray(Tuple({Tuple({}), Tuple({})}))), "array([[], []], 'd')");

    const std::string report = "omu_PrimArray from sequence failed - ";
    EXPECT_EQ(BuildError(Tuple({Tuple({1, 2}), Tuple({3})})),
              report + "dimensions. different dims in child. dimThis=1, j=0");
    EXPECT_EQ(BuildError(Tuple({Tuple({1, 2}), 3})),
              report + "dimensions. different num dims in child. nd=1, ndTemp=0, i=1");
    EXPECT_EQ(BuildError(Tuple({1, Tuple({1, 2})})),
              report + "dimensions. different num dims in child. nd=0, ndTemp=1, i=1");
    EXPECT_EQ(BuildError(Tuple({1, "a"})), report + "dimensions. Child not PrimSequence or PrimNumber");
    EXPECT_EQ(BuildError(omu_PrimTuple(1)), report + "dimensions. Child not PrimSequence or PrimNumber");
    EXPECT_EQ(BuildError(Tuple({1, omu_PrimNumber(4000000000U)})), report + "dimensions. Could not fit type");
    EXPECT_EQ(BuildError(Tuple({1, omu_PrimNumber(static_cast<Kind>(6), 1, 0)})),
              report + "dimensions. Items. tc==NO_TYPE. pn.DT=6, tc=2");

    RecordedAssertions assertions;
    const std::string shape = "PrimArray Sequence not same shape as new PrimArray data";
    EXPECT_EQ(BuildError(Fickle()), report + "copyValues. " + shape);
    int place = 0;
    cow_String message;
    EXPECT_FALSE(copyValuesFromSequence(Tuple({"a"}), std::array{1}, Number::INT32, &place, message));
    EXPECT_EQ(assertions.Take(), (Texts{shape, message.AsCharPtr()}));
    EXPECT_EQ(message, "PrimArray something wrong in the sequence");
}

TEST(NumericArrays, Elements_are_read_and_written_by_index)
{
    omu_PrimArray array = Matrix();
    EXPECT_EQ(array.ConstGetInt(1, 0) + array.ConstGetDouble(0, 2), 7.0);
    array.SetItem(omu_PrimNumber(-7.9), 1, 2);
    EXPECT_EQ(array.ConstGetItem(1, 2).AsString(0), "-7");
    array.SetItem(omu_PrimNumber(1e10), 0, 0);
    EXPECT_EQ(array.ConstGetInt(0, 0), HIGHEST);
    array.SetItem(omu_PrimNumber(Number::UINT32, 0, 9), 0, 0);
    EXPECT_EQ(array.ConstGetInt(0, 0), 9);
    EXPECT_EQ(RefusalOf([&] { array.ConstGetInt(1); }), "less indices given than size of array (1, 2)");
    EXPECT_EQ(RefusalOf([&] { array.SetItem(omu_PrimNumber(0), 1, 1, 1); }),
              "more indices given than size of array (3, 2)");
    EXPECT_EQ(RefusalOf([&] { array.ConstGetDouble(1, 3); }), "index out of range, dimension 1");
    EXPECT_EQ(RefusalOf([&] { array.ConstGetDouble(-1, 0); }), "index out of range, dimension 0");

    RecordedAssertions assertions;
    double place = 5;
    putPrimNumberAtPtr(omu_PrimNumber(1), Number::INT16, &place);
    EXPECT_EQ(place, 5.0);
    EXPECT_EQ(getPrimNumberAtPtr(&place, Number::UINT32).AsString(0), "0");
    EXPECT_EQ(getDoubleAtPtr(&place, Number::INT8), 0.0);
    EXPECT_EQ(assertions.Take(),
              (Texts{"PrimArray wrong numeric type", "wrong numeric type", "PrimArray wrong numeric type"}));
}

TEST(NumericArrays, Index_goes_along_the_first_dimension)
{
    auto array = std::make_unique<omu_PrimArray>(Matrix());
    EXPECT_EQ(Text(*array->Index(1)), "array([4, 5, 6], 'i')");
    const omu_PrimArray row = static_cast<const omu_PrimArray&>(*array->Index(0));
    const std::string outside = "PrimArray index out of bounds";
    for (const int index : {2, -1, HIGHEST}) {
        EXPECT_EQ(RefusalOf([&] { array->Index(index); }), outside);
    }
    array.reset();
    EXPECT_EQ(Text(*row.Index(2)), "3") << "a view outlives its source";
    EXPECT_EQ(RefusalOf([] { omu_PrimArray().Index(0); }), outside);
    const double value = 2.5;
    const omu_PrimArray single(0, nullptr, &value);
    EXPECT_EQ(Text(*single.Index(0)), "2.5");
    EXPECT_EQ(RefusalOf([&] { single.Index(1); }), outside);
}

TEST(NumericArrays, Slice_repeat_and_concat_go_along_the_first_dimension)
{
    const omu_PrimArray flat(Tuple({0, 1, 2, 3, 4}));
    const std::tuple<int, int, std::string> rows[] = {{-2, 100, "3, 4"}, {1, -1, "1, 2, 3"}, {-9, 1, "0"},
                                                      {4, 2, ""},        {9, 12, ""},        {0, -9, ""}};
    for (const auto& [low, high, items] : rows) {
        EXPECT_EQ(TextAndDelete(flat.Slice(low, high)), "array([" + items + "], 'i')") << low << ':' << high;
    }
    EXPECT_EQ(TextAndDelete(Matrix().Slice(1, 2)), "array([[4, 5, 6]], 'i')");
    EXPECT_EQ(TextAndDelete(omu_PrimArray(Tuple({1, 2})).Repeat(2)), "array([1, 2, 1, 2], 'i')");
    EXPECT_EQ(TextAndDelete(flat.Repeat(-1)), "array([], 'i')");
    for (const int count : {HIGHEST / 5, HIGHEST}) {
        EXPECT_EQ(RefusalOf([&] { flat.Repeat(count); }), "PrimArray can't allocate memory for array (data)");
    }

    omu_PrimList more = List({List({0.5, 1, 2})});
    EXPECT_EQ(TextAndDelete(Matrix().Concat(&more)), "array([[1.0, 2.0, 3.0], [4.0, 5.0, 6.0], [0.5, 1.0, 2.0]], 'd')");
    omu_PrimArray self = Matrix();
    EXPECT_EQ(TextAndDelete(self.Concat(&self)), "array([[1, 2, 3], [4, 5, 6], [1, 2, 3], [4, 5, 6]], 'i')");
    omu_PrimList other = List({List({1, 2})});
    EXPECT_EQ(RefusalOf([&] { self.Concat(&other); }), "PrimArray different dimensions behind the first");
    omu_PrimArray single(0, nullptr, nullptr);
    EXPECT_EQ(RefusalOf([&] { self.Concat(&single); }), "PrimArray without dimensions is no sequence");
}

TEST(NumericArrays, Elements_are_shared_until_one_side_writes)
{
    omu_PrimArray array = Matrix();
    const omu_PrimArray kept = array;
    const std::unique_ptr<omu_PrimSequence> slice(array.Slice(1, 2));
    const omu_Primitive* const row = array.Index(1);
    EXPECT_EQ(array.ConstGetData(), kept.ConstGetData());
    EXPECT_EQ(static_cast<const omu_PrimArray*>(row)->ConstGetData(),
              static_cast<const omu_PrimArray&>(*slice).ConstGetData());
    array.SetItem(omu_PrimNumber(0), 1, 0);
    EXPECT_EQ(kept.ConstGetInt(1, 0), 4) << "a copy written to leaves the source unchanged";
    EXPECT_EQ(Text(*slice), "array([[4, 5, 6]], 'i')");
    const void* const own = array.ConstGetData();
    array.Index(0); // what it gave is dropped by the write and costs no clone
    array.SetItem(omu_PrimNumber(9), 0, 1);
    EXPECT_EQ(array.ConstGetData(), own);
    EXPECT_EQ(Text(array), "array([[1, 9, 3], [0, 5, 6]], 'i')");
}

TEST(NumericArrays, Views_with_strides_stay_inside_their_storage)
{
    const std::int32_t values[] = {1, 2, 3, 4, 5, 6};
    const auto storage = cow_CountedHld<omu_PrimArrayData>::Make(values, sizeof values);
    const int shape[] = {3, 2};
    const auto view = [&](std::initializer_list<int> strides, int offset, char pyType = 'i') {
        return omu_PrimArray(2, shape, strides.begin(), storage->Bytes() + offset, pyType, Number::INT32, storage);
    };
    omu_PrimArray transposed = view({4, 12}, 0);
    EXPECT_FALSE(transposed.IsContiguous());
    EXPECT_EQ(Text(transposed), "array([[1, 4], [2, 5], [3, 6]], 'i')");
    EXPECT_TRUE(*Unstream(Stream(transposed)) == transposed);
    EXPECT_EQ(Text(view({-8, -4}, 20)), "array([[6, 5], [4, 3], [2, 1]], 'i')");
    const std::string outside = "PrimArray strides lead outside the data";
    EXPECT_EQ(RefusalOf([&] { view({4, 12}, 4); }), outside);
    EXPECT_EQ(RefusalOf([&] { view({-8, -4}, 16); }), outside);
    EXPECT_EQ(RefusalOf([&] { view({HIGHEST, HIGHEST}, 0); }), outside);
    RecordedAssertions assertions;
    EXPECT_EQ(view({8, 4}, 0, 'd').ConstGetPyType(), 'i');
    EXPECT_EQ(assertions.Take(), Texts{"omu_PrimArray ctor failed - bad pyType"});
    transposed.SetItem(omu_PrimNumber(0), 0, 0);
    EXPECT_EQ(Text(transposed), "array([[0, 4], [2, 5], [3, 6]], 'i')");
    EXPECT_EQ(storage->Bytes()[0], 1) << "written in a copy";
}

TEST(NumericArrays, Equality_says_where_arrays_differ)
{
    const auto difference = [](const omu_PrimArray& a, const omu_Primitive& b) {
        return DebugText([&] { EXPECT_FALSE(a == b); });
    };
    const omu_PrimArray array = Matrix();
    omu_PrimArray changed = array;
    changed.SetItem(omu_PrimNumber(0), 1, 2);
    const int shape[] = {2, 3};
    EXPECT_EQ(difference(array, omu_PrimArray()), "PrimArray. different numDims 2 and 1\n");
    EXPECT_EQ(difference(array, omu_PrimArray(Tuple({Tuple({1, 2, 3})}))), "PrimArray. different dim[0] 2 and 1\n");
    EXPECT_EQ(difference(array, omu_PrimArray(2, shape, nullptr)), "PrimArray. different typeCode 2 and 4\n");
    EXPECT_EQ(difference(array, changed), "PrimArray. different Index(1)\n");
    EXPECT_EQ(difference(array, Tuple({})), "PrimArray. different types\n");
    const omu_PrimArray nan(Tuple({std::numeric_limits<double>::quiet_NaN()}));
    EXPECT_EQ(difference(nan, nan), "PrimArray. different Index(0)\n");
    const auto scalar = [&](double value) { return omu_PrimArray(0, nullptr, &value); };
    EXPECT_EQ(difference(scalar(1), scalar(2)), "PrimArray. different Index(0)\n");
    EXPECT_EQ(DebugText([&] { EXPECT_TRUE(array == Matrix()); }), "");
}

TEST(NumericArrays, Damaged_streams_are_refused_before_memory_is_taken)
{
    // Type id, type code, element type, number of dimensions, dimensions, element count.
    ExpectRefused(Stream(Matrix()), {{"unsigned elements", 5, Number::UINT32},
                                     {"unknown elements", 5, -1},
                                     {"negative dimension", 13, -2},
                                     {"large dimension", 13, HIGHEST},
                                     {"smaller one", 13, 1},
                                     {"large count", 21, HIGHEST},
                                     {"count beyond the end", 21, 7}});
    const int empty[] = {2, 0};
    ExpectRefused(Stream(omu_PrimArray(2, empty, Number::INT32, nullptr)), {{"rows without end", 13, HIGHEST / 16}});
}
