#include "omu_Arguments.h"

#include "cow_List.h"
#include "omu_ArgNumberErrorException.h"
#include "omu_ArgTypeErrorException.h"
#include "omu_BreNameErrorException.h"
#include "omu_KeywordErrorException.h"
#include "omu_KeywordTypeErrorException.h"
#include "omu_PrimBool.h"
#include "omu_PrimList.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

namespace
{

using Fill = std::function<void(omu_Arguments&)>;

struct Targets
{
    int count = -1;
    double width = -1;
    cow_String name = "preset";
    cow_List<int> labels;
    bool flag = false;
};

/// Runs f(count, width, name="preset", labels=[], flag=False) on the arguments; the message of its error, or "".
std::string CallF(omu_Arguments& arguments, Targets& targets, int* line = nullptr)
{
    arguments.Begin();
    arguments.Get(targets.count, "count");
    arguments.Get(targets.width, "width");
    arguments.Optional();
    arguments.Get(targets.name, "name");
    arguments.Get(targets.labels, "labels");
    arguments.Get(targets.flag, "flag");
    const bool announced = arguments.Error();
    try {
        arguments.End("f");
    } catch (const omu_TypeErrorException& error) {
        EXPECT_TRUE(announced) << "Error() did not announce what End threw";
        EXPECT_EQ(error.File(), "source/omu/impl/omu_Arguments");
        if (line != nullptr) {
            *line = error.Line();
        }
        return error.JournalMessage().AsCharPtr();
    }
    EXPECT_FALSE(announced);
    return "";
}

std::unique_ptr<omu_PrimList> ListOf(std::initializer_list<int> items)
{
    auto list = std::make_unique<omu_PrimList>(static_cast<int>(items.size()));
    for (const int item : items) {
        list->Put(item);
    }
    return list;
}

} // namespace

TEST(Arguments, Positional_and_keyword_values_reach_their_targets)
{
    omu_Arguments arguments(1);
    arguments.Put(3);
    arguments.Put(2, "width");
    arguments.Put(cow_String("n"), "name");
    arguments.Put(ListOf({4, 5}).release(), "labels");
    arguments.Put(1, "flag");
    Targets targets;
    for (int run = 0; run < 2; ++run) { // Begin starts over
        EXPECT_EQ(CallF(arguments, targets), "");
        EXPECT_EQ(targets.count, 3);
        EXPECT_EQ(targets.width, 2.0);
        EXPECT_EQ(targets.name, "n");
        EXPECT_EQ(targets.labels, (cow_List<int>{4, 5}));
        EXPECT_TRUE(targets.flag);
    }
}

TEST(Arguments, Each_wrong_call_reports_one_error_with_its_text_and_line)
{
    struct Row
    {
        const char* name;
        int positional;
        Fill fill;
        const char* message;
        int line;
    };
    const Row rows[] = {
        {"unknown keyword", 2, [](auto& a) { a.Put(1), a.Put(1.0), a.Put(1, "color"); }, "fkeyword error on color",
         256},
        {"unknown keyword before a wrong type", 2, [](auto& a) { a.Put("x"), a.Put(1.0), a.Put(1, "color"); },
         "fkeyword error on color", 256},
        {"given twice", 2, [](auto& a) { a.Put(1), a.Put(1.0), a.Put(7, "count"); }, "fkeyword error on count", 256},
        {"first positional", 2, [](auto& a) { a.Put(cow_String("x")), a.Put(1.0); },
         "f[0]; found string, expecting int32", 262},
        {"only the first failure", 2, [](auto& a) { a.Put(cow_String("x")), a.Put(cow_String("y")); },
         "f[0]; found string, expecting int32", 262},
        {"second positional", 2, [](auto& a) { a.Put(1), a.Put(cow_String("y")); },
         "f[1]; found string, expecting number", 262},
        {"uint32 for int", 2, [](auto& a) { a.Put(1U), a.Put(1.0); }, "f[0]; found number, expecting int32", 262},
        {"keyword type", 1, [](auto& a) { a.Put(1), a.Put(cow_String("y"), "width"); },
         "f['width']; found string, expecting number", 268},
        {"bool of 2", 2, [](auto& a) { a.Put(1), a.Put(1.0), a.Put(2, "flag"); },
         "f['flag']; found number, expecting 0 or 1", 268},
        {"bool of text", 2, [](auto& a) { a.Put(1), a.Put(1.0), a.Put(cow_String("TRUE"), "flag"); },
         "f['flag']; found string, expecting 0 or 1", 268},
        {"sequence of the wrong elements", 2,
         [](auto& a) { a.Put(1), a.Put(1.0), a.Put(cow_List<cow_String>{"a"}, "labels"); },
         "f['labels']; found sequence of Strings, expecting sequence of Integers", 268},
        {"missing", 1, [](auto& a) { a.Put(1); }, "f; not all required arguments specified; expected 2, got 1", 276},
        {"missing, the first by keyword", 0, [](auto& a) { a.Put(1, "count"); },
         "f; not all required arguments specified; expected 2, got 1", 276},
        {"too many", 6,
         [](auto& a) {
             a.Put(1), a.Put(1.0), a.Put(cow_String("n")), a.Put(ListOf({1}).release()), a.Put(1), a.Put(9);
         },
         "f; too many arguments; expected 5, got 6", 282},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        omu_Arguments arguments(row.positional);
        row.fill(arguments);
        Targets targets;
        int line = 0;
        EXPECT_EQ(CallF(arguments, targets, &line), row.message);
        EXPECT_EQ(line, row.line);
    }
}

