#include "Test.h"
#include "uti_NotOnPathException.h"
#include "uti_Redirection.h"
#include "uti_SpawnSink.h"
#include "uti_SpawnSource.h"
#include "uti_SystemException.h"

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
constexpr bool IS_WINDOWS = true;
#else
constexpr bool IS_WINDOWS = false;
#endif

namespace
{
// Read when it is first asked for: the reports of waitForAll.
[[maybe_unused]] const bool isDebugging = (SetVariable("VEXUTL_DEBUG", "4"), true);

/// Starts the tests' own child, alike on every system, in a folder of the test's own.
class Children : public testing::Test
{
protected:
    Children() { std::filesystem::current_path(m_folder.Path()); }
    ~Children() override { std::filesystem::current_path(m_folder.Path().parent_path()); }

    static cow_String Command(const std::string& task) { return ("'" VEXOMU_TEST_CHILD "' " + task).c_str(); }
    static std::string Output(const std::string& task, const uti_Spawn::Environment& env = {})
    {
        return std::string(uti_SpawnSource(Command(task), env).ReadAll().view());
    }
    static int Status(const std::string& task) { return uti_Spawn::AndWait(Command(task)); }
    static std::string Contents(const char* name)
    {
        std::ostringstream text;
        text << std::ifstream(name).rdbuf();
        return text.str();
    }

private:
    const ScratchFolder m_folder;
};

TEST_F(Children, Arguments_arrive_as_the_system_quotes_them)
{
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"a  'b  c' \"d\te\"", "[a][b  c][d\te]", "[a][b  c][d\te]"},
        {"a '' b", "[a][][b]", "[a][b]"},
        {"'a\"b' 'c d'", "[a\"b][c d]", "[ab c][d]"},
        {"'x y\\' z", "[x y\\][z]", "[x y\" z]"},
    };
    for (const auto& [words, onPosix, onWindows] : rows) {
        EXPECT_EQ(Output(std::string("args ") + words), IS_WINDOWS ? onWindows : onPosix) << words;
    }
}

TEST_F(Children, A_status_is_the_childs_own_even_where_it_looks_like_that_of_a_running_one)
{
    const std::pair<int, int> rows[] = {{0, 0}, {7, 7}, {255, 255}, {259, IS_WINDOWS ? 259 : 3}};
    for (const auto& [code, status] : rows) {
        EXPECT_EQ(Status("exit " + std::to_string(code)), status);
    }
    uti_Spawn child(Command("exit 259"));
    while (child.IsRunning()) {
    }
    EXPECT_EQ(child.Reap(-1), IS_WINDOWS ? 259 : 3);
}

TEST_F(Children, A_killed_child_has_no_status)
{
    uti_Spawn child(Command("sleep"));
    EXPECT_TRUE(child.IsRunning());
    EXPECT_EQ(child.Reap(-1), uti_Spawn::NO_STATUS);
    EXPECT_EQ(child.Reap(1), uti_Spawn::NO_STATUS);
    EXPECT_EQ(child.Interrupt(), 0);
    EXPECT_EQ(child.Reap(1000), uti_Spawn::NO_STATUS);
    EXPECT_FALSE(child.IsRunning());
    EXPECT_EQ(child.Kill(), -1);
    child.Detach();
    EXPECT_EQ(child.Reap(0), uti_Spawn::NO_STATUS) << "Detach acts only while running";
}

TEST_F(Children, Streams_go_where_the_command_says)
{
    std::ofstream("in") << "b\na\n";
    EXPECT_EQ(Output("cat < in"), "b\na\n");
    EXPECT_EQ(Status("both > out 2> err"), 0);
    EXPECT_EQ(Status("both >> out 2>> err"), 0);
    EXPECT_EQ(Contents("out"), "out\nout\n");
    EXPECT_EQ(Contents("err"), "err\nerr\n");
    EXPECT_EQ(Status("both >& all"), 0);
    EXPECT_EQ(Contents("all"), "out\nerr\n");
    EXPECT_EQ(Output("both 2>&1"), "out\nerr\n");
    EXPECT_EQ(Output("both 2> err"), "out\n");
    EXPECT_EQ(Output("fill 3000000").size(), 3000000u);
    uti_SpawnSinkWithSource cat(Command("cat"));
    cat.Write("b\na\n");
    cat.CloseSink();
    EXPECT_EQ(cat.ReadAll(), "b\na\n");
    EXPECT_EQ(cat.Reap(0), 0);
    EXPECT_EQ(uti_SpawnSink(Command("cat > copy")).Reap(0), 0);
    EXPECT_EQ(Contents("copy"), "");
}

