#include "RecordedAssertions.h"
#include "StreamChecks.h"
#include "nex_CommandException.h"
#include "obj_Stream.h"
#include "typ_ArchCompTable.h"
#include "utl_Module.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <sstream>
#include <string>

namespace
{
constexpr std::uint32_t SHAPE = 0xEA610001;
constexpr std::uint32_t BOX = 0xEA610002;
constexpr std::uint32_t NAMED_ONLY = 0xEA610003;

/// An abstract class and one that may hold another shape, as persistable classes are made.
class Shape
{
public:
    virtual ~Shape() { --alive; }
    virtual std::uint32_t DynTypeId() const = 0;
    static std::uint32_t TypeId() { return SHAPE; }
    static void* CtorFunc(bio_Ifilter&, void*) { return nullptr; }
    static void ReadData(bio_Ifilter& in, void* object) { in >> static_cast<Shape*>(object)->name; }
    static void WriteData(bio_Ofilter& out, const void* object) { out << static_cast<const Shape*>(object)->name; }

    cow_String name;
    static inline int alive = 0;

protected:
    Shape() { ++alive; }
};

class Box : public Shape
{
public:
    Box() = default;
    explicit Box(bio_Ifilter&) {}
    std::uint32_t DynTypeId() const override { return BOX; }
    static std::uint32_t TypeId() { return BOX; }
    static void* CtorFunc(bio_Ifilter& in, void* place) { return obj_Construct<Box>(in, place); }
    static void DtorFunc(void* object) { obj_Destroy<Box>(object); }
    static void ReadData(bio_Ifilter& in, void* object)
    {
        Shape::ReadData(in, object);
        Shape* inner = nullptr;
        in >> inner;
        static_cast<Box*>(object)->inner.reset(inner);
    }
    static void WriteData(bio_Ofilter& out, const void* object)
    {
        Shape::WriteData(out, object);
        out << static_cast<const Shape*>(static_cast<const Box*>(object)->inner.get());
    }

    std::unique_ptr<Shape> inner;
};

class ObjectStream : public testing::Test
{
protected:
    ObjectStream()
    {
        static constexpr typ_Entry rows[] = {
            {},
            {typ_VALUE, "Shape", typ_ROOT, Shape::CtorFunc, Shape::ReadData, Shape::WriteData, nullptr, nullptr, true},
            {typ_VALUE, "Box", SHAPE, Box::CtorFunc, Box::ReadData, Box::WriteData, nullptr, Box::DtorFunc},
            {typ_VALUE, "NamedOnly", SHAPE}};
        typ_ArchCompTable::InsertEntry(SHAPE >> 16, {rows, 4});
        utl_initialize(m_users);
    }
    ~ObjectStream() override
    {
        utl_finalize(m_users);
        EXPECT_EQ(Shape::alive, 0);
    }

    int m_users = 0;
};

std::unique_ptr<Box> Nested(int depth)
{
    auto box = std::make_unique<Box>();
    box->name = cow_String(depth);
    if (depth > 1) {
        box->inner = Nested(depth - 1);
    }
    return box;
}

/// What reading a Shape from the bytes says.
std::string ShapeFrom(const std::string& bytes)
{
    Shape* shape = nullptr;
    const std::string refusal = ReadFrom(bytes, shape);
    EXPECT_TRUE(refusal.empty() || refusal == "bytes are left" || shape == nullptr);
    delete shape;
    return refusal;
}
} // namespace

TEST_F(ObjectStream, An_object_comes_back_as_what_it_was)
{
    const std::unique_ptr<Box> box = Nested(3);
    Shape* read = nullptr;
    EXPECT_EQ(ReadFrom(BytesOf(*box), read), "");
    EXPECT_EQ(BytesOf(*read), BytesOf(*box));
    typ_ArchCompTable::GetDtorFunc(read->DynTypeId())(read);
    const std::unique_ptr<Box> copy(static_cast<Box*>(obj_DeepCopyP0Ptr(box.get(), BOX)));
    EXPECT_EQ(BytesOf(*copy), BytesOf(*box));
    EXPECT_EQ(Shape::alive, 6);
    EXPECT_EQ(BytesOf(static_cast<const Shape*>(nullptr)), std::string(4, '\0'));
    EXPECT_EQ(obj_DeepCopyP0Ptr(nullptr, BOX), nullptr);
}

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

TEST_F(ObjectStream, Damaged_objects_are_refused_and_leave_nothing_behind)
{
    const std::string whole = BytesOf(*Nested(3));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_NE(ShapeFrom(whole.substr(0, length)), "") << length;
    }
    for (std::size_t bit = 0; bit < whole.size() * 8; ++bit) {
        std::string damaged = whole;
        damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ 1 << bit % 8);
        ShapeFrom(damaged); // a value or a refusal, and ~ObjectStream counts what is left
    }
}

