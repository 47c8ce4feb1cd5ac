#include "VEXCRT.h"
#include "nex_CommandException.h"
#include "nex_TextException.h"
#include "obj_Stream.h"
#include "typ_ArchCompTable.h"
#include "utl_Module.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

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
    static void DtorFunc(void* object) { obj_Destroy<Shape>(object); }
    static void ReadData(bio_Ifilter& in, void* object) { in >> static_cast<Shape*>(object)->name; }
    static void WriteData(bio_Ofilter& out, const void* object) { out << static_cast<const Shape*>(object)->name; }
    static void PrintData(pnt_PrettyPrint& out, const void* object)
    {
        out.Open("Shape");
        out.Field(static_cast<const Shape*>(object)->name);
        out.Close();
    }

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
    static void PrintData(pnt_PrettyPrint& out, const void* object)
    {
        out.Open("Box");
        Shape::PrintData(out, object);
        out.NewLine();
        out << static_cast<const Shape*>(static_cast<const Box*>(object)->inner.get());
        out.Close();
    }

    std::unique_ptr<Shape> inner;
};

class ObjectStream : public testing::Test
{
protected:
    ObjectStream()
    {
        static constexpr typ_Entry rows[] = {{},
                                             typ_EntryOf<Shape>(typ_VALUE, "Shape", typ_ROOT, /*isAbstract=*/true),
                                             typ_EntryOf<Box>(typ_VALUE, "Box", SHAPE),
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

template <class C> std::string Dump(const C& object)
{
    std::ostringstream text;
    pnt_PrettyPrint out(text);
    out << object;
    return text.str();
}

template <class C> std::vector<unsigned char> Written(const C& object)
{
    bio_Ofilter out;
    out << object;
    return {out.Data(), out.Data() + out.Size()};
}

/// What reading a Shape (or what `read` reads) from the bytes says.
std::string Failure(const std::vector<unsigned char>& bytes)
{
    bio_Ifilter in(bytes.data(), bytes.size());
    Shape* shape = nullptr;
    try {
        in >> shape;
    } catch (const nex_TextException& exception) {
        EXPECT_EQ(shape, nullptr);
        return exception.what();
    }
    delete shape;
    return "";
}
} // namespace

TEST_F(ObjectStream, An_object_comes_back_as_what_it_was)
{
    const std::unique_ptr<Box> box = Nested(3);
    const auto bytes = Written(static_cast<const Shape*>(box.get()));
    bio_Ifilter in(bytes.data(), bytes.size());
    Shape* read = nullptr;
    in >> read;
    EXPECT_EQ(Dump(static_cast<const Shape*>(read)), "(Box\n"
                                                     "  (Shape\n"
                                                     "    3\n"
                                                     "  )\n"
                                                     "  (Box\n"
                                                     "    (Shape\n"
                                                     "      2\n"
                                                     "    )\n"
                                                     "    (Box\n"
                                                     "      (Shape\n"
                                                     "        1\n"
                                                     "      )\n"
                                                     "      (null)\n"
                                                     "    )\n"
                                                     "  )\n"
                                                     ")");
    typ_ArchCompTable::GetDtorFunc(read->DynTypeId())(read);
    EXPECT_EQ(Written(static_cast<const Shape*>(nullptr)), std::vector<unsigned char>(4, 0));
}

TEST_F(ObjectStream, A_deep_copy_shares_nothing)
{
    const std::unique_ptr<Box> box = Nested(2);
    const std::unique_ptr<Box> copy(static_cast<Box*>(obj_DeepCopyP0Ptr(box.get(), BOX)));
    EXPECT_EQ(Written(*copy), Written(*box));
    EXPECT_EQ(Shape::alive, 4);
    EXPECT_EQ(obj_DeepCopyP0Ptr(nullptr, BOX), nullptr);
}

TEST_F(ObjectStream, Damaged_objects_are_refused_and_leave_nothing_behind)
{
    const auto whole = Written(*Nested(3));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_NE(Failure({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)}), "") << length;
    }
    for (std::size_t bit = 0; bit < whole.size() * 8; ++bit) {
        auto damaged = whole;
        damaged[bit / 8] = static_cast<unsigned char>(damaged[bit / 8] ^ 1U << bit % 8);
        Failure(damaged); // a value or an error, and ~ObjectStream counts what is left
    }
}

TEST_F(ObjectStream, Ids_that_may_not_stand_there_are_named)
{
    struct Row
    {
        std::uint32_t id;
        const char* failure;
    };
    const Row rows[] = {{0xEA620001, "unknown type id 0xEA620001 at offset 0"},
                        {0xEA610004, "unknown type id 0xEA610004 at offset 0"},
                        {0xEA610000, "unknown type id 0xEA610000 at offset 0"},
                        {0x1F0002, "type nex_TextException where Shape is expected at offset 0"},
                        {SHAPE, "type Shape is abstract at offset 0"},
                        {NAMED_ONLY, "type NamedOnly has no stream functions at offset 0"}};
    for (const Row& row : rows) {
        bio_Ofilter out;
        out << row.id << cow_String() << std::uint32_t{0};
        EXPECT_EQ(Failure({out.Data(), out.Data() + out.Size()}), row.failure);
    }
}

