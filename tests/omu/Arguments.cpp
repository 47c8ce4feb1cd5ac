#include "Values.h"
#include "omu_BreNameErrorException.h"

TEST(Arguments, A_deprecated_keyword_counts_once_and_only_after_a_miss)
{
    omu_Arguments arguments;
    arguments.Put(5, "old");
    int value = 0;
    arguments.Begin();
    arguments.Optional();
    arguments.Get(value, "new");
    arguments.DeprecatedGet(value, "old", "renamed");
    arguments.DeprecatedGet(value, "older", "renamed"); // the one before it succeeded
    arguments.End("f");
    EXPECT_EQ(value, 5);
    EXPECT_EQ(arguments.DeprecatedArgumentsUsed(), (cow_List<cow_String>{"old"}));
}

TEST(Arguments, A_name_is_checked_by_the_rules_of_its_target_when_the_call_ends)
{
    // The line is that of the rule that is broken; 0: none.
    const std::tuple<const char*, omu_BrenowName, int> rows[] = {
        {"Part.1", omu_BrenowName(), 193},
        {"my job", omu_BrenowName("preset", omu_BrenowName::GUI_JOB_NAME), 255},
        {"a.b \\", omu_BrenowName("preset", omu_BrenowName::STEP_NAME), 0},
    };
    for (const auto& [supplied, target, brokenRule] : rows) {
        for (const bool byKeyword : {false, true}) {
            SCOPED_TRACE(supplied);
            omu_Arguments arguments(byKeyword ? 0 : 1);
            byKeyword ? arguments.Put(supplied, "name") : arguments.Put(cow_String(supplied));
            omu_BrenowName name = target;
            int count = 5;
            arguments.Begin();
            arguments.Get(name, "name");
            arguments.Optional();
            arguments.Get(count, "count");
            EXPECT_EQ(arguments.Error(), brokenRule != 0);
            int line = 0;
            try {
                arguments.End("f");
            } catch (const omu_BreNameErrorException& error) {
                line = error.Line();
            }
            EXPECT_EQ(line, brokenRule);
            EXPECT_EQ(name.AsString(), brokenRule != 0 ? target.AsString() : cow_String(supplied));
            // A failed name can be tried as something else, like any other value.
            arguments.Begin();
            arguments.Get(name, "name");
            EXPECT_EQ(arguments.Alternative(), brokenRule != 0);
        }
    }
}

TEST(Arguments, A_copy_keeps_its_values_however_many_keywords_there_are)
{
    const auto make = [](int keywords, cow_String& text) {
        auto arguments = std::make_unique<omu_Arguments>(1);
        arguments->Put(keywords);
        text = "(" + cow_String(keywords);
        for (int i = 0; i < keywords; ++i) {
            arguments->Put(cow_String("a keyword value long enough to be shared"), "k" + cow_String(i));
            text += ", k" + cow_String(i) + "='a keyword value long enough to be shared'";
        }
        text += ")";
        return arguments;
    };
    for (const int from : {1, 4, 5, 9}) {
        for (const int to : {1, 4, 5, 9}) {
            cow_String text, other;
            auto original = make(from, text);
            const auto assigned = make(to, other);
            *assigned = *original;
            const std::unique_ptr<omu_Primitive> copy(original->Copy());
            original->Put(1, "k0");
            original = make(9, other); // over what copying has left on the stack
            EXPECT_EQ(copy->AsString(0), text);
            EXPECT_EQ(assigned->AsString(0), text);
        }
    }
}

TEST(Arguments, A_command_text_writes_what_reads_back_equal)
{
    omu_Arguments arguments(4);
    arguments.Put(0.1 + 0.2);
    arguments.Put(0.1F);
    arguments.Put(cow_String("tab\there\r'\\\x01\n", 13));
    arguments.Put(List({1}).Copy());
    arguments.Put(omu_PrimBool<2>(true), "mode");
    EXPECT_EQ(arguments.AsString(0), "(0.30000000000000004, 0.1, 'tab\\x09here\\x0d\\'\\\\\\x01\\n', [1], mode=ON)");

    omu_Arguments names;
    for (const char* name : {"from", "fromage", "two words", "2nd", ""}) {
        names.Put(1, name);
    }
    EXPECT_EQ(names.AsString(0), "(**{'': 1}, **{'2nd': 1}, **{'from': 1}, fromage=1, **{'two words': 1})");
}
