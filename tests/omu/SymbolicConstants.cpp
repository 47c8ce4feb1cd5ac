#include "VEXcrt_System.h"
#include "Values.h"
#include "cls/MementoDouble.h"
#include "cls_ClassRegistrar.h"
#include "cls_WriteVisitor.h"
#include "omu_BoolSelectEnum.h"
#include "omu_SymbolicConstantTable.h"
#include "omu_ValueErrorException.h"

namespace
{

enum class Shape
{
    QUAD = 40,
    TRI = 30,
    LINE = 20
};

using BoolSelect = omu_PrimEnum<omu_BoolSelectEnum, 1>;
using OneShape = omu_PrimEnum<Shape, 1>;
using ThreeShapes = omu_PrimEnum<Shape, 3>;

} // namespace

// A program's own enumeration: two tables of names for one type.
template <> const omu_EnumRow<Shape>* omu_EnumTable<Shape, 1>()
{
    static constexpr omu_EnumRow<Shape> rows[] = {{"QUAD", Shape::QUAD}, {nullptr, {}}};
    return rows;
}
template <> const omu_EnumRow<Shape>* omu_EnumTable<Shape, 3>()
{
    static constexpr omu_EnumRow<Shape> rows[] = {
        {"TRI", Shape::TRI}, {"QUAD", Shape::QUAD}, {"LINE", Shape::LINE}, {"BEAM", Shape::LINE}, {nullptr, {}}};
    return rows;
}

namespace
{

std::string StreamOf(std::string_view text)
{
    return BytesOf(omu_PrimEnumBase(cow_String(text)));
}

} // namespace

TEST(Constant, Names_of_the_booleans_are_exact)
{
    omu_PrimBool<1> truth(false);
    omu_PrimBool<2> power(true);
    EXPECT_EQ(truth.GetString() + power.GetString(), "FALSEON");
    EXPECT_TRUE(truth.SetValue("TRUE") && truth.GetValue());
    EXPECT_TRUE(power.SetValue(false));
    EXPECT_EQ(power.AsString(0), "OFF");
    for (const char* wrong : {"", "true", "ON", "TRUE ", "TRU", static_cast<const char*>(nullptr)}) {
        EXPECT_FALSE(truth.SetValue(wrong)) << (wrong != nullptr ? wrong : "null");
    }
    EXPECT_EQ(truth.GetString(), "TRUE");
    EXPECT_STREQ(omu_PrimBool<2>::Name(1), "OFF");
    EXPECT_FALSE(power.SetValue("on") || omu_PrimBool<2>::Value(1));
    EXPECT_FALSE(omu_PrimBool<1>("FALSE").GetValue()) << "a literal is a name";
    for (const cow_String& unknown : {cow_String("false"), cow_String("TRUE\0", 5)}) {
        EXPECT_EQ(ErrorOf<omu_ValueErrorException>([&] { omu_PrimBool<1>{unknown}; }),
                  ("omu_PrimEnum(const cow_String&) - Enum value not allowed:" + unknown).AsCharPtr());
    }
}

TEST(Constant, Rows_name_values_and_types_and_names_are_compared)
{
    EXPECT_EQ(ThreeShapes(Shape::LINE).GetString(), "LINE");
    EXPECT_EQ(ThreeShapes("BEAM").GetValue(), Shape::LINE);
    RecordedAssertions assertions;
    const OneShape nameless(Shape::TRI);
    EXPECT_EQ(assertions.Take().size(), 1U);
    EXPECT_TRUE(nameless.GetString().IsEmpty() && nameless.GetValue() == Shape::TRI);

    EXPECT_EQ(nameless.TypeString(), "QUAD");
    EXPECT_EQ(ThreeShapes(Shape::TRI).TypeString(), "TRI, QUAD, LINE or BEAM");
    EXPECT_EQ(omu_PrimBool<2>(false).TypeString(), "ON or OFF");
    EXPECT_EQ(BoolSelect(omu_SELECT_UNION).TypeString(),
              "REPLACE, UNION, INTERSECTION, DIFFERENCE or SYMMETRIC_DIFFERENCE");
    EXPECT_EQ(omu_PrimEnumBase("ANY").TypeString(), "ANY");

    EXPECT_TRUE(OneShape("QUAD") == ThreeShapes("QUAD") && omu_PrimBool<2>(true) == omu_PrimEnumBase("ON"));
    EXPECT_TRUE(omu_PrimEnumBase("ON") != omu_PrimEnumBase("On") && omu_PrimEnumBase() != omu_PrimNone());
}

