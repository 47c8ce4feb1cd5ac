#include "VEXcrt_Process.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <string_view>
#include <sys/stat.h>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace
{
using State = VEXCRT::ChildProcess::State;

constexpr unsigned int PIPE_BYTES = 1024;
constexpr DWORD NAP = 10; // milliseconds for each group of children, where there are several

HANDLE ToHandle(std::intptr_t handle)
{
    return reinterpret_cast<HANDLE>(handle);
}

HANDLE StandardHandle(int stream)
{
    return GetStdHandle(STD_INPUT_HANDLE - static_cast<DWORD>(stream));
}

/// Wrapped in quotes when it holds a blank or a tab. Nothing else is escaped, and it must stay so: a quotation mark or a
/// backslash at the end of a wrapped text, and an empty text, do not arrive as they are.
std::string Quoted(const std::string& text)
{
    return text.find_first_of(" \t") == std::string::npos ? text : '"' + text + '"';
}

std::string CommandLine(const std::vector<std::string>& arguments)
{
    std::string line;
    for (const std::string& argument : arguments) {
        line += (line.empty() ? "" : " ") + Quoted(argument);
    }
    return line;
}

std::string EnvironmentBlock(const std::vector<std::string>& entries)
{
    std::string block;
    for (const std::string& entry : entries) {
        block.append(entry.c_str(), entry.size() + 1);
    }
    return block.append(1, '\0');
}

/// The three handles of a child, inheritable, and the list that keeps every other handle from it: two threads that start
/// children at once give neither anything of the other.
class InheritedHandles
{
public:
    InheritedHandles() = default;
    InheritedHandles(const InheritedHandles&) = delete;
    InheritedHandles& operator=(const InheritedHandles&) = delete;
    ~InheritedHandles()
    {
        if (m_list) {
            DeleteProcThreadAttributeList(m_list);
        }
        for (DWORD i = 0; i < m_count; ++i) {
            CloseHandle(m_handles[i]);
        }
    }

    bool Set(STARTUPINFOEXA& info, const int (&streams)[3])
    {
        HANDLE* const places[] = {&info.StartupInfo.hStdInput, &info.StartupInfo.hStdOutput,
                                  &info.StartupInfo.hStdError};
        for (int stream = 0; stream < 3; ++stream) {
            const int wanted = streams[stream];
            if (wanted > 0 && wanted < stream) {
                *places[stream] = *places[wanted];
            } else if (wanted > 2) {
                *places[stream] = Inheritable(ToHandle(_get_osfhandle(wanted)));
            } else {
                *places[stream] = Inheritable(StandardHandle(wanted > 0 ? wanted : stream));
            }
        }
        return m_count == 0 || SetList(info);
    }

private:
    /// A copy that a child may inherit; what cannot be copied (a console of old systems, nothing) goes as it is.
    HANDLE Inheritable(HANDLE handle)
    {
        HANDLE copy = nullptr;
        const HANDLE self = GetCurrentProcess();
        if (!DuplicateHandle(self, handle, self, &copy, 0, TRUE, DUPLICATE_SAME_ACCESS)) {
            return handle;
        }
        m_handles[m_count++] = copy;
        return copy;
    }

    bool SetList(STARTUPINFOEXA& info)
    {
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        m_bytes.resize(size);
        const auto list = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(m_bytes.data());
        if (!InitializeProcThreadAttributeList(list, 1, 0, &size)) {
            return false;
        }
        m_list = list;
        info.lpAttributeList = list;
        return UpdateProcThreadAttribute(list, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, m_handles,
                                         m_count * sizeof(HANDLE), nullptr, nullptr) != 0;
    }

    HANDLE m_handles[3] = {};
    DWORD m_count = 0;
    std::vector<char> m_bytes;
    LPPROC_THREAD_ATTRIBUTE_LIST m_list = nullptr; // in m_bytes
};
} // namespace

int VEXCRT::OpenFile(const char* path, OpenFor purpose) noexcept
{
    int flags = _O_NOINHERIT;
    switch (purpose) {
    case OpenFor::READING:
        flags |= _O_RDONLY;
        break;
    case OpenFor::WRITING:
        flags |= _O_WRONLY | _O_CREAT | _O_TRUNC;
        break;
    case OpenFor::APPENDING:
        flags |= _O_WRONLY | _O_APPEND | _O_CREAT;
        break;
    }
    const int descriptor = _open(path, flags, _S_IWRITE);
    if (descriptor >= 0 && purpose == OpenFor::APPENDING) {
        _lseeki64(descriptor, 0, SEEK_END);
    }
    return descriptor;
}

bool VEXCRT::MakePipe(Pipe& pipe, bool isText) noexcept
{
    int ends[2];
    if (_pipe(ends, PIPE_BYTES, (isText ? _O_TEXT : _O_BINARY) | _O_NOINHERIT) != 0) {
        return false;
    }
    pipe = {ends[0], ends[1]};
    return true;
}

void VEXCRT::IgnoreBrokenPipes() noexcept {}

bool VEXCRT::IsOpenDescriptor(int descriptor) noexcept
{
    struct _stat64 status;
    return descriptor >= 0 && _fstat64(descriptor, &status) == 0;
}

void VEXCRT::CloseDescriptor(int descriptor) noexcept
{
    if (descriptor >= 0) {
        _close(descriptor);
    }
}

std::int64_t VEXCRT::ReadDescriptor(int descriptor, void* buffer, std::size_t size) noexcept
{
    return _read(descriptor, buffer, static_cast<unsigned int>(std::min<std::size_t>(size, 0x7FFFFFFF)));
}

