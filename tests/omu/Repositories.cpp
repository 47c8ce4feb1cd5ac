#include "omu_DictIntObjABC.h"
#include "omu_IdSeqIntObj.h"
#include "omu_MemberIntObj.h"
#include "omu_SeqIntObj.h"

#include "Values.h"
#include "VirtualSlots.h"
#include "omu_IndexErrorException.h"
#include "omu_ShortcutImpl.h"

#include <unordered_set>

namespace
{

struct Wing final : Part
{
    cow_String AsString(int) const override { return "path"; }
};

/// Every key has the same part, but for the keys that have none or fail.
template <class K> struct Repository final : omu_DictIntObjABC<K>
{
    explicit Repository(std::initializer_list<K> list) : keys(list) {}
    omu_Primitive* Copy() const override { return nullptr; }
    int Length() const override { return keys.Length(); }
    omu_Primitive* Value(const K&) const override
    {
        if (failing) {
            nex_TextException("torn").Throw("test", 1);
        }
        return absent ? nullptr : new omu_ObjectRef(const_cast<Wing&>(part));
    }
    void Keys(cow_List<K>& list) const override { list = keys; }

    cow_List<K> keys;
    Wing part;
    bool absent = false;
    bool failing = false;
};

/// What a script gets for these arguments, as text; an error is its text.
template <class... V> std::string Call(omu_InterfaceObj& object, const char* method, const V&... values)
{
    std::string text;
    const std::string error = ErrorOf([&] {
        omu_Arguments arguments(sizeof...(values));
        (arguments.Put(values), ...);
        bool deprecated = false;
        const std::unique_ptr<omu_Primitive> result(object.CallMethod("", method, arguments, deprecated));
        text = result->AsString(0);
    });
    return text + error;
}

struct Ids final : omu_SeqIntObj
{
    Ids() = default;
    explicit Ids(const std::vector<int>& ids)
    {
        m_ids = cow_1DArray<int>(ids.begin(), ids.end());
        m_length = m_ids.Length();
    }
    omu_Primitive* Copy() const override { return new Ids(*this); }
    int Length() const override { return m_length; }
    omu_Primitive* Index(const int& index) const override { return new omu_PrimNumber(m_ids[index]); }
    omu_Primitive* Slice(const int&, const int&) const override { return nullptr; }
    omu_Primitive* Repeat(const int&) const override { return nullptr; }
    omu_Primitive* Concat(omu_SeqIntObj*) const override { return nullptr; }
    int Remove(const int&) override { return 0; }
    int RemoveSlice(const int&, const int&) override { return 0; }
    std::vector<int> Content() const { return {m_ids.begin(), m_ids.begin() + m_length}; }
};

struct InstanceIds final : omu_IdSeqIntObj
{
    explicit InstanceIds(std::initializer_list<omu_IntAndArrayInt> runs)
    {
        m_subscripts = omu_ListArrayInt(omu_ListArrayInt::Runs(runs));
    }
    omu_Primitive* Copy() const override { return new InstanceIds(*this); }
};

/// The position, or the error's text.
template <class Convert> std::string Position(Convert convert)
{
    std::string position;
    const std::string error = ErrorOf<omu_IndexErrorException>([&] { position = std::to_string(convert()); });
    return position + error;
}

} // namespace

TEST(Repositories, The_virtual_operations_stand_in_their_promised_order)
{
    using D = omu_DictIntObjABC<int>;
    using S = omu_SeqIntObj;
    ExpectSlots(28,
                {SlotOf(&D::Length), SlotOf(&D::Value), SlotOf(&D::SetValue), SlotOf(&D::Remove), SlotOf(&D::Values),
                 SlotOf(&D::Keys), SlotOf(&D::HasKey), SlotOf(&D::Items), SlotOf(&D::ChangeKey), SlotOf(&D::Summary)});
    ExpectSlots(28, {SlotOf(&S::Length), SlotOf(&S::Index), SlotOf(&S::Slice), SlotOf(&S::Repeat), SlotOf(&S::Concat),
                     SlotOf(&S::Remove), SlotOf(&S::RemoveSlice)});
}

TEST(Repositories, Scripts_ask_by_keys_of_every_kind)
{
    Repository<int> numbers{7, -1};
    Repository<cow_String> names{"b", "a"};
    const omu_PrimEnumBase quad("QUAD");
    const omu_PrimEnumBase tri("TRI");
    Repository<omu_PrimEnumBase> constants{quad};
    Repository<int> empty{};
    EXPECT_EQ(Call(constants, "keys") + Call(empty, "keys"), "[QUAD][]");
    EXPECT_EQ(Call(names, "items"), "[('b', path), ('a', path)]");
    EXPECT_EQ(Call(numbers, "has_key", -1) + Call(numbers, "has_key", 1), "10");
    EXPECT_EQ(Call(names, "has_key", cow_String("a")) + Call(names, "has_key", cow_String("")), "10");
    EXPECT_EQ(Call(constants, "has_key", quad) + Call(constants, "has_key", tri), "10");
    EXPECT_EQ(Call(empty, "summary"), "'Summary NOT IMPLEMENTED'");
    EXPECT_EQ(names.TypeString(), "Repository");
    EXPECT_EQ(Call(constants, "has_key", 1), "has_key[0]; found number, expecting symbolic constant");
    EXPECT_EQ(Call(names, "changeKey", cow_String("a"), 5), "changeKey[1]; found number, expecting string");
    EXPECT_EQ(Call(numbers, "keys", 5), "keys; too many arguments; expected 0, got 1");
}

