#include "Values.h"
#include "VirtualSlots.h"
#include "omu_TypeErrorException.h"

namespace
{

using Kind = omu_PrimNumber::DataTypeEnm;

template <class T> constexpr auto PutOf = static_cast<void (omu_PrimTuple::*)(T)>(&omu_PrimTuple::Put);
template <class T> constexpr auto GetOf = static_cast<void (omu_PrimTuple::*)(T&)>(&omu_PrimTuple::Get);

/// The message that End throws, or "".
std::string EndError(omu_PrimTuple& tuple, const char* methodName)
{
    return ErrorOf<omu_TypeErrorException>([&] { tuple.End(methodName); });
}

/// Runs f(target) on the arguments `items`.
template <class T> std::string CallF(omu_PrimTuple items, T& target)
{
    items.Begin();
    items.Get(target);
    return EndError(items, "f");
}

/// What f says to a value that fits no target.
template <class T> std::string Refusal(T target)
{
    return CallF(Tuple({omu_PrimExpr("x")}), target);
}

/// A T that was put is got again, and a target of its kind names itself to a value that does not fit.
template <class T> void ExpectMarshalled(const T& value, const char* text, const std::string& kind)
{
    omu_PrimTuple tuple(1);
    tuple.Put(value);
    EXPECT_EQ(Text(tuple), text);
    T got{};
    EXPECT_EQ(CallF(tuple, got), "") << text;
    EXPECT_TRUE(got == value) << text;
    EXPECT_EQ(Refusal(value), "f[0]; found expression, expecting " + kind);
}

omu_PrimTuple Number(int value, Kind kind)
{
    return Tuple({omu_PrimNumber(kind, value, kind == omu_PrimNumber::UINT32 ? static_cast<unsigned>(value) : 0)});
}

struct NamedTuple : omu_PrimTuple
{
    using omu_PrimTuple::omu_PrimTuple;
    using omu_PrimTuple::SetDefaultName;
};

} // namespace

TEST(TupleMarshalling, Virtual_operations_stand_in_their_promised_slots)
{
    const auto getObject =
        static_cast<const omu_InterfaceObj* (omu_PrimTuple::*)(const char*, const omu_InterfaceObj*)>(
            &omu_PrimTuple::Get);
    ExpectSlots({At(6, &omu_Primitive::DynTypeId), At(7, &omu_PrimSequence::Length), At(11, &omu_PrimSequence::Concat),
                 At(7, &omu_PrimDictionaryBase::Kind), At(12, PutOf<const cow_1DArray<int>&>),
                 At(17, PutOf<omu_Primitive*>), At(24, PutOf<const omu_PrimExpr&>), At(33, PutOf<char>),
                 At(34, getObject), At(35, GetOf<cow_Map<cow_String, float>>), At(46, GetOf<omu_PrimType>),
                 At(56, GetOf<cow_String>), At(63, GetOf<bool>), At(64, &omu_PrimTuple::Begin),
                 At(65, &omu_PrimTuple::End)});
}

TEST(TupleMarshalling, Integer_and_boolean_targets_take_their_own_kinds)
{
    const auto taken = [](const omu_PrimTuple& items, auto... targets) {
        return (std::string() + ... + (CallF(items, targets).empty() && targets == 65 ? "1" : "0"));
    };
    const char* const promised[] = {"10001", "01001", "00101", "00001", "00001", "00011"}; // in the order of the kinds
    for (int kind = omu_PrimNumber::INT8; kind <= omu_PrimNumber::UINT32; ++kind) {
        EXPECT_EQ(taken(Number(65, Kind{kind}), char(), short(), int(), 0U, 0.0), promised[kind]);
        const bool isBool = kind <= omu_PrimNumber::INT32;
        for (const int value : {0, 1, 2}) {
            bool flag = value != 1;
            const bool expected = isBool && value < 2 ? value == 1 : flag;
            EXPECT_EQ(CallF(Number(value, Kind{kind}), flag),
                      isBool && value < 2 ? "" : "f[0]; found number, expecting boolean");
            EXPECT_EQ(flag, expected) << kind << ' ' << value;
        }
    }
}

