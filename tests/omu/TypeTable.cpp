#include "../Golden.h"
#include "ExceptionClasses.h"
#include "Values.h"
#include "omu_Module.h"
#include "omu_QueryPathMsg.h"
#include "typ_ArchCompTable.h"

#include <deque>

namespace
{

constexpr std::uint32_t abstractIds[] = {0x130001, 0x130011, 0x130012, 0x130020};

// An object of any class is held by a wrapper, which knows it by its type id alone.

std::string Bytes(const omu_PrimWrapper& object)
{
    bio_Ofilter out;
    obj_OutputP0Ptr(out, object.Object(), object.WrappedTypeId());
    return {reinterpret_cast<const char*>(out.Data()), out.Size()};
}

std::string Dump(const omu_PrimWrapper& object)
{
    std::ostringstream text;
    pnt_PrettyPrint out(text);
    obj_PrintP0Ptr(out, object.Object(), object.WrappedTypeId());
    return text.str();
}

omu_PrimWrapper Read(const std::string& bytes, std::uint32_t expectedTypeId = 0)
{
    bio_Ifilter in(bytes.data(), bytes.size());
    void* object = nullptr;
    std::uint32_t typeId = 0;
    obj_InputP0Ptr(in, object, expectedTypeId, typeId);
    return omu_PrimWrapper(typeId, object);
}

/// The bytes of the object that `bytes` give; empty when the reader refuses them.
std::string Again(const std::string& bytes)
{
    std::string again;
    RefusalOf([&] { again = Bytes(Read(bytes)); });
    return again;
}

/// Numbers and a text, and at the end a slot that stays null.
omu_PrimTuple SampleTuple()
{
    omu_PrimTuple tuple(4);
    tuple.Put(1);
    tuple.Put(2.5);
    tuple.Put(cow_String("three"));
    return tuple;
}

template <class K> omu_PrimDictionary<K> SampleDictionary(const K& first, const K& second)
{
    omu_PrimDictionary<K> dictionary;
    dictionary.Put(4000000000U, first);
    dictionary.Put(SampleTuple(), second);
    return dictionary;
}

std::deque<omu_PrimWrapper> Samples()
{
    std::deque<omu_PrimWrapper> samples;
    omu_PrimList list(2, 17);
    list.Put(SampleTuple());
    list.Put(omu_PrimEnumBase("UNKNOWN"));
    const omu_PrimPath path(cow_List<cow_String>{"models", "Model-1"}, 'm');
    const auto add = [&samples]<class... C>(const C&... objects) {
        (samples.emplace_back(objects.DynTypeId(), new C(objects)), ...);
    };
    add(SampleDictionary<int>(-1, 7), SampleDictionary<cow_String>("a", "b"), list, omu_PrimNumber(-2.5F),
        omu_PrimNumber(4000000000U), path, omu_PrimString("it's a text of more than fifteen bytes"), SampleTuple(),
        omu_PrimExpr("a + b"), omu_PrimEnumBase("QUAD"), omu_QueryPathMsg(path), omu_PrimNone(),
        omu_PrimWrapper(omu_PrimTuple::TypeId(), new omu_PrimTuple(SampleTuple()),
                        SampleDictionary<cow_String>("x", "y")),
        omu_PrimType(), omu_PrimArray(Tuple({Tuple({1, 2}), Tuple({3, 4.5})})),
        omu_PrimComplex(omi_complex::Polar(1, 0.5)), omu_PrimBool<2>(false), omu_PrimBool<1>(true));
    add(omu_KeywordTypeErrorException("name", "string", "int", "Part"),
        omu_ArgTypeErrorException(2, "string", "int", "Part"), omu_ArgNumberErrorException(2, 3, "Part"),
        omu_KeywordErrorException("name", "Part"),
        omu_AttributeErrorException(omu_AttributeErrorException::READ_ONLY, "name"), omu_KeyErrorException("text"),
        omu_IndexErrorException("text"), omu_RangeErrorException("width", 1.5, omu_INCLUSIVE, 2.5, omu_NOT_INCLUSIVE),
        omu_ValueErrorException("text"), omu_OverflowErrorException("text"), omu_NameErrorException("text"),
        omu_ZeroDivisionErrorException("text"), omu_ColorErrorException("text"), omu_FontErrorException("text"),
        omu_AccessErrorException("text"), omu_BreNameErrorException(omu_BreNameErrorException::EMPTY),
        omu_GenericTypeErrorException());
    return samples;
}

} // namespace

