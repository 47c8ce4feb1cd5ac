#include "uti_Spawn.h"

#include "VEXCRT.h"
#include "nex_TextException.h"
#include "pnt_debugPrint.h"
#include "typ_DebugFlags.h"
#include "uti_CommandText_detail.h"
#include "uti_NotExecutableException.h"
#include "uti_NotOnPathException.h"
#include "uti_Redirection.h"
#include "uti_Spawn_detail.h"
#include "uti_SystemException.h"
#include "utl_PathFinder.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <string>
#include <vector>

using uti_detail::CommandPiece;
using Child = VEXCRT::ChildProcess;

namespace
{
constexpr const char* SOURCE = "source/uti/impl/uti_Spawn";
constexpr int STILL_RUNNING = 259; // what Windows gives as the code of a child that runs
constexpr int HAS_ENDED = 0;
constexpr int DEBUG_CATEGORY = 2;
constexpr std::int64_t MILLISECONDS = 1000; // in a second
constexpr int OUTPUT = 1;                   // the stream

[[noreturn]] void ThrowUnknownEnd(int line)
{
    // The number is the C library's even where the system has its own: promised, and it must stay.
    uti_SystemException("GetExitCodeProcess", errno).Throw(SOURCE, line);
}

bool EndsWithSuffix(std::string_view name, std::string_view suffix)
{
    const auto toLower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return name.size() >= suffix.size() &&
           std::equal(suffix.rbegin(), suffix.rend(), name.rbegin(),
                      [&](char wanted, char given) { return wanted == toLower(given); });
}

/// A text as programs take it: a zero byte would end it there.
std::string Passable(std::string_view text)
{
    if (text.find('\0') != std::string_view::npos) {
        nex_TextException("A text with a zero byte cannot be passed to a program").Throw(SOURCE, __LINE__);
    }
    return std::string(text);
}
} // namespace

uti_Spawn::Parser::Parser(const cow_String& command)
{
    BeginStart(redirection);
    for (const CommandPiece& piece : uti_detail::CutCommand(command)) {
        switch (piece.kind) {
        case CommandPiece::OVERRIDE: {
            const int equals = piece.text.Find("=");
            overrides.Insert(piece.text.Substring(0, equals), piece.text.Substring(equals + 1, piece.text.Length()));
            break;
        }
        case CommandPiece::WORD:
            args.Append(piece.text);
            break;
        case CommandPiece::FILE:
        case CommandPiece::STREAM:
            redirection.Redirect(piece);
            break;
        }
    }
    if (args.IsEmpty() || args[0].IsEmpty()) {
        nex_TextException("No program in the command: " + command).Throw(SOURCE, __LINE__);
    }
    name = args[0];
    args.RemoveAt(0);
    path = FindCommand(name);
}

// Defined for users of the DLL who bind references to them.
constexpr int uti_Spawn::NO_STATUS;
constexpr int uti_Spawn::DETACHED_STATUS;

uti_Spawn::Environment uti_Spawn::Parser::EnvironmentOver(const Environment& env) const
{
    Environment whole = env.IsEmpty() && !overrides.IsEmpty() ? getEnvironment() : env;
    for (const auto& [variable, value] : overrides) {
        whole.Insert(variable, value);
    }
    return whole;
}

uti_Spawn::uti_Spawn(const cow_String& command, const Environment& env)
{
    Parser parser(command);
    spawn(parser.name, parser.path, parser.args, parser.redirection, parser.EnvironmentOver(env), ATTENDED);
}

uti_Spawn::~uti_Spawn()
{
    if (m_isRunning) {
        VEXCRT::_assert("m_isRunning == false", SOURCE, 319);
    }
}

bool uti_Spawn::RedirectsOutput(const cow_String& command)
{
    uti_Redirection redirection;
    BeginStart(redirection);
    for (const CommandPiece& piece : uti_detail::CutCommand(command)) {
        if (piece.kind == CommandPiece::FILE || piece.kind == CommandPiece::STREAM) {
            redirection.Redirect(piece);
        }
    }
    return !redirection.m_slots[OUTPUT].target.IsFree();
}

int uti_Spawn::AndWait(const cow_String& command, const Environment& env)
{
    Parser parser(command);
    return AndWait(parser.name, parser.path, parser.args, parser.redirection, parser.EnvironmentOver(env));
}