TEST(Repositories, The_text_names_keys_and_cuts_off_objects)
{
    omi_SingletonBase<omu_TextRepr>::Finalize();
    auto& settings = omi_Singleton<omu_TextRepr>::Instance();
    Repository<cow_String> names{"b'", "a"};
    EXPECT_EQ(names.AsString(0), "{'b\\'': 'Part object', 'a': 'Part object'}");
    EXPECT_EQ(names.AsString(1), "'Repository object'");
    settings.SetMaxRecursion(2);
    settings.SetMaxElementsInSequence(1);
    EXPECT_EQ(names.FullRepr(), "{'b\\'': path, ...}");
    names.absent = true;
    EXPECT_EQ(names.AsString(1), "{'b\\'': None, ...}");
    Repository<omu_PrimEnumBase> constants{omu_PrimEnumBase("QUAD")};
    constants.failing = true;
    EXPECT_EQ(ErrorOf<nex_TextException>([&] { constants.AsString(0); }),
              "dictionary object: the element of key QUAD, unknown type, cannot be shown: torn");
    EXPECT_EQ(Ids({3, 1}).AsString(0), "[3, ...]");
    omi_SingletonBase<omu_TextRepr>::Finalize();
}

TEST(SequenceOfIds, Indices_are_those_of_scripts)
{
    const Ids five({1, 2, 3, 4, 5});
    const Ids fresh;
    const std::tuple<int, std::string, std::string> rows[] = {
        {0, "0", "0"},  {4, "4", "4"}, {-1, "4", "4"}, {-5, "0", "0"},
        {-7, "0", "0"}, {5, "5", ""},  {6, "", ""},    {std::numeric_limits<int>::min(), "0", "0"},
    };
    for (const auto& [index, asEnd, asElement] : rows) {
        const std::string outside = "sequence index " + std::to_string(index) + " out of range";
        const auto expected = [&](const std::string& position) { return position.empty() ? outside : position; };
        EXPECT_EQ(Position([&] { return five.ConvertIndex(index); }), expected(asEnd));
        EXPECT_EQ(Position([&] { return five.ConvertSubscrIndex(index); }), expected(asElement));
        EXPECT_EQ(Position([&] { return fresh.ConvertIndex(index); }), outside);
    }
    EXPECT_EQ(fresh.IsUnique(0), 1);
}

TEST(SequenceOfIds, The_first_of_equal_ids_stays)
{
    std::mt19937 random(7);
    // The longest are too long for anything but linear work; some ids lie close, others far apart.
    for (const auto& [length, distance] :
         {std::pair(0, 1), {1, 1}, {5, 1}, {5, 400000000}, {200000, 1}, {200000, 9999}}) {
        std::vector<int> ids(static_cast<std::size_t>(length));
        std::vector<int> kept;
        std::unordered_set<int> seen;
        for (int& id : ids) {
            id = (static_cast<int>(random() % (static_cast<unsigned int>(length) + 1)) - length / 2) * distance;
            if (seen.insert(id).second) {
                kept.push_back(id);
            }
        }
        Ids sequence(ids);
        sequence.RemoveDuplicates();
        EXPECT_EQ(sequence.Content(), kept);
        EXPECT_EQ(sequence.IsUnique(length + 1), 1);
        EXPECT_EQ(sequence.IsUnique(kept.empty() ? 0 : kept.back()), kept.empty() ? 1 : 0);
    }
    Ids fresh;
    fresh.RemoveDuplicates();
    EXPECT_EQ(fresh.Length(), -1);
}

TEST(InstanceSequence, Finds_ids_and_their_instances)
{
    InstanceIds ids{{9, {5, 2}}, {7, {1}}, {9, {2, 3}}};
    const auto convert = [&](int index, bool allowEnd) {
        return Position([&] { return ids.ConvertIndex(index, allowEnd); });
    };
    EXPECT_EQ(convert(5, true) + convert(-1, false) + convert(-9, true), "540");
    EXPECT_EQ(convert(5, false), "sequence index 5 out of range");
    EXPECT_EQ(convert(6, true), "sequence index 6 out of range");
    int id = 0;
    int instance = 0;
    ids.ConvertSubscrIndex(-3, id, instance);
    EXPECT_EQ(std::pair(id, instance), std::pair(1, 7));
    omu_ListArrayInt part;
    ids.Subscripts(part, 1, 3);
    EXPECT_EQ(part, omu_ListArrayInt({{9, {2}}, {7, {1}}}));
    EXPECT_FALSE(ids.GetSingleInstanceId(instance));
    ids.RemoveDuplicates();
    ids.Subscripts(part);
    EXPECT_EQ(part, omu_ListArrayInt({{9, {2, 3, 5}}, {7, {1}}}));
    EXPECT_TRUE((InstanceIds{{4, {1}}, {4, {2}}}).GetSingleInstanceId(instance));
    EXPECT_EQ(instance, 4);
    EXPECT_EQ(ids.AsString(0), "<InstanceSequence object>");
    EXPECT_TRUE(ids.IsA("Sequence"));
}

TEST(MemberObject, Copies_share_the_shortcut)
{
    omu_MemberIntObj member(omu_ShortcutImpl("wing", "m.wing", nullptr));
    const std::unique_ptr<omu_Primitive> copy(member.Copy());
    EXPECT_EQ(static_cast<const omu_MemberIntObj&>(*copy).Shortcut(), member.Shortcut());
    bool deprecated = false;
    const std::unique_ptr<omu_Primitive> name(member.GetMember("name", deprecated));
    EXPECT_EQ(name->AsString(0), "'wing'");
    EXPECT_EQ(member.TypeString(), "BrenowMemberObject");
    EXPECT_EQ(omu_MemberIntObj().Shortcut(), nullptr);
}
