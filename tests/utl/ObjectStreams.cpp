#include "StreamChecks.h"
#include "nex_CommandException.h"
#include "obj_Stream.h"
#include "typ_ArchCompTable.h"
#include "utl_Module.h"

namespace
{
constexpr std::uint32_t SHAPE = 0xEA610001;
constexpr std::uint32_t NAMED_ONLY = 0xEA610002;

/// An abstract class, as persistable classes are made.
class Shape
{
public:
    virtual ~Shape() = default;
    virtual std::uint32_t DynTypeId() const = 0;
    static std::uint32_t TypeId() { return SHAPE; }
    static void* CtorFunc(bio_Ifilter&, void*) { return nullptr; }
    static void ReadData(bio_Ifilter&, void*) {}
    static void WriteData(bio_Ofilter&, const void*) {}
};

class ObjectStream : public testing::Test
{
protected:
    ObjectStream()
    {
        static constexpr typ_Entry rows[] = {
            {},
            {typ_VALUE, "Shape", typ_ROOT, Shape::CtorFunc, Shape::ReadData, Shape::WriteData, nullptr, nullptr, true},
            {typ_VALUE, "NamedOnly", SHAPE}};
        typ_ArchCompTable::InsertEntry(SHAPE >> 16, {rows, 3});
        utl_initialize(m_users);
    }
    ~ObjectStream() override { utl_finalize(m_users); }

    int m_users = 0;
};

/// What reading a Shape from the bytes says.
std::string ShapeFrom(const std::string& bytes)
{
    Shape* shape = nullptr;
    const std::string refusal = ReadFrom(bytes, shape);
    EXPECT_EQ(shape, nullptr);
    return refusal;
}
} // namespace

TEST_F(ObjectStream, A_dump_nests_objects)
{
    nex_TextException text("damaged");
    EXPECT_THROW(text.Throw("here", 7), nex_TextException);
    std::ostringstream dump;
    pnt_PrettyPrint out(dump);
    out.Open("Holder");
    out.Field(text);
    out.Field(static_cast<const nex_Exception*>(nullptr));
    out.Close();
    EXPECT_EQ(dump.str(), "(Holder\n  (nex_TextException\n    (nex_Exception\n      here\n      7\n    )\n"
                          "    damaged\n  )\n  (null)\n)");
}

TEST_F(ObjectStream, Ids_that_may_not_stand_there_are_named)
{
    const std::pair<std::uint32_t, const char*> rows[] = {
        {0xEA620001, "unknown type id 0xEA620001 at offset 0"},
        {0xEA610003, "unknown type id 0xEA610003 at offset 0"},
        {0xEA610000, "unknown type id 0xEA610000 at offset 0"},
        {0x1F0002, "type nex_TextException where Shape is expected at offset 0"},
        {SHAPE, "type Shape is abstract at offset 0"},
        {NAMED_ONLY, "type NamedOnly has no stream functions at offset 0"}};
    for (const auto& [id, refusal] : rows) {
        EXPECT_EQ(ShapeFrom(BytesOf(id) + std::string(8, '\0')), refusal);
    }
}

TEST_F(ObjectStream, An_existing_object_takes_only_its_exact_class)
{
    const nex_TextException text("text");
    nex_TextException same;
    EXPECT_EQ(ReadFrom(BytesOf(text), same), "");
    EXPECT_EQ(same.AsString(), "text");
    nex_Exception base;
    EXPECT_EQ(ReadFrom(BytesOf(text), base),
              "type nex_TextException where exactly nex_Exception is expected at offset 0");
}

TEST_F(ObjectStream, Objects_without_functions_are_neither_written_nor_dumped_nor_copied)
{
    const nex_TextException object;
    bio_Ofilter out;
    std::ostringstream text;
    pnt_PrettyPrint print(text);
    const char* const refusal = "type NamedOnly has no stream functions";
    EXPECT_EQ(RefusalOf([&] { obj_OutputP0Ptr(out, &object, NAMED_ONLY); }), refusal);
    EXPECT_EQ(RefusalOf([&] { obj_PrintP0Ptr(print, &object, NAMED_ONLY); }), refusal);
    EXPECT_EQ(RefusalOf([&] { obj_DeepCopyP0Ptr(&object, 0xEA620001); }), "unknown type id 0xEA620001");
    EXPECT_EQ(out.Size(), 0U);
}

TEST_F(ObjectStream, Descent_follows_the_parents_across_components)
{
    constexpr std::uint32_t CRATE = 0xFFFF0001;
    constexpr std::uint32_t CIRCLE = 0xFFFF0002;
    static constexpr typ_Entry rows[] = {{}, {typ_VALUE, "Crate", NAMED_ONLY}, {typ_VALUE, "Circle", CIRCLE}};
    typ_ArchCompTable::InsertEntry(0xFFFF, {rows, 3});
    EXPECT_TRUE(typ_ArchCompTable::IsParent(CRATE, CRATE));
    EXPECT_TRUE(typ_ArchCompTable::IsParent(CRATE, SHAPE));
    EXPECT_FALSE(typ_ArchCompTable::IsParent(SHAPE, NAMED_ONLY));
    EXPECT_FALSE(typ_ArchCompTable::IsParent(CRATE, typ_ROOT));
    EXPECT_FALSE(typ_ArchCompTable::IsParent(CRATE, 0x1F0001));
    EXPECT_FALSE(typ_ArchCompTable::IsParent(0xFFFF0003, SHAPE));
    RecordedAssertions assertions;
    EXPECT_FALSE(typ_ArchCompTable::IsParent(CIRCLE, SHAPE));
    EXPECT_EQ(assertions.Take().size(), 1U);
    EXPECT_EQ(typ_ArchCompTable::GetName(0xFFFF0003), "");
    EXPECT_EQ(typ_ArchCompTable::GetDtorFunc(CRATE), nullptr);
    typ_ArchCompTable::InsertEntry(0xFFFF, {});
    EXPECT_EQ(typ_ArchCompTable::Find(CRATE), nullptr);
}
