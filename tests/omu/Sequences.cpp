#include "Values.h"
#include "omu_GenericTypeErrorException.h"
#include "utl/Counted.h"

namespace
{

constexpr int LOWEST = std::numeric_limits<int>::min();
constexpr int HIGHEST = std::numeric_limits<int>::max();

/// A tuple with `levels` levels of containers.
omu_PrimTuple Nested(int levels)
{
    omu_PrimTuple tuple = Tuple({1});
    for (int level = 1; level < levels; ++level) {
        tuple = Tuple({tuple});
    }
    return tuple;
}

/// Says that a tuple does not become a container by throwing.
template <class C> void ExpectRefused(C (omu_PrimTuple::*as)() const, std::initializer_list<omu_PrimTuple> tuples)
{
    for (const omu_PrimTuple& tuple : tuples) {
        EXPECT_THROW((tuple.*as)(), omu_GenericTypeErrorException) << Text(tuple);
    }
}

} // namespace

TEST(Sequences, Slices_clamp_their_bounds_as_promised)
{
    const omu_PrimTuple tuple = Tuple({0, 1, 2, 3, 4});
    const std::tuple<int, int, const char*> rows[] = {
        {0, 5, "(0, 1, 2, 3, 4)"}, {-2, 100, "(3, 4)"}, {1, -1, "(1, 2, 3)"}, {3, 3, "()"}, {4, 1, "()"},
        {0, LOWEST, "()"},         {7, HIGHEST, "()"}};
    for (const auto& [low, high, text] : rows) {
        EXPECT_EQ(TextAndDelete(tuple.Slice(low, high)), text) << low << ':' << high;
    }
    EXPECT_EQ(TextAndDelete(List({0, 1}).Slice(0, 1)), "[0]");

    // A low bound before the start is not clamped again: the missing items are reported and leave slots at the end.
    RecordedAssertions assertions;
    EXPECT_EQ(TextAndDelete(tuple.Slice(-7, 1)), "(0, None, None)");
    EXPECT_EQ(assertions.Take(), (Texts(2, "Tuple Index returned NULL")));
    EXPECT_TRUE(tuple.Index(5) == nullptr && tuple.Index(LOWEST) == nullptr && tuple[HIGHEST].IsNull());
    EXPECT_EQ(assertions.Take(), (Texts(3, "i < size")));
}

TEST(Sequences, Repeat_and_concat_copy_items_in_order)
{
    const omu_PrimTuple tuple = Tuple({1, "a"});
    EXPECT_EQ(TextAndDelete(tuple.Repeat(2)), "(1, 'a', 1, 'a')");
    EXPECT_EQ(TextAndDelete(tuple.Repeat(0)) + TextAndDelete(tuple.Repeat(LOWEST)), "()()");
    EXPECT_EQ(TextAndDelete(Tuple({}).Repeat(HIGHEST)), "()");
    EXPECT_THROW(tuple.Repeat(HIGHEST), std::bad_alloc);
    EXPECT_EQ(TextAndDelete(List({1}).Repeat(2)), "[1, 1]");
    omu_PrimArray array(Tuple({Tuple({1, 2}), Tuple({3, 4})}));
    EXPECT_EQ(TextAndDelete(tuple.Concat(&array)), "(1, 'a', array([1, 2], 'i'), array([3, 4], 'i'))");
    omu_PrimList list = List({2.5});
    EXPECT_EQ(TextAndDelete(tuple.Concat(&list)), "(1, 'a', 2.5)");
    EXPECT_EQ(TextAndDelete(list.Concat(&list)), "[2.5, 2.5]");
    const std::unique_ptr<omu_PrimSequence> repeated(tuple.Repeat(1));
    EXPECT_NE(repeated->Index(0), tuple.Index(0)) << "copies, not shares";

    RecordedAssertions assertions;
    omu_PrimTuple unfilled(1);
    EXPECT_EQ(TextAndDelete(unfilled.Concat(&list)), "(2.5, None)");
    EXPECT_EQ(assertions.Take(), Texts{"Tuple Index returned NULL"});
}