TEST(Constant, Copies_share_the_identity_and_what_is_read_has_its_own)
{
    const omu_PrimBool<1> original(true);
    EXPECT_EQ(omu_PrimBool<1>(original).GetUid(), original.GetUid());
    const std::string bytes = StreamOf("FALSE");
    bio_Ifilter in(bytes.data() + sizeof(std::uint32_t), bytes.size() - sizeof(std::uint32_t)); // behind the type id
    const std::unique_ptr<omu_PrimBool<1>> read(static_cast<omu_PrimBool<1>*>(omu_PrimBool<1>::CtorFunc(in, nullptr)));
    EXPECT_FALSE(read->GetValue());
    EXPECT_FALSE(read->GetUid() == original.GetUid());
}

TEST(Constant, Reading_sets_the_value_and_refuses_unknown_names)
{
    ThreeShapes shape(Shape::TRI);
    EXPECT_EQ(ReadFrom(StreamOf("QUAD"), shape), "");
    EXPECT_EQ(shape.GetValue(), Shape::QUAD);
    EXPECT_EQ(ReadFrom(StreamOf("quad"), shape), "unknown symbolic constant \"quad\" at offset 5");
    EXPECT_EQ(shape.GetValue(), Shape::QUAD);
    EXPECT_NE(ReadFrom(StreamOf({"TRI\0", 4}), shape), "");
    omu_PrimEnumBase any;
    EXPECT_NE(ReadFrom(StreamOf({"A\0B", 3}), any), "");
    EXPECT_EQ(ReadFrom(StreamOf("A").substr(0, 4) + "n", any), "type code of another class at offset 4");
}

TEST(StoredConstant, Writes_its_name_under_its_identity_when_the_record_is_granted)
{
    static Record written;
    written.clear();
    const omu_PrimBool<2> constant(false);
    static const cls_Uid* const granted = &constant.GetUid();
    struct Parent : MementoWriteDouble
    {
        cls_MementoWrite* MakeElementWriter(std::uint32_t, const cls_Uid& uid) override
        {
            return uid == *granted ? new MementoWriteDouble(&written) : nullptr;
        }
    };
    const cls_WriteVisitor parent(new Parent);
    omu_PrimBool<2>(true).DBWrite(cls_WriteVisitor(parent, 7));
    EXPECT_TRUE(written.empty());
    constant.DBWrite(cls_WriteVisitor(parent, 7));
    EXPECT_EQ(std::any_cast<cow_String>(written.at("stringValue")), "OFF");
}

TEST(StoredConstant, Is_read_with_its_identity)
{
    const auto reader = [](const Record& record) { return cls_ReadVisitor(new MementoReadDouble(&record)); };
    const auto stored = [](const char* text) { return Record{{"stringValue", cow_String(text)}}; };
    const Record off = stored("OFF"), none = stored(""), tri = stored("TRI");
    cls_ReadVisitor visitor = reader(off);
    const std::unique_ptr<omu_PrimEnum<bool, 2>> constant(
        static_cast<omu_PrimEnum<bool, 2>*>(omu_PrimEnum<bool, 2>::Ctor(visitor)));
    EXPECT_EQ(constant->GetString(), "OFF");
    EXPECT_FALSE(constant->GetValue());
    EXPECT_EQ(constant->GetUid(), visitor.GetUid());
    EXPECT_EQ(OneShape(reader(none)).GetString(), "");
    EXPECT_EQ(OneShape(cls_ReadVisitor(static_cast<cls_MementoRead*>(nullptr))).GetString(), "");
    EXPECT_THROW(OneShape{reader(tri)}, nex_TextException);
}

