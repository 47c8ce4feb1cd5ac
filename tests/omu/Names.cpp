#include "Test.h"
#include "omu_BreNameErrorException.h"
#include "omu_BrenowName.h"

namespace
{

using Name = omu_BrenowName;

std::string Times(int count, char character)
{
    return std::string(static_cast<std::size_t>(count), character);
}

/// Line and message of the refusal, or an empty text.
std::string Refusal(const std::string& text, int kind)
{
    try {
        const Name name(cow_String(std::string_view(text)), static_cast<Name::omu_BrenowNameEnum>(kind));
        return name.AsString() == std::string_view(text) ? "" : "another name";
    } catch (const omu_BreNameErrorException& refusal) {
        EXPECT_EQ(refusal.File(), "source/omu/impl/omu_BrenowName");
        return std::to_string(refusal.Line()) + " " + std::string(refusal.AsString().view());
    }
}

} // namespace

TEST(Names, The_first_broken_rule_is_reported_with_its_line)
{
    const std::tuple<std::string, std::array<const char*, 6>> rows[] = {
        {"Part-1", {"", "", "", "", "", ""}},
        {"", {"171", "215", "282", "115", "246", "313"}},
        {Times(38, 'a'), {"", "", "", "", "", ""}},
        {Times(39, 'a'), {"", "", "", "119", "250", "317"}},
        {Times(80, 'a'), {"", "", "", "119", "250", "317"}},
        {Times(81, '"'), {"175", "219", "286", "119", "250", "317"}},
        {"1\"", {"181", "225", "292", "125", "261", "328"}},
        {"a\".\\", {"187", "225", "292", "131", "255", "322"}},
        {"a\\.", {"193", "230", "297", "137", "255", "322"}},
        {"_\\ ", {"199", "230", "297", "143", "255", "322"}},
        {"_a_", {"", "", "", "149", "266", "334"}},
        {"a_", {"", "", "", "155", "266", "340"}},
        {" a", {"", "230", "", "149", "255", "334"}},
        {"a b", {"", "230", "", "", "255", ""}},
        {"a<", {"", "230", "297", "", "255", "322"}},
        {"\xC3\xA4,#%+=:@^", {"", "", "", "", "", ""}},
    };
    const char* const texts[] = {"invalid name", "invalid job name", "invalid model name"};
    for (const auto& [name, refusalsByKind] : rows) {
        for (int kind = 0; kind < 6; ++kind) {
            std::string expected = refusalsByKind[kind];
            if (!expected.empty()) {
                expected += name.empty() ? std::string(" name is empty") : std::string(" ") + texts[kind % 3];
            }
            EXPECT_EQ(Refusal(name, kind), expected) << "'" << name << "' of kind " << kind;
        }
        EXPECT_EQ(Refusal(name, Name::STEP_NAME) + Refusal(name, 7), "");
    }
    for (const char c : std::string("$\\&*~! ()[]{}|;'`<>?/.")) {
        EXPECT_EQ(Refusal({'a', c, 'a'}, Name::KER_JOB_NAME), "230 invalid job name") << c;
        EXPECT_EQ(Refusal({'a', c, 'a'}, Name::KER_MODEL_NAME), c == ' ' ? "" : "297 invalid model name") << c;
    }
}

TEST(Names, Repairs_make_a_legal_name_or_come_to_an_end)
{
    const std::tuple<std::string, std::string, std::string, bool> rows[] = {
        {"1a.b", "A__-__", "A1a_b", true},
        {"a", "A__-__", "a", true},
        {"12a.b\"c\\", "......", "abc", true},
        {"_ 1 _", "......", "", false},
        {"__", "ABCDEF", "EF", true},
        {Times(40, '7'), "A__-__", "A" + Times(37, '7'), true},
        {Times(38, '"') + "x", "A__-ab", "a" + Times(36, '_') + "b", true},
        {"1", "9_____", Times(38, '9'), false}, // as long as it may get
        {"_a", "A__-__", "_a", false},
        {"a\"", "A\\_\"__", "a\"", false},
    };
    for (const auto& [given, replacements, expected, isLegal] : rows) {
        cow_String name = std::string_view(given);
        const bool isChanged = Name::MakeLegalGuiName(name, replacements.c_str());
        EXPECT_EQ(isChanged, given != expected) << given;
        EXPECT_EQ(name, std::string_view(expected)) << given;
        EXPECT_EQ(Refusal(std::string(name), Name::GUI_NAME).empty(), isLegal) << given;
    }
    RecordedAssertions assertions;
    cow_String name = "1";
    EXPECT_FALSE(Name::MakeLegalGuiName(name, "A____") || Name::MakeLegalGuiName(name, nullptr));
    EXPECT_EQ(name, "1");
    EXPECT_EQ(assertions.Take().size(), 2U);
}

TEST(Names, File_names_stay_clear_of_what_systems_reserve)
{
    const std::pair<const char*, const char*> rows[] = {
        {"Job-1_a.inp", "Job-1_a.inp"},
        {"a b/c\\d:\xC3\xA4", "a_b_c_d___"},
        {"con", "_con"},
        {"Lpt9.txt", "_Lpt9.txt"},
        {"COM0", "COM0"},
        {"CONS", "CONS"},
        {"..", "_.."},
        {"", "_"},
        {"AUX.", "_AUX."},
        {".nul", ".nul"},
    };
    for (const auto& [given, expected] : rows) {
        cow_String name = given;
        EXPECT_EQ(Name::MakeLegalFileName(name), expected);
        EXPECT_EQ(name, given);
    }
}
