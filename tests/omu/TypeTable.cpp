#include "../Golden.h"
#include "ExceptionClasses.h"
#include "Values.h"
#include "omu_Module.h"
#include "omu_QueryPathMsg.h"
#include "typ_ArchCompTable.h"

namespace
{

/// A row as it is promised, with its parent; the type id of row r is 0x130000 + r.
using Promised = std::pair<const char*, std::uint32_t>;

constexpr Promised promised[] = {
    {nullptr, 0},
    {"omu_TypeErrorException", 0x1F0003},
    {"omu_KeywordTypeErrorException", 0x130001},
    {"omu_ArgTypeErrorException", 0x130001},
    {"omu_ArgNumberErrorException", 0x130001},
    {"omu_KeywordErrorException", 0x130001},
    {"omu_AttributeErrorException", 0x1F0003},
    {"omu_KeyErrorException", 0x1F0003},
    {"omu_IndexErrorException", 0x1F0003},
    {"omu_RangeErrorException", 0x1F0003},
    {"omu_ValueErrorException", 0x1F0003},
    {"omu_OverflowErrorException", 0x1F0003},
    {"omu_NameErrorException", 0x1F0003},
    {"omu_ZeroDivisionErrorException", 0x1F0003},
    {"omu_ColorErrorException", 0x1F0003},
    {"omu_FontErrorException", 0x1F0003},
    {"omu_AccessErrorException", 0x1F0003},
    {"omu_Primitive", 1},
    {"omu_PrimDictionaryBase", 0x130011},
    {"omu_PrimIntDictionary", 0x130012},
    {"omu_PrimStrDictionary", 0x130012},
    {"omu_PrimList", 0x130019},
    {"omu_PrimNumber", 0x130011},
    {"omu_PrimPath", 0x130011},
    {"omu_PrimString", 0x130011},
    {"omu_PrimTuple", 0x130020},
    {"omu_PrimExpr", 0x130011},
    {"omu_PrimEnumBase", 0x130011},
    {"omu_QueryPathMsg", 1},
    {"omu_PrimNone", 0x130011},
    {"omu_PrimWrapper", 0x130011},
    {"omu_PrimType", 0x130011},
    {"omu_PrimSequence", 0x130011},
    {"omu_PrimArray", 0x130020},
    {"omu_PrimComplex", 0x130011},
    {"omu_BreNameErrorException", 0x1F0003},
    {"omu_GenericTypeErrorException", 0x130001},
    {"omu_OnOffConst", 0x13001B},
    {"omu_TrueFalseConst", 0x13001B},
    {"omu_YesNoConst", 0x13001B},
};

constexpr std::uint32_t abstractIds[] = {0x130001, 0x130011, 0x130012, 0x130020};

/// An object known by its type id alone, deleted as the type tables say.
class Object
{
public:
    template <class C> explicit Object(const C& object) : m_object(new C(object)), m_typeId(object.DynTypeId()) {}
    explicit Object(const std::string& bytes, std::uint32_t expectedTypeId = 0)
    {
        bio_Ifilter in(bytes.data(), bytes.size());
        obj_InputP0Ptr(in, m_object, expectedTypeId, m_typeId);
    }
    Object(Object&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)), m_typeId(other.m_typeId) {}
    ~Object()
    {
        if (m_object != nullptr) {
            typ_ArchCompTable::GetDtorFunc(m_typeId)(m_object);
        }
    }

    std::uint32_t TypeId() const { return m_typeId; }
    std::string Bytes() const
    {
        bio_Ofilter out;
        obj_OutputP0Ptr(out, m_object, m_typeId);
        return {reinterpret_cast<const char*>(out.Data()), out.Size()};
    }
    std::string Dump() const
    {
        std::ostringstream text;
        pnt_PrettyPrint out(text);
        obj_PrintP0Ptr(out, m_object, m_typeId);
        return text.str();
    }

private:
    void* m_object = nullptr;
    std::uint32_t m_typeId;
};

struct Sample
{
    Object object;
    const char* dumpName;
};

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

const omu_PrimPath samplePath(cow_List<cow_String>{"models", "Model-1"}, 'm');