TEST(StoredConstant, Three_classes_register_under_one_name_and_id)
{
    cls_ClassRegistrar registrar;
    omu_PrimEnum<bool, 1>::InitializeMetadata(registrar);
    omu_PrimEnum<bool, 2>::InitializeMetadata(registrar);
    BoolSelect::InitializeMetadata(registrar);
    const std::uint32_t id = registrar.GetClassID("omu_PrimEnum");
    EXPECT_EQ(id, 0x13001BU);
    const auto& current = registrar.ConstGet(id);
    EXPECT_TRUE(current.Ctor() == (&omu_PrimEnum<bool, 1>::Ctor));
    EXPECT_TRUE(registrar.GetClassMetadata(id, 1).Ctor() == &BoolSelect::Ctor);
    EXPECT_EQ(current.Option(), 1U);

    // The registered destructor empties a holder and leaves the other holders theirs.
    omu_PrimHolder holder(new omu_PrimBool<1>(true));
    const omu_PrimHolder other = holder;
    current.Dtor()(reinterpret_cast<cls_PayloadHolder*>(&holder));
    EXPECT_TRUE(holder.IsNull());
    EXPECT_EQ(other->AsString(0), "TRUE");
}

TEST(ConstantTable, Misuse_is_reported_and_changes_nothing)
{
    auto& table = omi_Singleton<omu_SymbolicConstantTable>::Instance();
    const unsigned int first = table.AddString("TEST_FIRST");
    EXPECT_EQ(table.AddString("TEST_SECOND"), first + 1);
    EXPECT_EQ(table.GetId("TEST_SECOND"), first + 1);
    EXPECT_EQ(table.GetId("never added"), 0U);
    EXPECT_EQ(table.GetString(0), "_UNSPECIFIED");

    RecordedAssertions assertions;
    testing::internal::CaptureStderr();
    EXPECT_EQ(table.AddString("TEST_FIRST"), first);
    EXPECT_EQ(table.AddString(""), 0U);
    EXPECT_EQ(&table.GetString(first + 2), &table.GetString(0));
    char expected[300];
    std::snprintf(expected, sizeof expected,
                  "omu_SymbolicConstantTable::AddString(TEST_FIRST) name already in table: %u/%u  pid=%X\n"
                  "omu_SymbolicConstantTable::AddString() key is EMPTY  pid=%X\n"
                  "omu_SymbolicConstantTable::GetString(%u)  id>Size (%u)  %llX\n",
                  first, first + 2, VEXCRT::ProcessId(), VEXCRT::ProcessId(), first + 2, first + 2,
                  static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(&table)));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), expected);
    EXPECT_EQ(assertions.Take().size(), 3U);
    EXPECT_EQ(table.AddString("TEST_THIRD"), first + 2);
    const unsigned int firstData = table.AddSCD(omu_SymbolicConstantData());
    EXPECT_EQ(table.AddSCD(omu_SymbolicConstantData()), firstData + 1);
    EXPECT_TRUE(assertions.Take().empty());
    omu_SymbolicConstantData(3);
    EXPECT_EQ(assertions.Take(), Texts{"omu_SymbolicConstantData() _id argument must be 0\n"});

    testing::internal::CaptureStdout();
    table.PrintCache();
    const std::string text = testing::internal::GetCapturedStdout();
    EXPECT_TRUE(text.starts_with("\nCONTENTS of omu_SymbolicConstantTable  ")) << text;
    EXPECT_NE(text.find("\n    0   _UNSPECIFIED\n"), std::string::npos) << text;
}
