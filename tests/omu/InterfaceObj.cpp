#include "Values.h"
#include "VirtualSlots.h"
#include "omu_AccessErrorException.h"
#include "omu_TypeRegistryCache.h"

namespace
{

class Base : public omu_InterfaceObj
{
public:
    Base()
    {
        static constexpr methodTable methods[] = {
            {"run", "", omu_AsMethod<&Base::Run>}, {"own", "", omu_AsMethod<&Base::Own>}, {}};
        static constexpr memberTable members[] = {{"size", "", omu_AsGetter<&Base::GetSize>, nullptr}, {}};
        static constexpr deprecatedMethodTable oldMethods[] = {{"go", "", omu_AsMethod<&Base::Run>, "run", "1.0"},
                                                               {"own", "", omu_AsMethod<&Base::Run>, "run", "1.0"},
                                                               {}};
        static constexpr deprecatedMemberTable oldMembers[] = {
            {"length", "", omu_AsGetter<&Base::GetSize>, nullptr, "size", "1.0"}, {}};
        DescribeType("TestBase", methods, members, oldMethods, oldMembers);
    }

    omu_Primitive* Copy() const override { return new Base(*this); }

private:
    omu_Primitive* Run(omu_Arguments&) { return new omu_PrimNumber(1); }
    omu_Primitive* Own(omu_Arguments&) { return new omu_PrimNumber(2); }
    omu_Primitive* GetSize() { return new omu_PrimNumber(10); }
};

class Derived : public Base
{
public:
    Derived()
    {
        static constexpr methodTable methods[] = {
            {"run", "", omu_AsMethod<&Derived::RunDerived>},
            {"run", "", nullptr}, // never found: the first row of a name counts
            {},
        };
        DescribeType("TestDerived", methods, nullptr);
        DescribeType("TestBase", methods, nullptr); // described already
    }

private:
    omu_Primitive* RunDerived(omu_Arguments&) { return new omu_PrimNumber(3); }
};

/// As many levels as asked for.
class Deep final : public omu_InterfaceObj
{
public:
    explicit Deep(int levels)
    {
        for (int level = 0; level < levels; ++level) {
            DescribeType(("Level" + std::to_string(level)).c_str(), nullptr, nullptr);
        }
    }
    omu_Primitive* Copy() const override { return nullptr; }
};

constexpr int NONE = 77;

int Number(omu_Primitive* value)
{
    const std::unique_ptr<omu_Primitive> owner(value);
    return owner != nullptr ? static_cast<const omu_PrimNumber&>(*owner).GetInt() : NONE;
}

/// The method's result, behind a minus when the name is deprecated.
int Call(omu_InterfaceObj& object, const char* name)
{
    omu_Arguments arguments;
    bool deprecated = false;
    const int result = Number(object.CallMethod("ignored", name, arguments, deprecated));
    return deprecated ? -result : result;
}

} // namespace

TEST(InterfaceObj, The_virtual_operations_stand_in_their_promised_order)
{
    using I = omu_InterfaceObj;
    ExpectSlots(
        1,
        {SlotOf(&I::TypeString),    SlotOf(&I::AsString),     SlotOf(&I::operator==),     SlotOf(&I::Accept),
         SlotOf(&I::Copy),          SlotOf(&I::DynTypeId),    SlotOf(&I::IsMethod),       SlotOf(&I::CallMethod),
         SlotOf(&I::GetMember),     SlotOf(&I::SetMember),    SlotOf(&I::DeleteMember),   SlotOf(&I::MemberList),
         SlotOf(&I::MethodList),    SlotOf(&I::Repr),         SlotOf(&I::FullRepr),       SlotOf(&I::JournalVariable),
         SlotOf(&I::CommandPath),   SlotOf(&I::Coerce),       SlotOf(&I::Cast),           SlotOf(&I::Absolute),
         SlotOf(&I::AddOperation),  SlotOf(&I::SubOperation), SlotOf(&I::MulOperation),   SlotOf(&I::DivOperation),
         SlotOf(&I::UnaryNegative), SlotOf(&I::NonZero),      SlotOf(&I::ConstGetWrapper)});
}

TEST(InterfaceObj, The_most_derived_level_that_has_a_name_wins_and_deprecated_names_count_last)
{
    Derived object;
    EXPECT_EQ(object.HierarchyDepth(), 2);
    EXPECT_EQ(Call(object, "run"), 3);
    EXPECT_EQ(Call(object, "own"), 2);
    EXPECT_EQ(Call(object, "Run"), NONE) << "names are case-sensitive";
    EXPECT_EQ(object.MethodList(), (cow_List<cow_String>{"run", "own"}));
    EXPECT_EQ(object.MemberList(), (cow_List<cow_String>{"size"}));

    bool deprecated = false;
    EXPECT_EQ(Call(object, "go"), -1);
    EXPECT_EQ(Number(object.GetMember("length", deprecated)), 10);
    EXPECT_TRUE(deprecated);
}