TEST_F(Children, The_environment_and_the_folder_are_those_meant)
{
    uti_Spawn::Environment env;
    env.Insert("B", "x=y");
    EXPECT_EQ(Output("env A B PATH", env), "A=(none)\nB=x=y\nPATH=(none)\n");
    EXPECT_EQ(Output("where", env), std::filesystem::current_path().filename());
    const cow_String command = "A='1 2' " + Command("env A B PATH");
    EXPECT_EQ(uti_SpawnSource(command, env).ReadAll(), "A=1 2\nB=x=y\nPATH=(none)\n");
    EXPECT_EQ(uti_SpawnSource("A=1 " + Command("env A B")).ReadAll(), "A=1\nB=(none)\n");
}

TEST_F(Children, What_cannot_be_started_is_an_error)
{
    EXPECT_EQ(ErrorOf<uti_NotOnPathException>([] { uti_Spawn::AndWait("no-such-program"); }),
              IS_WINDOWS ? "no-such-program.exe not found in PATH." : "no-such-program not found in PATH.");
    std::ofstream("text.exe") << "no program";
    std::filesystem::permissions("text.exe", std::filesystem::perms::owner_all);
    EXPECT_NE(ErrorOf<uti_SystemException>([] { uti_Spawn::AndWait("./text.exe"); }), "");
}

TEST_F(Children, Waiting_for_any_takes_the_first_ended_and_for_all_reports_each)
{
    std::ostringstream report;
    pnt_debugPrint().SetStream(&report);
    uti_Spawn waiting(Command("sleep")); // not until its input ends: reaping a sink closes it
    uti_Spawn ending(Command("exit 5"));
    uti_Spawn* list[] = {&waiting, &ending};
    EXPECT_EQ(uti_Spawn::waitForAny(list, 2), &ending);
    EXPECT_EQ(ending.Reap(-1), 5);
    EXPECT_EQ(uti_Spawn::waitForAll(list, 2, 0), 1);
    EXPECT_EQ(uti_Spawn::waitForAll(list, -3, 0), -3);
    const std::string start = "source/uti/impl/uti_Spawn:575: uti_Spawn::waitForAll reaped process #";
    EXPECT_EQ(report.str(), start + "0 with exit code-1\n" + start + "1 with exit code5\n");
    waiting.Kill();
    EXPECT_EQ(uti_Spawn::waitForAll(list, 2, 1000), 0);
    pnt_debugPrint().SetStream(nullptr);
}

#if defined(_WIN32)
TEST_F(Children, A_child_has_three_handles_and_the_standard_ones_of_the_moment)
{
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    const HANDLE file =
        CreateFileA("out", GENERIC_WRITE, 0, &inheritable, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    EXPECT_EQ(Status("handle " + std::to_string(reinterpret_cast<std::uintptr_t>(file))), 0);

    ASSERT_TRUE(SetHandleInformation(file, HANDLE_FLAG_INHERIT, 0));
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    SetStdHandle(STD_OUTPUT_HANDLE, file);
    EXPECT_EQ(Status("args mine"), 0);
    EXPECT_EQ(Output("args piped"), "[piped]");
    SetStdHandle(STD_OUTPUT_HANDLE, output);
    DWORD flags = HANDLE_FLAG_INHERIT;
    EXPECT_TRUE(GetHandleInformation(file, &flags));
    EXPECT_EQ(flags & HANDLE_FLAG_INHERIT, 0u) << "as it was";
    CloseHandle(file);
    EXPECT_EQ(Contents("out"), "[mine]");
}
#endif
} // namespace
