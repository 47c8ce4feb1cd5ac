#pragma once

#include "VEXcrt_Process.h"
#include "VEXomu_export.h"
#include "cow_1DArrayList.h"
#include "cow_Map.h"
#include "cow_String.h"
#include "utl_FilePath.h"

#include <string_view>

class uti_Redirection;

/// A child process: started by the constructor, then polled, waited for, detached or killed.
///
/// A command is a program, its arguments and redirections anywhere among them, cut at blanks: 'as it stands' and "as it
/// stands" hold blanks and symbols; on POSIX a backslash guards one character. Leading NAME=value words change the
/// environment. The symbols are those of uti_Redirection; "2>&1" joins the errors with the output. Nothing else is
/// special: no variables, patterns or pipes. The program is looked for in the current directory first, then along PATH.
///
/// Arguments arrive as they are; on Windows a text with a blank or tab is put into quotation marks and nothing else is
/// done, so that a quotation mark, a backslash before the closing mark and an empty argument do not arrive as they are.
/// A child has its three streams and no other descriptor, no signal blocked or ignored, and this process's directory.
///
/// Ownership:  owns the child: no other waits for it. One that was detached, or still runs when its object goes, is left
///             behind; on POSIX the system's record of it goes as later children are started or waited for.
/// Threads:    one thread at a time; any number of threads may start children at once.
/// Errors:     uti_NotOnPathException, uti_NotExecutableException, uti_SystemException from the constructor, on POSIX
///             also for a program that cannot be run; nex_TextException for a command that cannot be understood.
///             Destroying an object whose child runs is an assertion.
/// Example:    const int status = uti_Spawn::AndWait("sort -n < loads.txt > 'sorted loads.txt'");
/// Avoid for:  talking with the child: see uti_SpawnSink and uti_SpawnSource.
class VEXOMU_API uti_Spawn
{
public:
    using Environment = cow_Map<cow_String, cow_String>;

    static constexpr int NO_STATUS = -1;
    static constexpr int DETACHED_STATUS = 86;

    /// Starts the child. `env` is the child's whole environment; when it is empty, that of this process is.
    explicit uti_Spawn(const cow_String& command, const Environment& env = {});
    uti_Spawn(const uti_Spawn&) = delete;
    uti_Spawn& operator=(const uti_Spawn&) = delete;
    virtual ~uti_Spawn();

    /// Looks whether the child runs.
    virtual bool IsRunning();
    /// Waits for the child's end: at most so long, without a limit for 0, not at all when negative. The exit status, or
    /// NO_STATUS while it runs: on POSIX 128 + the signal that ended it; on both NO_STATUS after Kill.
    virtual int Reap(int seconds);
    /// Lets a running child go; its status is then DETACHED_STATUS.
    virtual void Detach();

    /// Ends the child at once: 0, or -1 when it has ended already.
    int Kill();
    /// The same as Kill: promised, and it must stay.
    int Interrupt();

    /// True for a command that says where its standard output goes.
    static bool RedirectsOutput(const cow_String& command);
    /// Starts, waits and returns the exit status.
    static int AndWait(const cow_String& command, const Environment& env = {});
    /// Starts, and leaves the child running; that is reported as an assertion, promised, and must stay.
    static void AndExit(const cow_String& command, const Environment& env = {});
    /// Starts, detaches. Streams that the command does not redirect go to the null device; the child has no terminal.
    static void Daemon(const cow_String& command, const Environment& env = {});

    /// The environment of this process; of a name that stands in it twice the first value.
    static Environment getEnvironment();

    /// Waits until one of the children has ended and returns it, of several the first in the list; null for an empty list.
    static uti_Spawn* waitForAny(uti_Spawn** list, int count);
    /// Reaps one after the other, for all of them at most so long; 0 only looks. How many still run.
    static int waitForAll(uti_Spawn** list, int count, int seconds);

protected:
    using ArgumentList = cow_1DArrayList<cow_String, cow_String>;
    class Parser;
    enum Mode
    {
        DAEMON = -1,
        UNATTENDED = 0,
        ATTENDED = 1
    };

    /// This process's end of a pipe.
    class VEXOMU_API PipeEnd
    {
    public:
        PipeEnd() noexcept = default;
        PipeEnd(const PipeEnd&) = delete;
        PipeEnd& operator=(const PipeEnd&) = delete;
        ~PipeEnd() { Close(); }

        int Get() const noexcept { return m_descriptor; }
        void Set(int descriptor) noexcept { m_descriptor = descriptor; }
        void Close() noexcept;

    private:
        int m_descriptor = -1;
    };

    /// No child yet.
    uti_Spawn() noexcept = default;

    /// The file of a program: an absolute one as it is, otherwise one that may be executed.
    static utl_FilePath FindCommand(cow_String name);

    /// Comes before all else that a start does: should it fail, the redirection leaves this process's streams open.
    static void BeginStart(uti_Redirection& redirection) noexcept;
    void spawn(const cow_String& name, const utl_FilePath& path, const ArgumentList& args, uti_Redirection& redirection,
               const Environment& env, int mode);

    /// Waits for the end, which a destructor cannot do without.
    void Finish() noexcept;
    /// Throws uti_SystemException("write").
    static void WriteTo(const PipeEnd& end, std::string_view text);
    /// Throws uti_SystemException("read").
    int ReadFrom(const PipeEnd& end, char* buffer, int size);
    cow_String ReadAllFrom(const PipeEnd& end);

private:
    static int AndWait(const cow_String& name, const utl_FilePath& path, const ArgumentList& args,
                       uti_Redirection& redirection, const Environment& env);
    static void AndExit(const cow_String& name, const utl_FilePath& path, const ArgumentList& args,
                        uti_Redirection& redirection, const Environment& env);
    static void Daemon(const cow_String& name, const utl_FilePath& path, const ArgumentList& args,
                       uti_Redirection& redirection, const Environment& env);

    void setExitStatus(int code, int status) noexcept;
    int getExitStatus(int seconds);

    VEXCRT::ChildProcess m_process;
    int m_exitStatus = NO_STATUS;
    bool m_isRunning = false;
};