TEST(Arguments, The_default_name_stands_in_and_no_name_leaves_the_bare_position)
{
    omu_Arguments arguments(1);
    arguments.Put(cow_String("x"));
    int value = 0;
    arguments.Begin();
    arguments.Get(value, "value");
    try {
        arguments.End("");
        FAIL();
    } catch (const omu_ArgTypeErrorException& error) {
        EXPECT_EQ(error.JournalMessage(), "arg1; found string, expecting int32");
    }
}

TEST(Arguments, Alternative_retries_a_failed_keyword_with_another_type_or_keyword)
{
    omu_Arguments arguments;
    arguments.Put(cow_String("wide"), "width");
    double width = 0;
    cow_String text;
    arguments.Begin();
    arguments.Get(width, "width");
    EXPECT_TRUE(arguments.ErrorOnPrevious());
    ASSERT_TRUE(arguments.Alternative());
    EXPECT_FALSE(arguments.ErrorOnPrevious());
    arguments.Get(text, "breadth"); // not supplied: missed, and undone again
    ASSERT_TRUE(arguments.Alternative());
    arguments.Get(text, "width");
    EXPECT_FALSE(arguments.Alternative());
    arguments.End("f");
    EXPECT_EQ(text, "wide");
    EXPECT_EQ(width, 0);
}

TEST(Arguments, Alternative_undoes_an_optional_miss_and_a_failed_position_but_no_success)
{
    omu_Arguments arguments(1);
    arguments.Put(cow_String("x"));
    int number = 0;
    cow_String text;
    arguments.Begin();
    arguments.Get(number, "number");
    ASSERT_TRUE(arguments.Alternative());
    arguments.Get(text, "number");
    EXPECT_FALSE(arguments.Alternative());
    arguments.Optional();
    arguments.Get(number, "other");
    ASSERT_TRUE(arguments.Alternative());
    arguments.Get(number, "another");
    arguments.End("f");
    EXPECT_EQ(text, "x");
    EXPECT_EQ(number, 0);
}

TEST(Arguments, An_earlier_failure_stays_whatever_comes_after_it)
{
    omu_Arguments arguments(1);
    arguments.Put(cow_String("x"));
    arguments.Put(5, "later");
    int number = 0;
    int later = 0;
    arguments.Begin();
    arguments.Get(number, "number");
    arguments.Get(later, "later");
    EXPECT_EQ(later, 0) << "written after the first failure";
    EXPECT_THROW(arguments.End("f"), omu_ArgTypeErrorException);
}

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

