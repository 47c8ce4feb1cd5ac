#include "Values.h"

namespace
{

using Strings = omu_PrimDictionary<cow_String>;
using Ints = omu_PrimDictionary<int>;

/// The stored kinds that a target of each type takes are these, one letter each.
template <class... T> void ExpectAccepted(const Strings& values, const std::string& promised)
{
    const auto accepted = [&values](auto target) {
        std::string letters;
        for (const cow_String& key : values.Keys()) {
            letters += values.Get(target, key) != 0 ? key.AsCharPtr() : "";
        }
        return letters;
    };
    EXPECT_EQ(Texts({accepted(T{})...}), Texts(sizeof...(T), promised));
}

} // namespace

TEST(Dictionaries, Each_target_takes_its_kinds_of_values)
{
    Part part;
    Strings values;
    values.Put(5, "i");
    values.Put(7U, "u");
    values.Put(2.5, "f");
    values.Put("text", "s");
    values.Put(omi_complex(1, 2), "x");
    values.Put(omu_PrimPath(), "p");
    values.Put(Tuple({1, 2}), "t");
    values.Put(Tuple({Tuple({"k", 1.5})}), "m");
    values.Put(cow_List<cow_String>{"a"}, "l");
    values.Put(Tuple({Tuple({"a"}), Tuple({"b"})}), "2");
    values.Put(omu_PrimArray(Tuple({1, 2})), "a");
    values.Put(omu_PrimArray(Tuple({Tuple({1.5})})), "b");
    values.Put(omu_PrimBool<1>(true), "c");
    values.Put(omu_PrimNone(), "n");
    values.Put(omu_PrimType(), "y");
    Ints ints;
    ints.Put(1, 1);
    values.Put(ints, "I");
    values.Put(values, "S");
    values.Put(Strings(), "{");
    values.Put(Ints(), "}");
    values.Put(omu_ObjectRef(part), "o");
    values.Put(omu_PrimExpr("e"), "e");
    ExpectAccepted<double>(values, "fiu");
    ExpectAccepted<int, unsigned int>(values, "iu");
    ExpectAccepted<const char*, cow_String, utl_FilePath>(values, "s");
    ExpectAccepted<omi_complex>(values, "x");
    ExpectAccepted<omu_PrimPath>(values, "p");
    ExpectAccepted<omu_PrimTuple>(values, "2ablmt");
    ExpectAccepted<omu_PrimArray>(values, "ab");
    ExpectAccepted<omu_PrimEnumBase>(values, "c");
    ExpectAccepted<omu_PrimNone>(values, "n");
    ExpectAccepted<omu_PrimType>(values, "y");
    ExpectAccepted<Strings>(values, "S{}");
    ExpectAccepted<Ints>(values, "I{}");
    ExpectAccepted<const omu_InterfaceObj*>(values, "o");
    ExpectAccepted<cow_List<int>, cow_List<float>, cow_1DArray<int>, cow_1DArrayList<int, int>,
                   cow_1DArrayList<float, float>, cow_1DArrayList<double, double>>(values, "at");
    ExpectAccepted<cow_List<cow_String>, cow_1DArrayList<cow_String, cow_String>>(values, "l");
    ExpectAccepted<cow_2DArray<double>>(values, "b");
    ExpectAccepted<cow_2DArray<cow_String>>(values, "2");
    ExpectAccepted<cow_Map<cow_String, float>>(values, "m");

    const omu_InterfaceObj* object = nullptr;
    values.Get(object, "o");
    EXPECT_EQ(object, &part) << "a reference stands for what it refers to";
    auto gone = std::make_unique<Part>();
    values.Put(omu_ObjectRef(*gone), "gone");
    gone.reset();
    EXPECT_EQ(values.Get(object, "gone"), 0);
    EXPECT_TRUE(values.Get(ints, "{") != 0 && ints.Length() == 0);
    omu_PrimTuple tuple;
    values.Get(tuple, "b");
    EXPECT_EQ(Text(tuple), "((1.5,),)");
}

