#include "Values.h"
#include "omu_Assignment.h"
#include "omu_Atom.h"
#include "omu_MethodCall.h"
#include "omu_Reference.h"
#include "omu_ShortcutImpl.h"
#include "omu_TempVariable.h"

TEST(CommandTexts, Calls_assignments_and_references_read_as_promised)
{
    omu_Arguments arguments(1);
    arguments.Put(0.5);
    arguments.Put("a'b", cow_String("name"));
    EXPECT_EQ(omu_MethodCall("m.parts['p']", "cut", arguments).CommandText(), "m.parts['p'].cut(0.5, name='a\\'b')");
    EXPECT_EQ(omu_MethodCall("", "open", omu_Arguments()).CommandText(), "open()");
    const omu_TempVariable temporary("part");
    EXPECT_EQ(omu_Assignment(temporary, "open()").CommandText(), "p = open()");
    EXPECT_EQ(omu_Assignment("m.size", "3").CommandText(), "m.size = 3");
    EXPECT_EQ(omu_Assignment(cow_String("x"), "").CommandText(), "x = ");

    std::ostringstream text;
    text << omu_Reference{1, -2, 3};
    EXPECT_EQ(text.str(), "catid:1, id:-2, type:3");
}

TEST(TempVariable, A_name_is_free_again_when_its_last_holder_is_gone)
{
    const auto name = [](const char* base) { return cow_String(omu_TempVariable(base)); };
    RecordedAssertions assertions;
    std::optional<omu_TempVariable> part("part");
    const omu_TempVariable point("point");
    omu_TempVariable path("path");
    EXPECT_EQ(cow_String(*part) + cow_String(point) + cow_String(path), "pp1p2");
    std::optional<omu_TempVariable> copy(part);
    part.reset();
    EXPECT_EQ(name("plane"), "p3") << "the copy holds it";
    copy.reset();
    EXPECT_EQ(name("plane"), "p");
    path = point;
    EXPECT_EQ(cow_String(path), "p1");
    path = *&path;
    const omu_TempVariable first("part");
    EXPECT_EQ(name("plane"), "p2") << "given back by the assignment";
    EXPECT_EQ(name(""), "_");
    EXPECT_EQ(name("\xC3\xA9t\xC3\xA9"), "\xC3\xA9");
    path = omu_TempVariable();
    EXPECT_EQ(cow_String(path), "None");
    EXPECT_TRUE(assertions.Take().empty());
}

TEST(Atom, A_text_has_one_number_and_zero_is_none)
{
    RecordedAssertions assertions;
    EXPECT_TRUE(omu_Atom::CreateAtom("S11"));
    EXPECT_FALSE(omu_Atom::CreateAtom("S11"));
    EXPECT_TRUE(omu_Atom::CreateAtom(""));
    const omu_Atom stress("S11");
    EXPECT_EQ(omu_Atom(stress.Index()).String(), "S11");
    EXPECT_NE(omu_Atom(""), stress);
    EXPECT_EQ(omu_Atom("never").Index(), 0U);
    EXPECT_TRUE(assertions.Take().empty());
    const omu_Atom bad[] = {omu_Atom(0U), omu_Atom(1000000U), omu_Atom(static_cast<const char*>(nullptr))};
    EXPECT_EQ(bad[1].String(), "");
    EXPECT_FALSE(omu_Atom::CreateAtom(nullptr));
    EXPECT_EQ(assertions.Take(), (Texts{"found", "i< list.Length()", "omu_Atom: string must be non-NULL!",
                                        "omu_Atom: string must be non-NULL!"}));
}

TEST(Shortcut, Notices_that_its_object_has_left_the_model)
{
    std::optional<Part> part(std::in_place);
    const omu_ShortcutImpl shortcut("wing", "m.wing", &*part);
    const omu_ShortcutHolder copy(shortcut.Copy());
    EXPECT_TRUE(copy->HasValue() && copy->InModel());
    part.reset();
    EXPECT_TRUE(copy->HasValue());
    EXPECT_FALSE(copy->InModel());
    EXPECT_TRUE(*copy == shortcut);
    EXPECT_FALSE(shortcut == omu_ShortcutImpl("wing", "m.tail", nullptr));
    EXPECT_FALSE(omu_ShortcutImpl("wing", "", nullptr).HasValue());
}