TEST(Sequences, Equality_is_that_of_class_length_and_items)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(Tuple({1, "a"}) == Tuple({1.0, "a"}));
    EXPECT_FALSE(Tuple({1}) == Tuple({1, 1}) || Tuple({1}) == Tuple({"1"}));
    EXPECT_FALSE(Tuple({1}) == List({1}) || Tuple({1}) == omu_PrimArray(Tuple({1})));
    EXPECT_TRUE(List({Tuple({})}) == List({Tuple({})}));
    const omu_PrimTuple tuple = Tuple({nan});
    EXPECT_FALSE(tuple == omu_PrimTuple(tuple)) << "a NaN equals nothing, shared or not";
}

TEST(Sequences, Copies_share_items_until_one_side_writes)
{
    omu_PrimTuple tuple(2);
    tuple.Put(Tuple({1}));
    omu_PrimTuple kept = tuple;
    const Clones<cow_Sequence<omu_PrimHolder>> slotClones;
    const Clones<omu_Primitive> valueClones;
    EXPECT_TRUE(tuple == kept);
    kept.Begin();
    omu_PrimTuple got;
    kept.Get(got);
    EXPECT_EQ(kept.begin(), tuple.begin()) << "reading never clones";
    EXPECT_EQ(got.begin(), static_cast<const omu_PrimTuple*>(kept.Index(0))->begin());
    EXPECT_TRUE(slotClones.Are(0));
    tuple.Put(2);
    EXPECT_EQ(Text(kept), "((1,), None)") << "a copy written to leaves the source unchanged";
    EXPECT_TRUE(tuple[0].SharesWith(kept[0])) << "only the slots were cloned";
    EXPECT_TRUE(slotClones.Are(1) && valueClones.Are(0));
}

TEST(Sequences, Nesting_ends_where_streams_end)
{
    const omu_PrimTuple deepest = Nested(omu_Primitive::MAX_NESTING);
    EXPECT_EQ(Text(deepest).size(), 3U * omu_Primitive::MAX_NESTING + 1);
    EXPECT_TRUE(deepest == Nested(omu_Primitive::MAX_NESTING));
    omu_PrimTuple tuple(1);
    EXPECT_THROW(tuple.Put(deepest), nex_TextException);
    EXPECT_THROW(omu_PrimDictionary<int>().Put(deepest, 1), nex_TextException);
    EXPECT_EQ(tuple.Index(0), nullptr);
    // A wrapper's attributes may grow after it was made.
    omu_PrimWrapper wrapper(0, nullptr);
    wrapper.Attributes().Put(Nested(omu_Primitive::MAX_NESTING - 2), "deep");
    EXPECT_THROW(tuple.Put(static_cast<omu_Primitive*>(wrapper.Copy())), nex_TextException);
    // The number at the bottom is one object more.
    const omu_PrimTuple writable = Nested(omu_Primitive::MAX_NESTING - 1);
    EXPECT_TRUE(*Unstream(Stream(writable)) == writable);
    bio_Ofilter out;
    EXPECT_NO_THROW(out << writable << writable) << "the depth goes down again";
    EXPECT_THROW(Stream(deepest), nex_TextException);
    std::string tooDeep;
    for (int level = 0; level <= bio_MAX_NESTING; ++level) { // tuples of one item
        tooDeep += Stream(Tuple({1})).substr(0, 9);
    }
    EXPECT_EQ(RefusalOf([&] { Unstream(tooDeep); }), "objects nested too deeply at offset 1804");
}

TEST(Sequences, Streams_are_read_into_an_existing_object_too)
{
    omu_PrimList list(3, 9), existing = List({1, 2, 3, 4, 5});
    list.Put(Tuple({1, "a"}));
    EXPECT_EQ(ReadFrom(BytesOf(list), existing), "");
    EXPECT_EQ(existing, list);
    EXPECT_EQ(existing.GetExtra(), 9);
    omu_PrimTuple tuple;
    EXPECT_EQ(ReadFrom(BytesOf(list), tuple), "type omu_PrimList where exactly omu_PrimTuple is expected at offset 0");
    ExpectRefused(Stream(Tuple({1})), {{"count beyond the end", 5, 9}, {"count beyond memory", 5, HIGHEST}});
}