TEST_F(ObjectStream, Ids_that_may_not_stand_there_are_named)
{
    struct Row
    {
        std::uint32_t id;
        const char* refusal;
    };
    const Row rows[] = {{0xEA620001, "unknown type id 0xEA620001 at offset 0"},
                        {0xEA610004, "unknown type id 0xEA610004 at offset 0"},
                        {0xEA610000, "unknown type id 0xEA610000 at offset 0"},
                        {0x1F0002, "type nex_TextException where Shape is expected at offset 0"},
                        {SHAPE, "type Shape is abstract at offset 0"},
                        {NAMED_ONLY, "type NamedOnly has no stream functions at offset 0"}};
    for (const Row& row : rows) {
        EXPECT_EQ(ShapeFrom(BytesOf(row.id) + std::string(8, '\0')), row.refusal);
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
    const Box box;
    bio_Ofilter out;
    std::ostringstream text;
    pnt_PrettyPrint print(text);
    const char* const refusal = "type NamedOnly has no stream functions";
    EXPECT_EQ(RefusalOf([&] { obj_OutputP0Ptr(out, &box, NAMED_ONLY); }), refusal);
    EXPECT_EQ(RefusalOf([&] { obj_PrintP0Ptr(print, &box, NAMED_ONLY); }), refusal);
    EXPECT_EQ(RefusalOf([&] { obj_DeepCopyP0Ptr(&box, 0xEA620001); }), "unknown type id 0xEA620001");
    EXPECT_EQ(out.Size(), 0U);
}

TEST_F(ObjectStream, Nesting_beyond_the_limit_is_refused_both_ways)
{
    const std::unique_ptr<Box> deepest = Nested(bio_MAX_NESTING);
    bio_Ofilter out;
    out << *deepest << *deepest; // the count goes down again
    bio_Ifilter in(out.Data(), out.Size());
    for (int i = 0; i < 2; ++i) {
        Shape* read = nullptr;
        in >> read;
        delete read;
    }
    EXPECT_THROW(BytesOf(*Nested(bio_MAX_NESTING + 1)), nex_TextException);

    std::string tooDeep;
    for (int level = 0; level <= bio_MAX_NESTING; ++level) {
        tooDeep += BytesOf(BOX) + BytesOf(cow_String());
    }
    EXPECT_EQ(ShapeFrom(tooDeep), "objects nested too deeply at offset 1604");
}

TEST_F(ObjectStream, Descent_follows_the_parents_across_components)
{
    constexpr std::uint32_t CRATE = 0xFFFF0001;
    constexpr std::uint32_t CIRCLE = 0xFFFF0002;
    static constexpr typ_Entry rows[] = {{}, {typ_VALUE, "Crate", BOX}, {typ_VALUE, "Circle", CIRCLE}};
    typ_ArchCompTable::InsertEntry(0xFFFF, {rows, 3});
    EXPECT_TRUE(typ_ArchCompTable::IsParent(CRATE, CRATE));
    EXPECT_TRUE(typ_ArchCompTable::IsParent(CRATE, SHAPE));
    EXPECT_FALSE(typ_ArchCompTable::IsParent(SHAPE, BOX));
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

TEST(UtlModule, Only_the_first_and_last_user_change_the_count)
{
    int count = 5;
    for (const int expected : {6, 6}) {
        utl_initialize(count);
        EXPECT_EQ(count, expected);
    }
    for (const int expected : {6, 5, 5}) {
        utl_finalize(count);
        EXPECT_EQ(count, expected);
    }
}

TEST_F(ObjectStream, The_rows_of_the_utility_component_are_frozen)
{
    EXPECT_EQ(utl_ArchEntry().count, 4U);
    const auto check = [](const nex_Exception& object, std::uint32_t id, const char* name, std::uint32_t parent) {
        const typ_Entry* const entry = typ_ArchCompTable::Find(id);
        EXPECT_EQ(object.DynTypeId(), id);
        EXPECT_STREQ(entry->name, name);
        EXPECT_EQ(entry->parent, parent) << name;
        EXPECT_EQ(entry->kind, typ_EXCEPTION) << name;
    };
    check(nex_Exception(), 0x1F0001, "nex_Exception", typ_ROOT);
    check(nex_TextException(), 0x1F0002, "nex_TextException", 0x1F0001);
    check(nex_CommandException(), 0x1F0003, "nex_CommandException", 0x1F0001);
}
