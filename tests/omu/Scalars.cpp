#include "Values.h"
#include "omu_PrimVisitor.h"

namespace
{

constexpr double INF = std::numeric_limits<double>::infinity();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

omu_PrimPath Path(std::initializer_list<cow_String> components, char kind = omu_PrimPath::DEFAULT_KIND)
{
    return omu_PrimPath(cow_List<cow_String>(components), kind);
}

} // namespace

TEST(Number, Text_integer_equality_and_kind)
{
    using Number = omu_PrimNumber;
    constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
    const std::tuple<const char*, Number, const char*, std::int32_t> rows[] = {
        {"lowest int", Number(lowest), "-2147483648", lowest},
        {"int8", Number(-5, Number::INT8), "-5", -5},
        {"uint32", Number(4000000000U), "4000000000", highest},
        {"int truncated down", Number(Number::INT32, 2.9, 0), "2", 2},
        {"int truncated up", Number(Number::INT32, -2.9, 0), "-2", -2},
        {"int too large", Number(Number::INT32, 2147483648.0, 0), "2147483647", highest},
        {"int too small", Number(Number::INT32, -INF, 0), "-2147483648", lowest},
        {"int of NaN", Number(Number::INT32, NOT_A_NUMBER, 0), "0", 0},
        {"minus zero", Number(-0.0), "-0.0", 0},
        {"first whole with exponent", Number(-1e15), "-1e+15", lowest},
        {"float widened", Number(0.1F), "0.100000001490116", 0},
        {"infinity", Number(-INF), "-inf.0", lowest},
        {"NaN", Number(NOT_A_NUMBER), "nan.0", 0},
    };
    for (const auto& [name, number, text, integer] : rows) {
        EXPECT_EQ(number.AsString(0), text) << name;
        EXPECT_EQ(number.GetInt(), integer) << name;
    }

    EXPECT_TRUE(Number(7) == Number(7.0) && Number(0.5F) == Number(0.5)) << "whatever the kinds";
    EXPECT_TRUE(Number(7) != Number(7U) && Number(4000000000U) != Number(4000000000.0)) << "unsigned fields differ";
    EXPECT_NE(Number(NOT_A_NUMBER), Number(NOT_A_NUMBER));

    // Type id, type code, value, unsigned field, kind: only one that fits the type code is read.
    ExpectRefused(Stream(Number(1)), {{"below", 17, -1}, {"above", 17, 6}, {"float", 17, 3}, {"far", 17, 258}});
    ExpectRefused(Stream(Number(1.0)), {{"above", 17, 6}, {"int", 17, 2}});
}

TEST(Number, Text_is_that_of_the_C_library)
{
    std::mt19937_64 random(20261121);
    for (int i = 0; i < 20000; ++i) {
        // Any bits, fractions of few digits, and numbers around the changes to fewer decimals and to exponents.
        const double values[] = {
            std::bit_cast<double>(random()), (static_cast<double>(random() % 2000000) - 1e6) / std::pow(10, i % 12),
            1e9 + 1e-6 * (i % 16 - 8), 1e15 - 0.1 * (i % 8),
            std::round(std::ldexp(static_cast<double>(random()), -static_cast<int>(random() % 40)))};
        for (const double value : values) {
            char expected[32];
            std::snprintf(expected, sizeof expected, "%.15g", value);
            std::replace(expected, expected + std::strlen(expected), ',', '.'); // the locale may be any
            if (std::isnan(value)) {
                std::strcpy(expected, std::signbit(value) ? "-nan" : "nan"); // not every printf shows the sign
            }
            ASSERT_EQ(cow_String(value), expected);
            if (std::isfinite(value)) {
                const bool isWhole = std::string_view(expected).find_first_of(".e") == std::string_view::npos;
                ASSERT_EQ(omu_PrimNumber::DoubleAsString(value), cow_String(expected) + (isWhole ? ".0" : ""));
            }
        }
    }
}

TEST(Values, Equal_only_to_their_own_kind)
{
    const Item values[] = {omu_PrimNone(),        0,           omu_PrimComplex({}), "x", omu_PrimExpr("x"),
                           omu_PrimEnumBase("x"), Path({"x"}), omu_PrimType("x")};
    for (const auto& [left] : values) {
        for (const auto& [right] : values) {
            EXPECT_EQ(*left == *right, &left == &right) << left->TypeString() << " and " << right->TypeString();
        }
        const std::unique_ptr<omu_Primitive> copy(left->Copy());
        EXPECT_EQ(*copy, *left) << left->TypeString();
        EXPECT_EQ(copy->DynTypeId(), left->DynTypeId());
    }
}