std::vector<Sample> Samples()
{
    std::vector<Sample> samples;
    omu_PrimList list(2, 17);
    list.Put(SampleTuple());
    list.Put(omu_PrimEnumBase("UNKNOWN"));
    const auto add = [&](const auto& object, const char* dumpName) { samples.push_back({Object(object), dumpName}); };
    add(SampleDictionary<int>(-1, 7), "omu_PrimDictionary");
    add(SampleDictionary<cow_String>("a", "b"), "omu_PrimDictionary");
    add(list, "omu_PrimList");
    add(omu_PrimNumber(-2.5F), "omu_PrimNumber");
    add(omu_PrimNumber(4000000000U), "omu_PrimNumber");
    add(samplePath, "omu_PrimPath");
    add(omu_PrimString("it's a text of more than fifteen bytes"), "omu_PrimString");
    add(SampleTuple(), "omu_PrimTuple");
    add(omu_PrimExpr("a + b"), "omu_PrimExpr");
    add(omu_PrimEnumBase("QUAD"), "omu_PrimEnumBase");
    add(omu_QueryPathMsg(samplePath), "omu_QueryPathMsg");
    add(omu_PrimNone(), "omu_PrimNone");
    add(omu_PrimWrapper(omu_PrimTuple::TypeId(), new omu_PrimTuple(SampleTuple()),
                        SampleDictionary<cow_String>("x", "y")),
        "omu_PrimWrapper");
    add(omu_PrimType(), "omu_PrimType");
    add(omu_PrimArray(Tuple({Tuple({1, 2}), Tuple({3, 4.5})})), "omu_PrimArray");
    add(omu_PrimComplex(omi_complex::Polar(1, 0.5)), "omu_PrimComplex");
    add(omu_PrimBool<2>(false), "omu_PrimBool<Inst>");
    add(omu_PrimBool<1>(true), "omu_PrimBool<Inst>");
    add(omu_KeywordTypeErrorException("name", "string", "int", "Part"), "omu_KeywordTypeErrorException");
    add(omu_ArgTypeErrorException(2, "string", "int", "Part"), "omu_ArgTypeErrorException");
    add(omu_ArgNumberErrorException(2, 3, "Part"), "omu_ArgNumberErrorException");
    add(omu_KeywordErrorException("name", "Part"), "omu_KeywordErrorException");
    add(omu_AttributeErrorException(omu_AttributeErrorException::READ_ONLY, "name"), "omu_AttributeErrorException");
    add(omu_KeyErrorException("text"), "NAME");
    add(omu_IndexErrorException("text"), "NAME");
    add(omu_RangeErrorException("width", 1.5, omu_INCLUSIVE, 2.5, omu_NOT_INCLUSIVE), "omu_RangeErrorException");
    add(omu_ValueErrorException("text"), "NAME");
    add(omu_OverflowErrorException("text"), "NAME");
    add(omu_NameErrorException("text"), "NAME");
    add(omu_ZeroDivisionErrorException("text"), "NAME");
    add(omu_ColorErrorException("text"), "NAME");
    add(omu_FontErrorException("text"), "NAME");
    add(omu_AccessErrorException("text"), "NAME");
    add(omu_BreNameErrorException(omu_BreNameErrorException::EMPTY), "omu_BreNameErrorException");
    add(omu_GenericTypeErrorException(), "omu_GenericTypeErrorException");
    return samples;
}

/// The object in `bytes`, or nothing when the reader refuses them.
std::optional<Object> Read(const std::string& bytes)
{
    try {
        return Object(bytes);
    } catch (const nex_TextException&) {
        return std::nullopt;
    }
}

} // namespace

