#include "VEXcrt_Process.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <memory>
#include <mutex>
#include <poll.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;
using State = VEXCRT::ChildProcess::State;

constexpr int FIRST_FREE_DESCRIPTOR = 3; // below, a descriptor means a stream
constexpr std::int64_t FIRST_NAP = 1;    // milliseconds, on systems where a child cannot be polled for
constexpr std::int64_t LAST_NAP = 20;

/// `call` again while a signal interrupts it.
template <class Call> auto Uninterrupted(Call call) noexcept
{
    for (;;) {
        const auto result = call();
        if (result != -1 || errno != EINTR) {
            return result;
        }
    }
}

/// The descriptor itself, or its replacement where it took the place of a closed standard stream; -1 stays.
int AboveStreams(int descriptor) noexcept
{
    if (descriptor < 0 || descriptor >= FIRST_FREE_DESCRIPTOR) {
        return descriptor;
    }
    const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, FIRST_FREE_DESCRIPTOR);
    const int error = errno;
    close(descriptor);
    errno = error;
    return moved;
}

/// The children that nobody waits for any more. Asked one by one: another part of the program may own the others.
class LeftChildren
{
public:
    static LeftChildren& Instance()
    {
        static auto* const instance = new LeftChildren; // never destroyed: children are left until the very end
        return *instance;
    }

    void Add(pid_t child)
    {
        const std::lock_guard lock(m_mutex);
        m_children.push_back(child);
    }
    void Reap()
    {
        const std::lock_guard lock(m_mutex);
        std::erase_if(m_children, [](pid_t child) {
            return Uninterrupted([child] { return waitpid(child, nullptr, WNOHANG); }) != 0;
        });
    }

private:
    std::mutex m_mutex;
    std::vector<pid_t> m_children;
};

/// What the C library's posix_spawn does between making the process and running the program.
class SpawnPlan
{
public:
    explicit SpawnPlan(bool isDaemon)
    {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawnattr_init(&m_attributes);
        sigset_t signals;
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&m_attributes, &signals);
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&m_attributes, &signals);
        const int flags = POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK | (isDaemon ? POSIX_SPAWN_SETSID : 0);
        posix_spawnattr_setflags(&m_attributes, static_cast<short>(flags));
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;
    ~SpawnPlan()
    {
        posix_spawn_file_actions_destroy(&m_actions);
        posix_spawnattr_destroy(&m_attributes);
    }

    /// 0, or the error.
    int SetStreams(const int (&streams)[3])
    {
        int sources[3];
        for (int stream = 0; stream < 3; ++stream) {
            const int wanted = streams[stream];
            sources[stream] = wanted <= 0 ? stream : wanted < stream ? sources[wanted] : wanted;
            // A stream that stays is touched only to let it through: it may well be closed.
            const bool isInPlace = sources[stream] == stream;
            if (isInPlace && fcntl(stream, F_GETFD) <= 0) {
                continue;
            }
            if (const int error = posix_spawn_file_actions_adddup2(&m_actions, sources[stream], stream)) {
                return error;
            }
        }
        // Also what others opened without care.
        return posix_spawn_file_actions_addclosefrom_np(&m_actions, FIRST_FREE_DESCRIPTOR);
    }

    int Run(pid_t& child, const char* program, char** arguments, char** environment) const
    {
        return posix_spawn(&child, program, &m_actions, &m_attributes, arguments, environment);
    }

private:
    posix_spawn_file_actions_t m_actions;
    posix_spawnattr_t m_attributes;
};

std::vector<char*> Pointers(const std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (const std::string& text : texts) {
        pointers.push_back(const_cast<char*>(text.c_str())); // the system's call promises to leave them alone
    }
    pointers.push_back(nullptr);
    return pointers;
}

std::int64_t MillisecondsUntil(Clock::time_point deadline)
{
    const auto left = std::chrono::ceil<Milliseconds>(deadline - Clock::now());
    return std::max<std::int64_t>(left.count(), 0);
}
} // namespace