int uti_Spawn::AndWait(const cow_String& name, const utl_FilePath& path, const ArgumentList& args,
                       uti_Redirection& redirection, const Environment& env)
{
    uti_Spawn child;
    child.spawn(name, path, args, redirection, env, ATTENDED);
    return child.Reap(0);
}

void uti_Spawn::AndExit(const cow_String& command, const Environment& env)
{
    Parser parser(command);
    AndExit(parser.name, parser.path, parser.args, parser.redirection, parser.EnvironmentOver(env));
}

void uti_Spawn::AndExit(const cow_String& name, const utl_FilePath& path, const ArgumentList& args,
                        uti_Redirection& redirection, const Environment& env)
{
    uti_Spawn child;
    child.spawn(name, path, args, redirection, env, UNATTENDED);
}

void uti_Spawn::Daemon(const cow_String& command, const Environment& env)
{
    Parser parser(command);
    Daemon(parser.name, parser.path, parser.args, parser.redirection, parser.EnvironmentOver(env));
}

void uti_Spawn::Daemon(const cow_String& name, const utl_FilePath& path, const ArgumentList& args,
                       uti_Redirection& redirection, const Environment& env)
{
    redirection.Nullify();
    uti_Spawn child;
    child.spawn(name, path, args, redirection, env, DAEMON);
    child.Detach();
}

uti_Spawn::Environment uti_Spawn::getEnvironment()
{
    Environment variables;
    for (const std::string& entry : VEXCRT::EnvironmentEntries()) {
        const std::size_t equals = entry.find('=');
        const cow_String name = std::string_view(entry).substr(0, equals);
        if (equals != std::string::npos && !variables.IsMember(name)) {
            variables.Insert(name, std::string_view(entry).substr(equals + 1));
        }
    }
    return variables;
}

utl_FilePath uti_Spawn::FindCommand(cow_String name)
{
    const std::string_view suffix = VEXCRT::ExecutableSuffix();
    if (!EndsWithSuffix(name, suffix)) {
        name += suffix;
    }
    utl_FilePath path(name);
    if (path.AbsolutePathName() == path.PathName() || path.IsExecutable()) {
        return path;
    }
    path = utl_PathFinder::getPath(name, "PATH", /*currentFirst=*/false);
    if (path.IsEmpty()) {
        uti_NotOnPathException(name).Throw(SOURCE, 105);
    }
    if (!path.IsExecutable()) {
        uti_NotExecutableException(path.AbsolutePathName()).Throw(SOURCE, 109);
    }
    return path;
}

void uti_Spawn::BeginStart(uti_Redirection& redirection) noexcept
{
    redirection.KeepStandardStreams();
}

void uti_Spawn::spawn(const cow_String& name, const utl_FilePath& path, const ArgumentList& args,
                      uti_Redirection& redirection, const Environment& env, int mode)
{
    BeginStart(redirection);
    redirection.OpenAll();
    VEXCRT::ChildStart start;
    start.program = Passable(path.PathName());
    start.isDaemon = mode < UNATTENDED;
    start.arguments.reserve(1 + args.size());
    start.arguments.push_back(Passable(name));
    for (const cow_String& argument : args) {
        start.arguments.push_back(Passable(argument));
    }
    for (const auto& [variable, value] : env) {
        start.environment.push_back(Passable(variable) + '=' + Passable(value));
    }
    for (int stream = 0; stream < uti_Redirection::STREAMS; ++stream) {
        start.streams[stream] = redirection.m_slots[stream].target.Descriptor();
    }
    if (const int error = m_process.Start(start)) {
        uti_SystemException("CreateProcess", error).Throw(SOURCE, 294);
    }
    redirection.HandOver();
    m_isRunning = true;
}

bool uti_Spawn::IsRunning()
{
    getExitStatus(-1);
    return m_isRunning;
}

int uti_Spawn::Reap(int seconds)
{
    return getExitStatus(seconds);
}

void uti_Spawn::Detach()
{
    if (!m_isRunning) {
        return;
    }
    if (m_exitStatus > NO_STATUS) {
        getExitStatus(0);
    }
    m_process.Leave();
    m_isRunning = false;
    m_exitStatus = DETACHED_STATUS;
}

int uti_Spawn::Kill()
{
    return m_process.Kill() ? 0 : -1;
}