TEST(TypeTable, Rows_are_the_promised_ones)
{
    std::ostringstream rows; // id, name, parent, kind, which of the five functions there are
    rows << std::hex << std::uppercase;
    for (const std::uint32_t component : {2, 19, 31, 35}) {
        for (auto id = (component << 16) + 1; const typ_Entry* const row = typ_ArchCompTable::Find(id); ++id) {
            rows << id << ' ' << row->name << ' ' << row->parent << ' ' << row->kind << ' ' << (row->ctor != nullptr)
                 << (row->read != nullptr) << (row->write != nullptr) << (row->print != nullptr)
                 << (row->dtor != nullptr) << '\n';
        }
    }
    EXPECT_EQ(Golden(VEXOMU_TEST_DATA "/types.txt", rows.str()), rows.str());
    EXPECT_TRUE(omu_PrimList().IsA(omu_PrimSequence::TypeId()));
    EXPECT_FALSE(omu_PrimDictionary<int>().IsA(omu_PrimSequence::TypeId()));
}

TEST(TypeTable, Streams_and_dumps_keep_all_of_an_object)
{
    std::string streams, dumps;
    std::set<std::uint32_t> ids(std::begin(abstractIds), std::end(abstractIds));
    for (const omu_PrimWrapper& sample : Samples()) {
        const std::uint32_t typeId = sample.WrappedTypeId();
        SCOPED_TRACE(typ_ArchCompTable::GetName(typeId).AsCharPtr());
        const std::string bytes = Bytes(sample);
        streams += bytes;
        dumps += Dump(sample) + "\n";
        ids.insert(typeId);
        const omu_PrimWrapper copy = Read(bytes, typeId);
        EXPECT_EQ(copy.WrappedTypeId(), typeId);
        EXPECT_EQ(Bytes(copy), bytes);
        EXPECT_EQ(Dump(copy), Dump(sample));
        EXPECT_THROW(Read(bytes, 0x1F0002), nex_TextException);
    }
    EXPECT_TRUE(Golden(VEXOMU_TEST_DATA "/values.stream", streams) == streams) << "other bytes than on other systems";
    EXPECT_EQ(Golden(VEXOMU_TEST_DATA "/values.dump", dumps), dumps);
    EXPECT_EQ(ids.size(), omu_ArchEntry().count - 2) << "row 0 is empty, and row 39 has no functions";
}

TEST(TypeTable, Damaged_streams_are_refused_or_give_valid_objects)
{
    for (const omu_PrimWrapper& sample : Samples()) {
        const std::uint32_t typeId = sample.WrappedTypeId();
        SCOPED_TRACE(typ_ArchCompTable::GetName(typeId).AsCharPtr());
        const std::string bytes = Bytes(sample);
        for (std::size_t at = 0; at < bytes.size(); ++at) {
            EXPECT_EQ(Again(bytes.substr(0, at)), "") << "cut to " << at;
            for (const int mask : {0x01, 0x02, 0x10, 0x80, 0xFF}) {
                std::string damaged = bytes;
                damaged[at] = static_cast<char>(damaged[at] ^ mask);
                // Nothing, or all that was read: another type id may leave bytes behind.
                EXPECT_TRUE(damaged.starts_with(Again(damaged))) << "byte " << at << ", mask " << mask;
            }
        }
        if (!typ_ArchCompTable::IsParent(typeId, omu_Primitive::TypeId()) || typeId == omu_PrimWrapper::TypeId()) {
            continue; // has no type code
        }
        for (const char code : std::string_view("nifxspetwc({o<\0", 15)) {
            std::string damaged = bytes;
            damaged[4] = code; // after the type id
            EXPECT_TRUE(code == bytes[4] || Again(damaged).empty()) << "code " << code;
        }
    }
}