bool VEXCRT::WriteDescriptor(int descriptor, const void* bytes, std::size_t size) noexcept
{
    const char* rest = static_cast<const char*>(bytes);
    while (size != 0) {
        const int written = _write(descriptor, rest, static_cast<unsigned int>(std::min<std::size_t>(size, 1 << 20)));
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
    return "nul";
}

const char* VEXCRT::ExecutableSuffix() noexcept
{
    return ".exe";
}

std::vector<std::string> VEXCRT::EnvironmentEntries()
{
    std::vector<std::string> entries;
    for (char** entry = _environ; entry && *entry; ++entry) {
        entries.emplace_back(*entry);
    }
    return entries;
}

// Defined for users of the DLL who bind references to them.
constexpr std::int64_t VEXCRT::ChildProcess::FOR_EVER;
constexpr int VEXCRT::ChildProcess::NONE;
constexpr int VEXCRT::ChildProcess::FAILED;

VEXCRT::ChildProcess::~ChildProcess()
{
    if (m_handle) {
        CloseHandle(ToHandle(m_handle));
    }
}

int VEXCRT::ChildProcess::Start(const ChildStart& start)
{
    STARTUPINFOEXA info{};
    info.StartupInfo.cb = sizeof info;
    info.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    InheritedHandles handles;
    if (!handles.Set(info, start.streams)) {
        return static_cast<int>(GetLastError());
    }
    std::string commandLine = CommandLine(start.arguments);
    const bool hasEnvironment = !start.environment.empty();
    std::string block = hasEnvironment ? EnvironmentBlock(start.environment) : std::string();
    char directory[MAX_PATH];
    const bool hasDirectory = hasEnvironment && GetCurrentDirectoryA(sizeof directory, directory) < sizeof directory;
    const DWORD flags = EXTENDED_STARTUPINFO_PRESENT | (start.isDaemon ? CREATE_NO_WINDOW : 0);
    PROCESS_INFORMATION process{};
    if (!CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, TRUE, flags,
                        hasEnvironment ? block.data() : nullptr, hasDirectory ? directory : nullptr, &info.StartupInfo,
                        &process)) {
        return static_cast<int>(GetLastError());
    }
    CloseHandle(process.hThread);
    m_handle = reinterpret_cast<std::intptr_t>(process.hProcess);
    return 0;
}

/// Takes the code of a child whose handle is signalled; a code that equals STILL_ACTIVE is then the child's own.
State VEXCRT::ChildProcess::Look(int) noexcept
{
    DWORD code = 0;
    if (!m_hasEnded && !GetExitCodeProcess(ToHandle(m_handle), &code)) {
        return State::UNKNOWN;
    }
    if (!m_hasEnded) {
        m_hasEnded = true;
        m_exitStatus = static_cast<int>(code);
    }
    return State::ENDED;
}

State VEXCRT::ChildProcess::Wait(std::int64_t timeoutMilliseconds)
{
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
    const ULONGLONG deadline = GetTickCount64() + (isForEver ? 0 : static_cast<ULONGLONG>(timeoutMilliseconds));
    std::vector<HANDLE> handles;
    for (const ChildProcess* child : children) {
        handles.push_back(ToHandle(child->m_handle));
    }
    const bool isOneGroup = handles.size() <= MAXIMUM_WAIT_OBJECTS; // the system waits for no more at a time
    while (!handles.empty()) {
        const ULONGLONG now = GetTickCount64();
        const ULONGLONG left = now < deadline ? std::min<ULONGLONG>(deadline - now, INFINITE - 1) : 0;
        const DWORD patience = isForEver ? INFINITE : static_cast<DWORD>(left);
        for (std::size_t first = 0; first < handles.size(); first += MAXIMUM_WAIT_OBJECTS) {
            const auto count = static_cast<DWORD>(std::min<std::size_t>(handles.size() - first, MAXIMUM_WAIT_OBJECTS));
            const DWORD result =
                WaitForMultipleObjects(count, &handles[first], FALSE, isOneGroup ? patience : std::min(patience, NAP));
            if (result < WAIT_OBJECT_0 + count) {
                const std::size_t index = first + result - WAIT_OBJECT_0;
                return children[index]->Look(0) == State::ENDED ? static_cast<int>(index) : FAILED;
            }
            if (result == WAIT_FAILED) {
                return FAILED;
            }
        }
        if (!isForEver && left == 0) {
            break;
        }
    }
    return NONE;
}

int VEXCRT::ChildProcess::Watch() noexcept
{
    return m_watch;
}

bool VEXCRT::ChildProcess::Kill() noexcept
{
    if (m_hasEnded || !TerminateProcess(ToHandle(m_handle), static_cast<UINT>(-1))) {
        return false;
    }
    m_wasKilled = true;
    return true;
}

void VEXCRT::ChildProcess::Leave() noexcept
{
    m_isLeft = true;
}

std::int64_t VEXCRT::ChildProcess::ReadOutput(int descriptor, void* buffer, std::size_t size)
{
    if (m_wasKilled) {
        Wait(FOR_EVER); // it may not be quite gone
        DWORD available = 0;
        const HANDLE pipe = ToHandle(_get_osfhandle(descriptor));
        if (PeekNamedPipe(pipe, nullptr, 0, nullptr, &available, nullptr) && available == 0) {
            return 0;
        }
    }
    return ReadDescriptor(descriptor, buffer, size);
}