TEST(Arguments, Constants_are_fetched_by_name_or_as_a_truth_value)
{
    omu_Arguments arguments(1);
    arguments.Put(omu_PrimBool<2>(true));
    arguments.Put(0, "second");
    arguments.Put(omu_PrimEnumBase("MAYBE"), "third");
    omu_PrimBool<2> first(false);
    omu_PrimBool<2> second(true);
    arguments.Begin();
    arguments.Get(first, "first");
    arguments.Get(second, "second");
    EXPECT_EQ(first.GetString(), "ON");
    EXPECT_EQ(second.GetString(), "OFF");
    omu_PrimBool<2> third(true);
    arguments.Get(third, "third");
    try {
        arguments.End("f");
        FAIL();
    } catch (const omu_KeywordTypeErrorException& error) {
        EXPECT_EQ(error.JournalMessage(), "f['third']; found MAYBE, expecting ON or OFF");
    }
}

TEST(Arguments, A_name_is_checked_by_the_rules_of_its_target_when_the_call_ends)
{
    const struct
    {
        const char* name;
        const char* supplied;
        omu_BrenowName target;
        int line; // of the rule that is broken; 0: none
    } rows[] = {
        {"an object's", "Part-1", omu_BrenowName(), 0},
        {"an object's with a dot", "Part.1", omu_BrenowName(), 193},
        {"a job's with a blank", "my job", omu_BrenowName("preset", omu_BrenowName::GUI_JOB_NAME), 255},
        {"a step's", "a.b \\", omu_BrenowName("preset", omu_BrenowName::STEP_NAME), 0},
    };
    for (const auto& row : rows) {
        for (const bool byKeyword : {false, true}) {
            SCOPED_TRACE(row.name);
            omu_Arguments arguments(byKeyword ? 0 : 1);
            byKeyword ? arguments.Put(row.supplied, "name") : arguments.Put(cow_String(row.supplied));
            omu_BrenowName name = row.target;
            int count = 5;
            arguments.Begin();
            arguments.Get(name, "name");
            arguments.Optional();
            arguments.Get(count, "count");
            EXPECT_EQ(arguments.Error(), row.line != 0);
            int line = 0;
            try {
                arguments.End("f");
            } catch (const omu_BreNameErrorException& error) {
                line = error.Line();
            }
            EXPECT_EQ(line, row.line);
            EXPECT_EQ(name.AsString(), row.line != 0 ? row.target.AsString() : cow_String(row.supplied));
            // A failed name can be tried as something else, like any other value.
            arguments.Begin();
            arguments.Get(name, "name");
            EXPECT_EQ(arguments.Alternative(), row.line != 0);
        }
    }
    omu_Arguments arguments(1);
    arguments.Put(5);
    omu_BrenowName name;
    arguments.Begin();
    arguments.Get(name, "name");
    EXPECT_THROW(arguments.End("f"), omu_ArgTypeErrorException);
}

TEST(Arguments, A_copy_keeps_its_values_and_reads_on_its_own)
{
    auto original = std::make_unique<omu_Arguments>(1);
    original->Put(1);
    original->Put(cow_String("a keyword value long enough to be shared"), "name");
    const std::unique_ptr<omu_Primitive> copy(original->Copy());
    original.reset();
    auto& arguments = static_cast<omu_Arguments&>(*copy);
    EXPECT_EQ(arguments.AsString(0), "(1, name='a keyword value long enough to be shared')");
    int number = 0;
    cow_String name;
    arguments.Begin();
    arguments.Get(number, "number");
    arguments.Get(name, "name");
    arguments.End("f");
    EXPECT_EQ(number, 1);
}

TEST(Arguments, A_command_text_writes_what_reads_back_equal)
{
    omu_Arguments arguments(4);
    arguments.Put(0.1 + 0.2);
    arguments.Put(0.1F);
    arguments.Put(cow_String("tab\there\r'\\\x01\n", 13));
    arguments.Put(ListOf({1}).release());
    arguments.Put(omu_PrimBool<2>(true), "mode");
    EXPECT_EQ(arguments.AsString(0), "(0.30000000000000004, 0.1, 'tab\\x09here\\x0d\\'\\\\\\x01\\n', [1], mode=ON)");
}