TEST(InterfaceObj, Type_names_answer_from_every_level)
{
    Derived object;
    EXPECT_TRUE(object.IsA("BrenowObject") && object.IsA("TestBase") && object.IsA("TestDerived"));
    bool deprecated = false;
    EXPECT_FALSE(object.IsA("Test") || object.IsA(nullptr) || object.IsMethod(nullptr, deprecated));
    EXPECT_TRUE(object == omu_PrimNumber(1)) << "promised to equal everything";
    EXPECT_EQ(object.BaseType(), "TestBase");
    EXPECT_EQ(object.ExposedTypeName(), "TestDerived");
    omi_Singleton<omu_TypeRegistryCache>::Instance().RegisterTypeName("TestBase");
    EXPECT_EQ(object.TypeString(), "TestBase") << "the most derived level is not exposed";
}

TEST(InterfaceObj, Misuse_is_reported_and_harmless)
{
    RecordedAssertions assertions;
    Deep undescribed(0);
    EXPECT_EQ(Call(undescribed, "run"), NONE);
    EXPECT_EQ(assertions.Take(), Texts{"Must call DescribeType before using"});
    Deep deepest(9);
    EXPECT_TRUE(assertions.Take().empty());
    Deep tooDeep(10);
    EXPECT_EQ(assertions.Take(), Texts{"Max inheritance hierarchy depth exceeded"});
    EXPECT_EQ(tooDeep.HierarchyDepth(), 9);
}

TEST(InterfaceObj, The_text_settings_limit_how_it_is_shown)
{
    /// Refers to itself.
    class Loop final : public omu_InterfaceObj
    {
    public:
        Loop()
        {
            static constexpr memberTable members[] = {{"name", "", omu_AsGetter<&Loop::GetName>, nullptr},
                                                      {"self", "", omu_AsGetter<&Loop::GetSelf>, nullptr},
                                                      {"none", "", omu_AsGetter<&Loop::GetNone>, nullptr},
                                                      {}};
            DescribeType("Loop", nullptr, members);
        }
        omu_Primitive* Copy() const override { return nullptr; }

    private:
        omu_Primitive* GetName() { return new omu_PrimString("a'b"); }
        omu_Primitive* GetSelf() { return new omu_ObjectRef(*this); }
        omu_Primitive* GetNone() { return nullptr; }
    };

    omi_SingletonBase<omu_TextRepr>::Finalize();
    auto& settings = omi_Singleton<omu_TextRepr>::Instance();
    const Loop loop;
    EXPECT_EQ(loop.AsString(0) + loop.AsString(1), "<Loop object>'Loop object'");
    EXPECT_EQ(loop.FullRepr(), "Loop(name='a\\'b', self='Loop object', none=None)");
    settings.SetMaxRecursion(2);
    settings.SetMaxElementsInSequence(2);
    EXPECT_EQ(loop.FullRepr(), "Loop(name='a\\'b', self=Loop(name='a\\'b', self='Loop object', ...), ...)");
    settings.SetMaxElementsInSequence(-1);
    EXPECT_EQ(loop.FullRepr(), "Loop(...)");
    settings.SetMaxElementsInSequence(3);
    settings.SetMaxRecursion(2147483647);
    EXPECT_LT(loop.FullRepr().Length(), 10000);
    settings.SetMaxReprStringSizeMB(0);
    EXPECT_EQ(loop.FullRepr(), "Loop(...)");
    settings.SetMaxRecursion(-1);
    EXPECT_EQ(loop.FullRepr(), "'Loop object'");
    EXPECT_EQ(loop.Repr(), "<Loop object>");
    omi_SingletonBase<omu_TextRepr>::Finalize();
}

TEST(ObjectRef, Notices_the_end_of_its_object_and_knows_it_from_its_copies)
{
    auto object = std::make_unique<Derived>();
    omu_ObjectRef first(*object);
    omu_ObjectRef second(first);
    EXPECT_EQ(first.Identity(), second.Identity());
    EXPECT_EQ(&second.Resolve(), object.get());
    EXPECT_EQ(Call(second, "run"), 3);
    object.reset();
    const std::unique_ptr<omu_Primitive> copy(second.Copy());
    EXPECT_FALSE(static_cast<omu_ObjectRef&>(*copy).IsAlive());
    EXPECT_TRUE(second.IsA("TestBase"));
    EXPECT_EQ(ErrorOf<omu_AccessErrorException>([&] { Call(second, "run"); }),
              "<" + std::string(second.ExposedTypeName()) + " object> no longer exists");

    Derived original;
    const omu_ObjectRef reference(original);
    Derived other(original);
    EXPECT_NE(omu_ObjectRef(other).Identity(), reference.Identity());
}