int VEXCRT::OpenFile(const char* path, OpenFor purpose) noexcept
{
    constexpr mode_t MODE = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH; // less the umask
    int flags = O_CLOEXEC | O_NOCTTY;
    switch (purpose) {
    case OpenFor::READING:
        flags |= O_RDONLY;
        break;
    case OpenFor::WRITING:
        flags |= O_WRONLY | O_CREAT | O_TRUNC;
        break;
    case OpenFor::APPENDING:
        flags |= O_WRONLY | O_CREAT | O_APPEND;
        break;
    }
    const int descriptor = AboveStreams(Uninterrupted([&] { return open(path, flags, MODE); }));
    if (descriptor >= 0 && purpose == OpenFor::APPENDING) {
        lseek(descriptor, 0, SEEK_END);
    }
    return descriptor;
}

bool VEXCRT::MakePipe(Pipe& pipe, bool /*isText*/) noexcept
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        return false;
    }
    pipe = {AboveStreams(ends[0]), AboveStreams(ends[1])};
    if (pipe.readEnd >= 0 && pipe.writeEnd >= 0) {
        return true;
    }
    const int error = errno;
    CloseDescriptor(pipe.readEnd);
    CloseDescriptor(pipe.writeEnd);
    errno = error;
    return false;
}

void VEXCRT::IgnoreBrokenPipes() noexcept
{
    struct sigaction present;
    if (sigaction(SIGPIPE, nullptr, &present) == 0 && (present.sa_flags & SA_SIGINFO) == 0 &&
        present.sa_handler == SIG_DFL) {
        present.sa_handler = SIG_IGN;
        sigaction(SIGPIPE, &present, nullptr);
    }
}

bool VEXCRT::IsOpenDescriptor(int descriptor) noexcept
{
    return fcntl(descriptor, F_GETFD) != -1;
}

void VEXCRT::CloseDescriptor(int descriptor) noexcept
{
    if (descriptor >= 0) {
        close(descriptor); // never again: after an interruption the descriptor may be another thread's already
    }
}

std::int64_t VEXCRT::ReadDescriptor(int descriptor, void* buffer, std::size_t size) noexcept
{
    return Uninterrupted([&] { return read(descriptor, buffer, size); });
}

