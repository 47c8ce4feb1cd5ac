#include "uti_Spawn.h"

#include "Test.h"
#include "uti_NotExecutableException.h"
#include "uti_NotOnPathException.h"
#include "uti_Redirection.h"
#include "uti_SpawnSink.h"
#include "uti_SpawnSource.h"
#include "uti_SystemException.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
/// Runs in a folder of its own, and leaves no child and no descriptor behind.
class Spawn : public testing::Test
{
protected:
    Spawn() { std::filesystem::current_path(m_folder.Path()); }
    ~Spawn() override
    {
        EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a child is left";
        EXPECT_EQ(OpenDescriptors(), m_descriptors);
        std::filesystem::current_path(m_folder.Path().parent_path());
    }

    static std::string OpenDescriptors()
    {
        std::string found;
        for (int descriptor = 0; descriptor < 256; ++descriptor) {
            found += fcntl(descriptor, F_GETFD) != -1 ? std::to_string(descriptor) + " " : "";
        }
        return found;
    }
    static std::string Contents(const char* name)
    {
        std::ostringstream text;
        text << std::ifstream(name).rdbuf();
        return text.str();
    }
    static void Make(const char* name, const char* text, mode_t mode)
    {
        std::ofstream(name) << text;
        chmod(name, mode);
    }

private:
    const ScratchFolder m_folder;
    const std::string m_descriptors = OpenDescriptors();
};

std::string Output(const char* command, const uti_Spawn::Environment& env = {})
{
    return std::string(uti_SpawnSource(command, env).ReadAll().view());
}