TEST(TupleMarshalling, What_was_put_is_got_and_a_mismatch_names_what_was_wanted)
{
    ExpectMarshalled(cow_1DArray<int>{1, 2}, "((1, 2),)", "sequence of Ints");
    ExpectMarshalled(cow_List<cow_String>{"u", "v"}, "(('u', 'v'),)", "sequence of Strings");
    ExpectMarshalled(omu_PrimType(Part()), "(PartType,)", "PartType");
    ExpectMarshalled(omu_PrimNone(), "(None,)", "None");
    ExpectMarshalled(omu_PrimDictionary<cow_String>(), "({},)", "dictionary with string keys");
    ExpectMarshalled(omu_PrimDictionary<int>(), "({},)", "dictionary with integer keys");
    ExpectMarshalled(omu_PrimArray(Tuple({1})), "(array([1], 'i'),)", "omu_PrimArray");
    ExpectMarshalled(Tuple({1, "a"}), "((1, 'a'),)", "tuple");
    ExpectMarshalled(omu_PrimPath(cow_List<cow_String>{"a", "b"}), "('a.b',)", "path");
    ExpectMarshalled(1.5F, "(1.5,)", "number");
    ExpectMarshalled(0.1, "(0.1,)", "number");
    ExpectMarshalled(utl_FilePath("/tmp/x"), "('/tmp/x',)", "string");
    ExpectMarshalled(omi_complex(1, -2), "(1+-2j,)", "complex");
    ExpectMarshalled(cow_String("x"), "('x',)", "string");
    ExpectMarshalled(4000000000U, "(4000000000,)", "uint32");
    ExpectMarshalled(-7, "(-7,)", "int32");
    ExpectMarshalled(static_cast<short>(-3), "(-3,)", "int16");
    ExpectMarshalled('A', "(65,)", "int8");

    const auto kinds = [](const auto&... targets) { return Texts{Refusal(targets).substr(34)...}; };
    EXPECT_EQ(kinds(false, omu_PrimBool<2>(true), cow_List<int>(), cow_List<float>(), cow_1DArrayList<int, int>(),
                    cow_1DArrayList<float, float>(), cow_1DArrayList<double, double>(),
                    cow_1DArrayList<cow_String, cow_String>(), cow_2DArray<double>(), cow_2DArray<cow_String>(),
                    cow_Map<cow_String, float>()),
              (Texts{"boolean", "ON or OFF", "sequence of Integers", "sequence of Floats", "sequence of Ints",
                     "sequence of Floats", "sequence of Floats", "sequence of Strings", "2D sequence of Floats",
                     "2D sequence of Strings", "Map of string to float"}));
    omu_PrimTuple tuple;
    EXPECT_EQ(CallF(Tuple({List({1})}), tuple), "");
    EXPECT_EQ(Text(tuple), "(1,)") << "a list got as a tuple";
    omu_PrimNone none;
    const omu_PrimTuple unfilled(1);
    EXPECT_EQ(Text(unfilled) + CallF(unfilled, none), "(None,)");
    EXPECT_EQ(unfilled, Tuple({none}));
}

TEST(TupleMarshalling, Counts_are_those_of_the_gets)
{
    // f(a, b=...)
    const char* const errors[] = {"f; not all required arguments specified; expected 1, got 0", "", "",
                                  "f; too many arguments; expected 1, got 3"};
    for (int count = 0; count < 4; ++count) {
        NamedTuple tuple(count);
        for (int i = 0; i < count; ++i) {
            tuple.Put(i);
        }
        tuple.SetDefaultName("f");
        int value = 0;
        tuple.Begin();
        tuple.Get(value);
        tuple.Optional();
        tuple.Get(value);
        EXPECT_EQ(tuple.Error(), *errors[count] != '\0');
        EXPECT_EQ(EndError(tuple, ""), errors[count]) << "the empty name stands for the default name";
        value = -1;
        tuple.Get(value);
        EXPECT_EQ(value, *errors[count] == '\0' ? 0 : count - 1) << "only a call that ended well is over";
    }
}

TEST(TupleMarshalling, A_value_put_is_freed_even_when_the_tuple_is_full)
{
    const int before = Part::Living();
    {
        RecordedAssertions assertions;
        omu_PrimTuple tuple(1);
        tuple.Put(new Part);
        tuple.Put(static_cast<omu_Primitive*>(new Part));
        EXPECT_EQ(assertions.Take(), Texts{"cursor < size"});
        EXPECT_EQ(Part::Living(), before + 1);
    }
    EXPECT_EQ(Part::Living(), before);
}