bool VEXCRT::WriteDescriptor(int descriptor, const void* bytes, std::size_t size) noexcept
{
    const char* rest = static_cast<const char*>(bytes);
    while (size != 0) {
        const ssize_t written = Uninterrupted([&] { return write(descriptor, rest, size); });
        if (written < 0) {
            return false;
        }
        rest += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

const char* VEXCRT::NullDevice() noexcept
{
    return "/dev/null";
}

const char* VEXCRT::ExecutableSuffix() noexcept
{
    return "";
}

std::vector<std::string> VEXCRT::EnvironmentEntries()
{
    std::vector<std::string> entries;
    for (char** entry = environ; entry && *entry; ++entry) {
        entries.emplace_back(*entry);
    }
    return entries;
}

VEXCRT::ChildProcess::~ChildProcess()
{
    Leave();
    CloseDescriptor(m_watch);
}

int VEXCRT::ChildProcess::Start(const ChildStart& start)
{
    LeftChildren::Instance().Reap();
    SpawnPlan plan(start.isDaemon);
    if (const int error = plan.SetStreams(start.streams)) {
        return error;
    }
    std::vector<char*> arguments = Pointers(start.arguments);
    std::vector<char*> environment = Pointers(start.environment);
    pid_t child = 0;
    const int error = plan.Run(child, start.program.c_str(), arguments.data(),
                               start.environment.empty() ? environ : environment.data());
    if (error == 0) {
        m_handle = child;
    }
    return error;
}

/// Asks the system, unless the end is known already.
State VEXCRT::ChildProcess::Look(int flags) noexcept
{
    if (m_hasEnded) {
        return State::ENDED;
    }
    const pid_t child = static_cast<pid_t>(m_handle);
    int status = 0;
    const pid_t found = m_handle && !m_isLeft ? Uninterrupted([&] { return waitpid(child, &status, flags); }) : -1;
    if (found <= 0) {
        return found == 0 ? State::RUNNING : State::UNKNOWN;
    }
    m_hasEnded = true;
    if (WIFEXITED(status)) {
        m_exitStatus = WEXITSTATUS(status);
        m_wasKilled = false;
    } else {
        m_exitStatus = m_wasKilled && WTERMSIG(status) == SIGKILL ? -1 : 128 + WTERMSIG(status);
        m_wasKilled = true;
    }
    return State::ENDED;
}

State VEXCRT::ChildProcess::Wait(std::int64_t timeoutMilliseconds)
{
    LeftChildren::Instance().Reap();
    if (timeoutMilliseconds < 0) {
        return Look(0);
    }
    ChildProcess* const self = this;
    switch (WaitForAny({&self, 1}, timeoutMilliseconds)) {
    case NONE:
        return State::RUNNING;
    case FAILED:
        return State::UNKNOWN;
    default:
        return State::ENDED;
    }
}

int VEXCRT::ChildProcess::WaitForAny(std::span<ChildProcess* const> children, std::int64_t timeoutMilliseconds)
{
    const bool isForEver = timeoutMilliseconds < 0;
    const auto deadline = Clock::now() + Milliseconds(isForEver ? 0 : timeoutMilliseconds);
    std::vector<pollfd> watched;
    for (std::int64_t nap = FIRST_NAP;; nap = std::min(2 * nap, LAST_NAP)) {
        for (std::size_t i = 0; i < children.size(); ++i) {
            const State state = children[i]->Look(WNOHANG);
            if (state != State::RUNNING) {
                return state == State::ENDED ? static_cast<int>(i) : FAILED;
            }
        }
        std::int64_t left = isForEver ? -1 : MillisecondsUntil(deadline);
        if (left == 0 || children.empty()) {
            return NONE;
        }
        watched.clear();
        for (ChildProcess* child : children) {
            watched.push_back({child->Watch(), POLLIN, 0}); // without one, poll passes it over
            if (watched.back().fd < 0) {
                left = isForEver ? nap : std::min(nap, left);
            }
        }
        poll(watched.data(), watched.size(), static_cast<int>(std::min<std::int64_t>(left, 1 << 30)));
    }
}

/// A descriptor for poll, made when it is first wanted: most children are waited for without one.
int VEXCRT::ChildProcess::Watch() noexcept
{
    if (m_watch < 0 && !m_isLeft) {
        m_watch = static_cast<int>(syscall(SYS_pidfd_open, static_cast<pid_t>(m_handle), 0));
    }
    return m_watch;
}

bool VEXCRT::ChildProcess::Kill() noexcept
{
    if (m_isLeft) { // its number may be another process's by now; the watch is not
        return m_watch >= 0 && syscall(SYS_pidfd_send_signal, m_watch, SIGKILL, nullptr, 0) == 0;
    }
    siginfo_t end{};
    const pid_t child = static_cast<pid_t>(m_handle);
    if (child == 0 || m_hasEnded || waitid(P_PID, static_cast<id_t>(child), &end, WEXITED | WNOHANG | WNOWAIT) != 0 ||
        end.si_pid == child || kill(child, SIGKILL) != 0) {
        return false;
    }
    m_wasKilled = true;
    return true;
}

void VEXCRT::ChildProcess::Leave() noexcept
{
    if (m_handle && !m_hasEnded && !m_isLeft) {
        Watch();
        m_isLeft = true;
        LeftChildren::Instance().Add(static_cast<pid_t>(m_handle));
    }
    LeftChildren::Instance().Reap();
}

std::int64_t VEXCRT::ChildProcess::ReadOutput(int descriptor, void* buffer, std::size_t size)
{
    const bool isOurs = m_handle && !m_isLeft && descriptor >= 0;
    while (isOurs && (!m_hasEnded || m_wasKilled)) {
        pollfd watched[] = {{descriptor, POLLIN, 0}, {m_hasEnded ? -1 : Watch(), POLLIN, 0}};
        const int patience = m_hasEnded ? 0 : watched[1].fd < 0 ? static_cast<int>(LAST_NAP) : -1;
        if (poll(watched, 2, patience) > 0 && watched[0].revents != 0) {
            break;
        }
        if (m_hasEnded) {
            return 0;
        }
        if (Look(WNOHANG) == State::UNKNOWN) {
            break;
        }
    }
    return ReadDescriptor(descriptor, buffer, size);
}