int uti_Spawn::Interrupt()
{
    return Kill();
}

uti_Spawn* uti_Spawn::waitForAny(uti_Spawn** list, int count)
{
    std::vector<Child*> children;
    for (int i = 0; i < count; ++i) {
        if (!list[i]->IsRunning()) {
            return list[i];
        }
        children.push_back(&list[i]->m_process);
    }
    const int index = Child::WaitForAny(children, Child::FOR_EVER);
    if (index == Child::FAILED) {
        ThrowUnknownEnd(552);
    }
    if (index == Child::NONE) {
        return nullptr;
    }
    // Not marked as ended: the next IsRunning or Reap does that, promised, and it must stay.
    uti_Spawn* const ended = list[index];
    ended->m_exitStatus = ended->m_process.ExitStatus();
    if (ended->m_exitStatus == STILL_RUNNING) {
        VEXCRT::_assert("exitCode != STILL_ACTIVE", SOURCE, __LINE__);
    }
    return ended;
}

int uti_Spawn::waitForAll(uti_Spawn** list, int count, int seconds)
{
    const std::time_t start = std::time(nullptr);
    int running = count;
    for (int i = 0; i < count; ++i) {
        const std::time_t left = seconds - (std::time(nullptr) - start);
        const int status = list[i]->Reap(left <= 0 ? -1 : static_cast<int>(std::min<std::time_t>(left, seconds)));
        if (typ_DebugFlags::GetDebugFlags(DEBUG_CATEGORY) >= 1) {
            pnt_debugPrint().StartDebug(SOURCE, 575);
            pnt_debugPrint() << "uti_Spawn::waitForAll reaped process #" << i << " with exit code" << status << '\n';
            pnt_debugPrint().EndDebug();
        }
        running -= list[i]->IsRunning() ? 0 : 1;
    }
    return running;
}

/// `code` tells whether the child still runs. It is not the status: a child may end with the number that means running.
void uti_Spawn::setExitStatus(int code, int status) noexcept
{
    if (code != STILL_RUNNING) {
        m_isRunning = false;
        m_exitStatus = status;
    }
}

int uti_Spawn::getExitStatus(int seconds)
{
    if (!m_isRunning) {
        return m_exitStatus;
    }
    const std::int64_t forSeconds = seconds == 0 ? Child::FOR_EVER : seconds * MILLISECONDS;
    switch (m_process.Wait(seconds < 0 ? 0 : forSeconds)) {
    case Child::State::RUNNING:
        setExitStatus(STILL_RUNNING, NO_STATUS);
        break;
    case Child::State::ENDED:
        setExitStatus(HAS_ENDED, m_process.ExitStatus());
        break;
    case Child::State::UNKNOWN:
        ThrowUnknownEnd(seconds < 0 ? 459 : 452);
    }
    return m_exitStatus;
}

void uti_Spawn::Finish() noexcept
{
    if (m_isRunning && m_process.Wait(Child::FOR_EVER) == Child::State::ENDED) {
        setExitStatus(HAS_ENDED, m_process.ExitStatus());
    }
}

void uti_Spawn::PipeEnd::Close() noexcept
{
    VEXCRT::CloseDescriptor(m_descriptor);
    m_descriptor = -1;
}

void uti_Spawn::WriteTo(const PipeEnd& end, std::string_view text)
{
    if (!VEXCRT::WriteDescriptor(end.Get(), text.data(), text.size())) {
        uti_SystemException("write", errno).Throw(SOURCE, __LINE__);
    }
}

int uti_Spawn::ReadFrom(const PipeEnd& end, char* buffer, int size)
{
    const std::int64_t count = m_process.ReadOutput(end.Get(), buffer, static_cast<std::size_t>(std::max(size, 0)));
    if (count < 0) {
        uti_SystemException("read", errno).Throw(SOURCE, __LINE__);
    }
    return static_cast<int>(count);
}

cow_String uti_Spawn::ReadAllFrom(const PipeEnd& end)
{
    constexpr int BLOCK = 1 << 16; // as much as a pipe holds
    std::vector<char> block(BLOCK);
    cow_String all;
    while (const int count = ReadFrom(end, block.data(), BLOCK)) {
        all.Append(std::string_view(block.data(), static_cast<std::size_t>(count)));
    }
    return all;
}