TEST(Values, Visited_by_the_operation_of_their_class)
{
    struct Recorder : omu_PrimVisitor
    {
        void VisitNumber(const omu_PrimNumber&) override { seen = 1; }
        void VisitString(const omu_PrimString&) override { seen = 2; }
        void VisitArray(const omu_PrimArray&) override { seen = 3; }
        void VisitTuple(const omu_PrimTuple&) override { seen = 4; }
        void VisitList(const omu_PrimList&) override { seen = 5; }
        void VisitPath(const omu_PrimPath&) override { seen = 6; }
        void VisitEnum(const omu_PrimEnumBase&) override { seen = 7; }
        void VisitBool(const omu_PrimEnumBase&) override { seen = 8; }
        void VisitNone(const omu_PrimNone&) override { seen = 9; }
        void VisitType(const omu_PrimType&) override { seen = 10; }
        void VisitComplex(const omu_PrimComplex&) override { seen = 11; }
        void VisitInterfaceObj(const omu_InterfaceObj&) override { seen = 12; }
        void VisitIntRepository(const omu_DictIntObjABC<int>&) override { seen = 13; }
        void VisitStringRepository(const omu_DictIntObjABC<cow_String>&) override { seen = 14; }
        void VisitEnumRepository(const omu_DictIntObjABC<omu_PrimEnumBase>&) override { seen = 15; }
        void VisitIntDictionary(const omu_PrimDictionary<int>&) override { seen = 16; }
        void VisitStringDictionary(const omu_PrimDictionary<cow_String>&) override { seen = 17; }
        void VisitSequenceObj(const omu_SeqIntObj&) override { seen = 18; }
        int Of(const omu_Primitive& value)
        {
            seen = 0;
            value.Accept(this);
            return seen;
        }
        int seen = 0;
    } recorder;
    const auto recorded = [&recorder](const auto&... values) { return std::vector<int>{recorder.Of(values)...}; };
    EXPECT_EQ(recorded(omu_PrimNumber(1), omu_PrimString("a"), omu_PrimArray(), omu_PrimTuple(), omu_PrimList(),
                       omu_PrimPath(), omu_PrimEnumBase("A"), omu_PrimBool<1>(true), omu_PrimBool<2>(true),
                       omu_PrimNone(), omu_PrimType(), omu_PrimComplex(omi_complex()), Part(),
                       omu_PrimDictionary<int>(), omu_PrimDictionary<cow_String>()),
              (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 8, 9, 10, 11, 12, 16, 17}));

    RecordedAssertions assertions;
    EXPECT_EQ(recorder.Of(omu_PrimExpr("a")), 0);
    EXPECT_EQ(assertions.Take(), Texts{"Expressions should not be seen after execution by python"});
}

TEST(Type, A_type_without_a_name_is_any_type)
{
    const omu_PrimType any, part((Part()));
    EXPECT_TRUE(any.SameType(part) && part.SameType(any) && any.SameType(Part()) && part.SameType(Part()));
    EXPECT_TRUE(part.SameType(omu_PrimType("Part")));
    EXPECT_FALSE(part.SameType(omu_PrimType("Set")) || omu_PrimType("part").SameType(Part()));
    EXPECT_EQ(any, omu_PrimType());
    EXPECT_NE(any, part);
    EXPECT_EQ(any.TypeString() + any.AsString(0), "typeType");
    EXPECT_EQ(part.TypeString() + part.AsString(0), "PartTypePartType");
}

TEST(Type, Words_of_what_is_displayed)
{
    const char* const words[] = {"None", "Part", "Assembly", "Sketch", "Odb", "XYPlot", "Stub"};
    for (int i = 0; i < 7; ++i) {
        const auto type = static_cast<omu_ObjectToDisplayTypeEnm>(i);
        EXPECT_EQ(omu_PrimType::ConverTypeToString(type), words[i]);
        EXPECT_EQ(omu_PrimType::ConverStringToType(words[i]), type);
    }
    EXPECT_EQ(omu_PrimType::ConverTypeToString(omu_DISPLAY_UNKNOWN), "");
    for (const char* other : {"", "part", "Parts"}) {
        EXPECT_EQ(omu_PrimType::ConverStringToType(other), omu_DISPLAY_UNKNOWN) << other;
    }
}

TEST(String, Quoted_as_a_script_writes_it)
{
    const std::pair<const char*, const char*> rows[] = {
        {"", "''"},
        {"it's", R"('it\'s')"},
        {R"(a\b)", R"('a\\b')"},
        {R"(\')", R"('\\\'')"},
        {"two\nlines\n", R"('two\nlines\n')"},
        {R"(\n)", R"('\\n')"},
        {"tab\t\r\"raw\"", "'tab\t\r\"raw\"'"},
        {"\\\\\\", R"('\\\\\\')"},
    };
    for (const auto& [text, quoted] : rows) {
        EXPECT_EQ(omu_PrimString(cow_String(text)).AsString(0), quoted);
    }
    EXPECT_EQ(omu_PrimString(cow_String("a\0'", 3)).AsString(0), cow_String("'a\0\\''", 6));
}

TEST(String, Slices_are_clamped_and_Concat_leaves_copies_alone)
{
    omu_PrimString text("abcdef");
    const auto slice = [&](int from, int to) {
        return std::unique_ptr<omu_PrimString>(text.Slice(from, to))->GetString();
    };
    EXPECT_EQ(slice(1, 3), "bc");
    EXPECT_EQ(slice(-4, 99), "abcdef");
    EXPECT_EQ(slice(3, 1), "");
    const omu_PrimString before(text);
    text.Concat(text);
    EXPECT_EQ(text.GetString(), "abcdefabcdef");
    EXPECT_EQ(before.GetString(), "abcdef");
}

TEST(Path, Text_joins_the_components_and_the_kind_is_not_compared)
{
    EXPECT_EQ(omu_PrimPath().AsString(0), "''");
    EXPECT_EQ(Path({"a", "b", "c"}).AsString(0), "'a.b.c'");
    EXPECT_EQ(Path({"Part-1", ""}).AsString(0), "'Part-1'");
    EXPECT_EQ(Path({"", "a"}).AsString(0), "'.a'");
    EXPECT_EQ(Path({"a.", "b.."}).AsString(0), "'a..b'");
    EXPECT_EQ(Path({"...", ""}).AsString(0), "''");

    const omu_PrimPath path = Path({"a"}, 'q');
    const std::unique_ptr<omu_Primitive> copy(path.Copy());
    EXPECT_EQ(static_cast<const omu_PrimPath&>(*copy).Kind(), 'q');
    EXPECT_EQ(path, Path({"a"}));
    EXPECT_NE(path, Path({"a", ""}, 'q'));
}