TEST(TypeTable, Abstract_classes_build_nothing)
{
    bio_Ifilter in("", 0);
    for (const std::uint32_t id : abstractIds) {
        const typ_Entry& row = *typ_ArchCompTable::Find(id);
        RecordedAssertions assertions;
        EXPECT_EQ(row.ctor(in, nullptr), nullptr);
        EXPECT_EQ(assertions.Take(), Texts{std::string(row.name) + "::CtorFunc(): Illegal call to "
                                                                   "abstract class constructor."});
    }
}

TEST(TypeTable, Ids_that_may_not_stand_there_are_named)
{
    RecordedAssertions assertions;
    const std::pair<std::uint32_t, const char*> rows[] = {
        {0xEA620001, "unknown type id 0xEA620001 at offset 0"},
        {0x130028, "unknown type id 0x130028 at offset 0"},
        {0x130000, "unknown type id 0x130000 at offset 0"},
        {0x1F0002, "type nex_TextException where omu_Primitive is expected at offset 0"},
        {0x130020, "type omu_PrimSequence is abstract at offset 0"},
        {0x130027, "type omu_YesNoConst has no stream functions at offset 0"}};
    for (const auto& [id, refusal] : rows) {
        omu_Primitive* value = nullptr;
        EXPECT_EQ(ReadFrom(BytesOf(id) + std::string(16, '\0'), value), refusal);
        EXPECT_EQ(value, nullptr);
    }
    bio_Ofilter out;
    std::ostringstream text;
    pnt_PrettyPrint print(text);
    const char* const refusal = "type omu_YesNoConst has no stream functions";
    const omu_PrimNone object;
    EXPECT_EQ(RefusalOf([&] { obj_OutputP0Ptr(out, &object, 0x130027); }), refusal);
    EXPECT_EQ(RefusalOf([&] { obj_PrintP0Ptr(print, &object, 0x130027); }), refusal);
    EXPECT_EQ(RefusalOf([&] { obj_DeepCopyP0Ptr(&object, 0xEA620001); }), "unknown type id 0xEA620001");
    EXPECT_EQ(out.Size(), 0U);
    print << static_cast<const omu_Primitive*>(nullptr);
    EXPECT_EQ(text.str(), "(null)");
    EXPECT_EQ(assertions.Take(), Texts()) << "bad input must not reach one";
}

TEST(TypeTable, Descent_follows_the_parents_across_components)
{
    constexpr std::uint32_t CRATE = 0xFFFF0001, CIRCLE = 0xFFFF0002;
    static constexpr typ_Entry rows[] = {{}, {typ_VALUE, "Crate", 0x130019}, {typ_VALUE, "Circle", CIRCLE}};
    typ_ArchCompTable::InsertEntry(0xFFFF, {rows, 3});
    const auto ancestors = [](std::uint32_t id, std::initializer_list<std::uint32_t> candidates) {
        return std::ranges::count_if(candidates, [id](auto each) { return typ_ArchCompTable::IsParent(id, each); });
    };
    EXPECT_EQ(ancestors(CRATE, {CRATE, 0x130019, 0x130020, 0x130011}), 4);
    EXPECT_EQ(ancestors(CRATE, {typ_ROOT, 0x1F0001, 0x130015, CIRCLE}), 0);
    EXPECT_EQ(ancestors(0x130019, {CRATE}) + ancestors(0xFFFF0003, {0x130011}), 0);
    RecordedAssertions assertions;
    EXPECT_FALSE(typ_ArchCompTable::IsParent(CIRCLE, CRATE));
    EXPECT_EQ(assertions.Take().size(), 1U);
    EXPECT_EQ(typ_ArchCompTable::GetName(0xFFFF0003), "");
    EXPECT_EQ(typ_ArchCompTable::GetDtorFunc(CRATE), nullptr);
    typ_ArchCompTable::InsertEntry(0xFFFF, {});
    EXPECT_EQ(typ_ArchCompTable::Find(CRATE), nullptr);
}