TEST(TypeTable, Rows_are_the_promised_ones)
{
    ASSERT_EQ(omu_ArchEntry().count, std::size(promised));
    EXPECT_EQ(typ_ArchCompTable::Find(0x130000 + std::size(promised)), nullptr);
    for (std::uint32_t row = 1; row < std::size(promised); ++row) {
        const typ_Entry* const entry = typ_ArchCompTable::Find(0x130000 + row);
        const auto& [name, parent] = promised[row];
        ASSERT_NE(entry, nullptr) << name;
        EXPECT_STREQ(entry->name, name);
        EXPECT_EQ(entry->parent, parent) << name;
        EXPECT_EQ(entry->kind, parent == 0x130001 || parent == 0x1F0003 ? 4U : 7U) << name;
        const bool functions[] = {entry->ctor != nullptr, entry->read != nullptr, entry->write != nullptr,
                                  entry->print != nullptr, entry->dtor != nullptr};
        for (const bool function : functions) {
            EXPECT_EQ(function, row != 39) << entry->name;
        }
    }
    EXPECT_TRUE(omu_PrimList().IsA(omu_PrimSequence::TypeId()));
    EXPECT_FALSE(omu_PrimDictionary<int>().IsA(omu_PrimSequence::TypeId()));
}

TEST(TypeTable, Every_class_that_can_be_built_has_a_sample_here)
{
    std::set<std::uint32_t> ids(std::begin(abstractIds), std::end(abstractIds));
    ids.insert(0x130027); // has no functions
    for (const Sample& sample : Samples()) {
        ids.insert(sample.object.TypeId());
    }
    EXPECT_EQ(ids.size(), std::size(promised) - 1);
}

TEST(TypeTable, Streams_and_dumps_keep_all_of_an_object)
{
    std::string all;
    for (const Sample& sample : Samples()) {
        SCOPED_TRACE(typ_ArchCompTable::GetName(sample.object.TypeId()).AsCharPtr());
        const std::string bytes = sample.object.Bytes();
        all += bytes;
        const Object copy(bytes, sample.object.TypeId());
        EXPECT_EQ(copy.TypeId(), sample.object.TypeId());
        EXPECT_EQ(copy.Bytes(), bytes);
        EXPECT_EQ(copy.Dump(), sample.object.Dump());
        EXPECT_TRUE(sample.object.Dump().starts_with("(" + std::string(sample.dumpName) + "\n")) << copy.Dump();
        EXPECT_EQ(copy.Dump().find("\n\n"), std::string::npos) << copy.Dump();
        EXPECT_THROW(Object(bytes, 0x1F0002), nex_TextException);
    }
    EXPECT_TRUE(Golden(VEXOMU_TEST_DATA "/values.stream", all) == all) << "other bytes than on other systems";
}

TEST(TypeTable, Damaged_streams_are_refused_or_give_valid_objects)
{
    for (const Sample& sample : Samples()) {
        SCOPED_TRACE(typ_ArchCompTable::GetName(sample.object.TypeId()).AsCharPtr());
        const std::string bytes = sample.object.Bytes();
        for (std::size_t length = 0; length < bytes.size(); ++length) {
            EXPECT_FALSE(Read(bytes.substr(0, length))) << "cut to " << length;
        }
        for (std::size_t at = 0; at < bytes.size(); ++at) {
            for (const int mask : {0x01, 0x02, 0x10, 0x80, 0xFF}) {
                std::string damaged = bytes;
                damaged[at] = static_cast<char>(damaged[at] ^ mask);
                if (const auto object = Read(damaged)) {
                    const auto again = Read(object->Bytes());
                    EXPECT_TRUE(again && again->Dump() == object->Dump()) << "byte " << at << ", mask " << mask;
                }
            }
        }
    }
}

TEST(TypeTable, A_type_code_of_another_class_is_refused)
{
    for (const Sample& sample : Samples()) {
        const std::uint32_t typeId = sample.object.TypeId();
        if (!typ_ArchCompTable::IsParent(typeId, omu_Primitive::TypeId()) || typeId == omu_PrimWrapper::TypeId()) {
            continue; // has no type code
        }
        std::string bytes = sample.object.Bytes();
        const char own = bytes[4]; // after the type id
        for (const char code : std::string_view("nifxspetwc({o<\0", 15)) {
            bytes[4] = code;
            EXPECT_TRUE(code == own || !Read(bytes)) << typ_ArchCompTable::GetName(typeId) << code;
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
        std::string announced(sizeof id, '\0');
        std::memcpy(announced.data(), &id, sizeof id);
        EXPECT_THROW(Object(announced + "abcdefghijklmnop"), nex_TextException) << row.name;
        EXPECT_TRUE(assertions.Take().empty()) << "bad input must not reach an assertion";
    }
}