TEST_F(Spawn, A_command_is_cut_into_words_overrides_and_redirections)
{
    Make("in", "b\na\n", 0644);
    const std::pair<const char*, const char*> rows[] = {
        {"printf [%s] a  'b  \"c' \"d '\" \t e", "[a][b  \"c][d '][e]"},
        {R"(printf [%s] a\ b "\"\\\x" '\' c"d"'e' '' \>)", R"([a b]["\\x][\][cde][][>])"},
        {"printf [%s] a|b * $HOME A=1", "[a|b][*][$HOME][A=1]"},
        {"printf [%s] 2 2>nowhere end2 'x'", "[2][end2][x]"},
        {"<in sort", "a\nb\n"},
        {"A=1 B='x  y' sh -c 'printf \"$A $B\"'", "1 x  y"},
        {"'A'=1 sh", "A=1 not found in PATH."},
        {"sh -c 'echo out; echo err >&2' 2>&1", "out\nerr\n"},
        {"", "No program in the command: "},
        {"A=1 '' b", "No program in the command: A=1 '' b"},
        {"echo 'a b", "Quote without end: 'a b"},
        {"echo a >", "Redirection arguments must be paired"},
        {"echo a > > b", "Redirection arguments must be paired"},
        {"echo 1> a", "Unrecognized redirector symbol"},
        {"echo 2>&12", "Unrecognized redirector symbol"},
        {"echo > a", "Stream stdout has already redirected."},
        {"no-such-program", "no-such-program not found in PATH."},
    };
    for (const auto& [command, promised] : rows) {
        std::string output;
        const std::string refusal = ErrorOf([&] { output = Output(command); });
        EXPECT_EQ(refusal.empty() ? output : refusal, promised) << command;
    }
}

TEST_F(Spawn, A_program_is_looked_for_here_first_and_its_errors_reach_the_parent)
{
    Make("sort", "#!/bin/sh\necho mine\n", 0755);
    Make("broken", "neither script nor program", 0755);
    EXPECT_EQ(Output("sort"), "mine\n");
    std::filesystem::create_directory("bin");
    Make("bin/plain", "", 0644);
    const std::string path = std::getenv("PATH");
    SetVariable("PATH", ("bin:" + path).c_str());
    EXPECT_EQ(ErrorOf([] { uti_Spawn::AndWait("plain"); }),
              std::filesystem::current_path().string() + "/bin/plain is not executable.");
    SetVariable("PATH", path.c_str());
    const std::pair<const char*, int> failures[] = {{"./broken", ENOEXEC}, {"/no/such/program", ENOENT}};
    for (const auto& [command, error] : failures) {
        try {
            uti_SpawnSink child(command);
            ADD_FAILURE() << command << " was started";
        } catch (const uti_SystemException& exception) {
            EXPECT_EQ(exception.ErrorNumber(), error) << command;
            EXPECT_EQ(exception.Function(), "CreateProcess");
        }
    }
}

TEST_F(Spawn, A_status_tells_the_signal_and_who_has_ended_cannot_be_killed)
{
    EXPECT_EQ(uti_Spawn::AndWait("sh -c 'kill -TERM $$'"), 128 + SIGTERM);
    EXPECT_EQ(uti_Spawn::AndWait("sh -c 'kill -KILL $$'"), 128 + SIGKILL) << "not by Kill";
    uti_SpawnSource ended("true");
    EXPECT_EQ(ended.ReadAll(), "");
    siginfo_t info{};
    waitid(P_ALL, 0, &info, WEXITED | WNOWAIT);
    EXPECT_EQ(ended.Kill(), -1) << "ended, though nobody asked yet";
    EXPECT_EQ(ended.Reap(0), 0);
}

TEST_F(Spawn, A_child_has_three_streams_default_signals_and_the_environment_given)
{
    const int careless = dup(1);
    uti_SpawnSink other("cat");
    EXPECT_EQ(Output("ls /proc/self/fd"), "0\n1\n2\n3\n") << "3 is the folder that is listed";
    sigset_t blocked, before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    sigprocmask(SIG_BLOCK, &blocked, &before);
    signal(SIGUSR1, SIG_IGN);
    EXPECT_EQ(Output("grep SigBlk /proc/self/status"), "SigBlk:\t0000000000000000\n");
    const std::uint64_t ignored = std::stoull(Output("sed -n 's/SigIgn:.//p' /proc/self/status"), nullptr, 16);
    EXPECT_EQ(ignored & 0x7FFFFFFF, 0u) << "the next two are the C library's own";
    signal(SIGUSR1, SIG_DFL);
    sigprocmask(SIG_SETMASK, &before, nullptr);
    close(careless);

    SetVariable("SPAWN_TEST", "1=2");
    EXPECT_EQ(Output("B=3 sh -c 'echo $SPAWN_TEST$B'"), "1=23\n");
    EXPECT_EQ(*uti_Spawn::getEnvironment().Find("SPAWN_TEST"), "1=2");
    uti_Spawn::Environment env;
    env.Insert("C", std::string_view("\0", 1));
    EXPECT_EQ(ErrorOf([&] { uti_Spawn::AndWait("true", env); }),
              "A text with a zero byte cannot be passed to a program");
}

TEST_F(Spawn, A_closed_standard_stream_stays_closed_and_is_no_place_for_pipes)
{
    const int saved[] = {fcntl(0, F_DUPFD_CLOEXEC, 10), fcntl(1, F_DUPFD_CLOEXEC, 10)};
    close(0);
    close(1);
    std::string output;
    output += ErrorOf([&] { output = Output("sh -c 'readlink /proc/$$/fd/0 || echo none' 2>&1"); });
    output += ErrorOf([&] { output += Output("cat < /etc/passwd").substr(0, 4); });
    for (const int stream : {0, 1}) {
        dup2(saved[stream], stream);
        close(saved[stream]);
    }
    EXPECT_EQ(output, "none\nroot");
}

TEST_F(Spawn, Pipes_carry_much_end_in_time_and_never_kill_the_parent)
{
    signal(SIGPIPE, SIG_DFL);
    EXPECT_EQ(Output("head -c 100000000 /dev/zero").size(), 100000000u);
    uti_SpawnSink deaf("true");
    EXPECT_EQ(ErrorOf([&] { deaf.Write(std::string(1 << 20, 'x')); }), "IOError: : Broken pipe");
    uti_SpawnSource parent("sh -c 'sleep 1000 & echo $!; wait'");
    char line[20];
    line[parent.Read(line, sizeof line - 1)] = '\0';
    parent.Kill();
    EXPECT_EQ(parent.ReadAll(), "") << "the child's child holds the pipe";
    kill(std::stoi(line), SIGKILL);
    uti_SpawnSource closed("sleep 1000");
    closed.CloseSource();
    EXPECT_EQ(ErrorOf([&] { closed.ReadAll(); }), "IOError: : Bad file descriptor");
    closed.Kill();
}

TEST_F(Spawn, Reaping_closes_the_pipes_of_running_children_only)
{
    EXPECT_EQ(uti_SpawnSink("cat").Reap(0), 0) << "it found the end of its input";
    EXPECT_EQ(uti_SpawnSource("yes").Reap(0), 128 + SIGPIPE);
    EXPECT_EQ(uti_SpawnSourceWithSink("cat").Reap(-1), 0) << "a limit is not looked at";
    uti_SpawnSinkWithSource both("cat");
    EXPECT_TRUE(both.Reap(-1) <= 0);
    EXPECT_EQ(both.Source(), -1);
    EXPECT_EQ(both.Sink(), -1);

    uti_SpawnSource ended("echo late");
    uti_Spawn* list[] = {&ended};
    EXPECT_EQ(uti_Spawn::waitForAny(list, 1), &ended);
    EXPECT_EQ(ended.Reap(0), 0);
    EXPECT_EQ(ended.ReadAll(), "late\n");
}

TEST_F(Spawn, Waiting_for_any_takes_the_first_ended_and_leaves_others_children_alone)
{
    const pid_t foreign = fork();
    if (foreign == 0) {
        _exit(3);
    }
    uti_SpawnSink waiting("cat"), ending("sh -c 'read x; exit 5'");
    uti_Spawn* list[] = {&waiting, &ending};
    ending.CloseSink();
    EXPECT_EQ(uti_Spawn::waitForAny(list, 2), &ending);
    EXPECT_EQ(ending.Reap(-1), 5);
    waiting.Reap(0);
    EXPECT_EQ(uti_Spawn::waitForAny(list, 2), &waiting) << "not running, and first";
    EXPECT_EQ(uti_Spawn::waitForAny(list, 0), nullptr);
    int status = 0;
    EXPECT_EQ(waitpid(foreign, &status, 0), foreign);
    EXPECT_EQ(WEXITSTATUS(status), 3);
}

TEST_F(Spawn, Who_is_let_go_is_reaped_later)
{
    RecordedAssertions assertions;
    uti_SpawnSink child("cat");
    child.Detach();
    EXPECT_EQ(child.Reap(0), uti_Spawn::DETACHED_STATUS);
    EXPECT_EQ(assertions.Take(), Texts());
    uti_Spawn::AndExit("true");
    EXPECT_EQ(assertions.Take(), Texts{"m_isRunning == false"});

    mkfifo("fifo", 0600);
    uti_Spawn::Daemon(
        "sh -c '(readlink /proc/$$/fd/0; readlink /proc/$$/fd/1; cut -d \" \" -f 1,6 /proc/$$/stat) > fifo'");
    std::istringstream report(Contents("fifo"));
    std::string input, output;
    int process = 0, session = 1;
    report >> input >> output >> process >> session;
    EXPECT_EQ(input, "/dev/null");
    EXPECT_EQ(output, "/dev/null");
    EXPECT_EQ(process, session) << "a session of its own";
    siginfo_t info{};
    while (waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == 0) { // until none is left, ended or not
        uti_Spawn::AndWait("true");
    }
}
} // namespace