TEST(Sequences, Kernel_objects_are_refused_before_the_first_byte)
{
    Part part;
    const omu_PrimTuple tuple = Tuple({1, Tuple({omu_ObjectRef(part)})});
    omu_PrimDictionary<int> dictionary;
    dictionary.Put(tuple, 1);
    bio_Ofilter out;
    EXPECT_THROW(omu_PrimTuple::WriteData(out, &tuple), nex_TextException);
    EXPECT_THROW(omu_PrimDictionary<int>::WriteData(out, &dictionary), nex_TextException);
    EXPECT_EQ(out.Size(), 0U);
    omu_PrimTuple reused = tuple;
    reused = Tuple({1});
    EXPECT_NO_THROW(Stream(reused));
}

TEST(Sequences, Whole_tuples_become_containers_and_arrays_tuples)
{
    const omu_PrimTuple ints = Tuple({1, 2});
    const omu_PrimTuple numbers = Tuple({1, 2.5});
    const omu_PrimTuple texts = Tuple({"a", "b"});
    const omu_PrimTuple grid = Tuple({Tuple({1, 2.5}), List({3, 4})});
    const omu_PrimTuple names = Tuple({texts});
    const omu_PrimTuple pairs = Tuple({Tuple({"b", 1}), List({"a", 2.5}), Tuple({"b", 3})});
    EXPECT_EQ(ints.AsListInt(), (cow_List<int>{1, 2}));
    EXPECT_EQ(ints.As1DArrayInt()[0] + ints.AsArrayInt()[1], 3);
    EXPECT_EQ(numbers.AsListFloat(), (cow_List<float>{1.0F, 2.5F}));
    EXPECT_EQ(static_cast<double>(numbers.AsArrayFloat()[1]) + numbers.AsArrayDouble()[1], 5.0);
    EXPECT_EQ(texts.AsListString()[0] + texts.AsArrayString()[1], "ab");
    const cow_2DArray<double> doubles = grid.As2DArrayDouble();
    EXPECT_EQ(std::pair(doubles.Rows(), doubles(1, 0)), std::pair(2, 3.0));
    EXPECT_EQ(names.As2DArrayString()(0, 1), "b");
    EXPECT_EQ(Tuple({}).As2DArrayDouble().Rows(), 0);
    EXPECT_EQ(Tuple({Tuple({}), Tuple({})}).As2DArrayDouble().Rows(), 2);
    const cow_Map<cow_String, float> map = pairs.AsMapString2Float();
    EXPECT_EQ(map.Length(), 2);
    EXPECT_EQ(*map.Find("b"), 3.0F) << "of a key given twice the last value counts";

    const omu_PrimTuple gap(1);
    const omu_PrimTuple ragged = Tuple({Tuple({1, 2}), Tuple({3})});
    const omu_PrimTuple shorts = Tuple({omu_PrimNumber(1, omu_PrimNumber::INT16)});
    ExpectRefused(&omu_PrimTuple::AsListInt, {numbers, texts, shorts, gap, grid});
    ExpectRefused(&omu_PrimTuple::AsListFloat, {texts, gap, grid});
    ExpectRefused(&omu_PrimTuple::AsListString, {ints, gap});
    ExpectRefused(&omu_PrimTuple::As2DArrayDouble, {ragged, ints, names, gap});
    ExpectRefused(&omu_PrimTuple::AsMapString2Float, {grid, texts, names, gap});

    EXPECT_EQ(Text(omu_PrimTuple(omu_PrimArray(Tuple({1, 2})))), "(1, 2)");
    EXPECT_EQ(Text(omu_PrimTuple(omu_PrimArray(Tuple({Tuple({1, 2.5}), Tuple({3, 4})})))), "((1.0, 2.5), (3.0, 4.0))");
    const int seven = 7;
    EXPECT_EQ(Text(omu_PrimTuple(omu_PrimArray(0, nullptr, omu_PrimNumber::INT32, &seven))), "(7,)");
    EXPECT_EQ(Text(omu_PrimTuple(cow_List<cow_String>{"a", "b"})), "('a', 'b')");
}
