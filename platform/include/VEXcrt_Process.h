#pragma once

#include "VEXCRT_export.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// Child processes and the descriptors that join them to this one, alike on every system.
///
/// Descriptors are those of the C runtime. None that is made here reaches a child by itself, not even one that another
/// thread starts at the same moment: a child has its three streams and nothing else.
///
/// Errors: what fails leaves its reason in errno unless it says otherwise.
namespace VEXCRT
{
enum class OpenFor
{
    READING,
    WRITING,  ///< what the file held is gone
    APPENDING ///< positioned at the end
};

/// Opens a file, and makes it when it is to be written to; -1 when that fails. Never one of the descriptors 0 to 2.
VEXCRT_API int OpenFile(const char* path, OpenFor purpose) noexcept;

struct Pipe
{
    int readEnd = -1;
    int writeEnd = -1;
};

/// Makes a pipe; false when that fails. Only Windows tells text from binary. Never one of the descriptors 0 to 2.
VEXCRT_API bool MakePipe(Pipe& pipe, bool isText) noexcept;

/// Lets a write to a pipe that nobody reads any more fail with EPIPE, where it would end the process: SIGPIPE is ignored
/// from now on, unless the program has a say in it already. Windows has no such signal.
VEXCRT_API void IgnoreBrokenPipes() noexcept;

VEXCRT_API bool IsOpenDescriptor(int descriptor) noexcept;
VEXCRT_API void CloseDescriptor(int descriptor) noexcept;

/// Reads what is there, waiting for the first byte: the number of bytes, 0 at the end, -1 when that fails.
VEXCRT_API std::int64_t ReadDescriptor(int descriptor, void* buffer, std::size_t size) noexcept;
/// Writes all of it; false when that fails.
VEXCRT_API bool WriteDescriptor(int descriptor, const void* bytes, std::size_t size) noexcept;

VEXCRT_API const char* NullDevice() noexcept;
/// How the name of a program's file ends: ".exe", or nothing.
VEXCRT_API const char* ExecutableSuffix() noexcept;

/// The entries "NAME=value" of the C runtime's environment table.
VEXCRT_API std::vector<std::string> EnvironmentEntries();

/// What a child is started with.
struct ChildStart
{
    static constexpr int INHERITED = 0;

    std::string program;                  ///< the file that runs; Windows finds it by the first argument instead
    std::vector<std::string> arguments;   ///< the first is the name the program is called by
    std::vector<std::string> environment; ///< "NAME=value"; empty: that of this process
    int streams[3] = {};                  ///< see ChildProcess::Start
    bool isDaemon = false;                ///< without a terminal
};

/// One child. It starts with default signal dispositions and no signal blocked, in this process's working directory.
///
/// Ownership:  owns the child's handle; a child that still runs when its owner goes is left behind, and the system's
///             record of it goes with a later call of this class.
/// Threads:    one thread at a time; distinct children on distinct threads.
class VEXCRT_API ChildProcess
{
public:
    enum class State
    {
        RUNNING,
        ENDED,
        UNKNOWN ///< the system does not tell
    };
    static constexpr std::int64_t FOR_EVER = -1;
    static constexpr int NONE = -1;
    static constexpr int FAILED = -2;

    ChildProcess() noexcept = default;
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    /// Starts the child, once: 0, or the system's error, and then nothing was left behind. A stream number above 2 is the
    /// descriptor that the stream becomes. 1 or 2 means what the child has as that stream when it is an earlier one,
    /// otherwise what this process has. Any other: what this process has as this stream.
    int Start(const ChildStart& start);

    /// Waits until the child has ended, at most so long.
    State Wait(std::int64_t timeoutMilliseconds);
    /// Waits until one of them has ended, at most so long: its position, NONE, or FAILED. Others' children are not touched.
    static int WaitForAny(std::span<ChildProcess* const> children, std::int64_t timeoutMilliseconds);

    /// Of a child that has ended: its code, -1 after Kill, and 128 + the signal that ended it.
    int ExitStatus() const noexcept { return m_exitStatus; }

    /// Ends the child; false when it has ended already, or was never started.
    bool Kill() noexcept;

    /// Gives up waiting. Kill still works.
    void Leave() noexcept;

    /// Reads the child's output as ReadDescriptor does. Once the child was ended from outside, what is left in the pipe
    /// is followed by the end, though a process that the child started may still hold the pipe.
    std::int64_t ReadOutput(int descriptor, void* buffer, std::size_t size);

private:
    int Watch() noexcept;
    State Look(int flags) noexcept;

    std::intptr_t m_handle = 0; // the system's name for the child; 0: not started
    int m_watch = -1;           // a descriptor that becomes readable as the child ends, where there is such a thing
    int m_exitStatus = -1;
    bool m_hasEnded = false;
    bool m_wasKilled = false; // by this object; on POSIX, once the child has ended: by any signal
    bool m_isLeft = false;
};
} // namespace VEXCRT