TEST_F(ObjectStream, An_existing_object_takes_only_its_exact_class)
{
    const nex_TextException text("text");
    const auto bytes = Written(text);
    nex_TextException same;
    bio_Ifilter in(bytes.data(), bytes.size());
    in >> same;
    EXPECT_EQ(same.AsString(), "text");

    nex_Exception base;
    bio_Ifilter again(bytes.data(), bytes.size());
    try {
        again >> base;
        ADD_FAILURE() << "read a derived class into its base";
    } catch (const nex_TextException& exception) {
        EXPECT_EQ(exception.AsString(), "type nex_TextException where exactly nex_Exception is expected at offset 0");
    }
}

TEST_F(ObjectStream, Objects_without_functions_are_neither_written_nor_dumped_nor_copied)
{
    const Box box;
    bio_Ofilter out;
    std::ostringstream text;
    pnt_PrettyPrint print(text);
    const auto failure = [](auto call) -> cow_String {
        try {
            call();
        } catch (const nex_TextException& exception) {
            return exception.AsString();
        }
        return {};
    };
    EXPECT_EQ(failure([&] { obj_OutputP0Ptr(out, &box, NAMED_ONLY); }), "type NamedOnly has no stream functions");
    EXPECT_EQ(failure([&] { obj_PrintP0Ptr(print, &box, NAMED_ONLY); }), "type NamedOnly has no stream functions");
    EXPECT_EQ(failure([&] { obj_DeepCopyP0Ptr(&box, 0xEA620001); }), "unknown type id 0xEA620001");
    EXPECT_EQ(out.Size(), 0U);
}

TEST_F(ObjectStream, Nesting_beyond_the_limit_is_refused_both_ways)
{
    EXPECT_EQ(Failure(Written(*Nested(bio_MAX_NESTING))), "");
    EXPECT_THROW(Written(*Nested(bio_MAX_NESTING + 1)), nex_TextException);

    bio_Ofilter out;
    for (int level = 0; level <= bio_MAX_NESTING; ++level) {
        out << BOX << cow_String();
    }
    out << std::uint32_t{0};
    EXPECT_EQ(Failure({out.Data(), out.Data() + out.Size()}), "objects nested too deeply at offset 1604");
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
    EXPECT_FALSE(typ_ArchCompTable::IsParent(CRATE, 0x1F0001));
    EXPECT_FALSE(typ_ArchCompTable::IsParent(0xFFFF0003, SHAPE));
    const VEXCRT::AssertHandler before = VEXCRT::SetAssertHandler([](const char*, const char*, int) {});
    EXPECT_FALSE(typ_ArchCompTable::IsParent(CIRCLE, SHAPE));
    VEXCRT::SetAssertHandler(before);
    EXPECT_EQ(typ_ArchCompTable::GetName(0xFFFF0003), "");
    EXPECT_EQ(typ_ArchCompTable::GetDtorFunc(CRATE), nullptr);
    typ_ArchCompTable::InsertEntry(0xFFFF, {});
    EXPECT_EQ(typ_ArchCompTable::Find(CRATE), nullptr);
}

TEST(UtlModule, Only_the_first_and_last_user_change_the_count)
{
    int count = 5;
    utl_initialize(count);
    utl_initialize(count);
    EXPECT_EQ(count, 6);
    utl_finalize(count);
    EXPECT_EQ(count, 6);
    utl_finalize(count);
    EXPECT_EQ(count, 5);
    utl_finalize(count);
    EXPECT_EQ(count, 5);
}

TEST(UtlModule, The_rows_of_the_component_are_frozen)
{
    int count = 0;
    utl_initialize(count);
    EXPECT_EQ(utl_ArchEntry().count, 4U);
    const nex_Exception exception;
    const nex_TextException text;
    const nex_CommandException command;
    struct Row
    {
        const nex_Exception& object;
        std::uint32_t id;
        const char* name;
        std::uint32_t parent;
    };
    const Row rows[] = {{exception, 0x1F0001, "nex_Exception", typ_ROOT},
                        {text, 0x1F0002, "nex_TextException", 0x1F0001},
                        {command, 0x1F0003, "nex_CommandException", 0x1F0001}};
    for (const Row& row : rows) {
        EXPECT_EQ(row.object.DynTypeId(), row.id);
        const typ_Entry* const entry = typ_ArchCompTable::Find(row.id);
        ASSERT_NE(entry, nullptr) << row.name;
        EXPECT_STREQ(entry->name, row.name);
        EXPECT_EQ(entry->parent, row.parent);
        EXPECT_EQ(entry->kind, typ_EXCEPTION);
    }
    utl_finalize(count);
}