TEST(Dictionaries, Numbers_convert_as_promised)
{
    Ints values;
    values.Put(5, 0);
    values.Put(7U, 1);
    values.Put(omu_PrimNumber(omu_PrimNumber::INT32, -2.9, 0), 2);
    const std::tuple<double, int, unsigned int> promised[] = {{5, 5, 0}, {0, 0, 7}, {-2.9, -2, 0}};
    for (int key = 0; key < 3; ++key) {
        std::tuple<double, int, unsigned int> got(-1, -1, 99);
        auto& [real, integer, unsignedValue] = got;
        EXPECT_EQ(values.Get(real, key) + values.Get(integer, key) + values.Get(unsignedValue, key), 3);
        EXPECT_EQ(got, promised[key]);
    }
    int target = 42;
    values.Put(1.5, 3);
    EXPECT_EQ(values.Get(target, 3), 0) << "a float is no int";
    EXPECT_EQ(target, 42);
}

TEST(Dictionaries, A_value_put_again_replaces_the_old_one)
{
    const int before = Part::Living();
    Strings values;
    values.Put(Part(), "k");
    EXPECT_EQ(Part::Living(), before + 1);
    values.Put(1, "k");
    EXPECT_EQ(Part::Living(), before);
    values.Put(omu_PrimHolder(), "null");
    EXPECT_EQ(Text(values), "{'k': 1, 'null': None}");
}

TEST(Dictionaries, Text_kinds_and_keys_of_which_an_absent_one_is_an_assertion)
{
    Strings strings;
    EXPECT_EQ(Text(strings), "{}");
    strings.Put(Tuple({1}), "it's");
    strings.Put("v", "a");
    Ints ints;
    ints.Put(strings, 10);
    ints.Put(1.0, -2);
    EXPECT_EQ(Text(ints), "{-2: 1.0, 10: {'a': 'v', 'it\\'s': (1,)}}");
    EXPECT_EQ(std::string({strings.Kind(), ints.Kind()}), "si");
    EXPECT_EQ(ints.Keys(), (cow_List<int>{-2, 10}));
    ExpectRefused(Stream(ints), {{"equal keys", 9, 10}, {"null value", 13, 0}, {"count beyond memory", 5, 0x7FFFFFFF}});
    EXPECT_EQ(ints.Values()[1].ConstGet(), ints.Find(10));

    RecordedAssertions assertions;
    EXPECT_TRUE(Ints().Get(1).IsType('n'));
    EXPECT_EQ(assertions.Take(), Texts{"dict.IsMember(key)"});
    EXPECT_EQ(assertions.Places(), Texts{"source/include/omu_PrimDictionary 652"});
}

TEST(Dictionaries, Equality_is_that_of_class_keys_and_values)
{
    Strings one, other, nan;
    one.Put(1, "a");
    EXPECT_FALSE(one == other);
    other.Put(1.0, "a");
    EXPECT_TRUE(one == other);
    other.Put(2, "a");
    EXPECT_FALSE(one == other);
    EXPECT_FALSE(Ints() == Strings() || one == Tuple({"a"}));
    nan.Put(std::numeric_limits<double>::quiet_NaN(), "a");
    EXPECT_FALSE(nan == Strings(nan));
}

TEST(Dictionaries, Copies_share_values_and_deep_copies_do_not)
{
    Strings values;
    values.Put(Tuple({1}), "a");
    Strings copy = values;
    EXPECT_EQ(copy.Find("a"), values.Find("a"));
    copy.Put(2, "b");
    EXPECT_FALSE(values.IsMember("b"));
    EXPECT_EQ(copy.Find("a"), values.Find("a")) << "the write cloned no value";
    const Strings deep = values.DeepCopy();
    EXPECT_TRUE(deep == values);
    EXPECT_NE(deep.Find("a"), values.Find("a"));
}
