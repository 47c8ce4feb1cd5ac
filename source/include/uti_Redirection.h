#pragma once

#include "VEXomu_export.h"
#include "cow_1DArrayList.h"
#include "cow_String.h"
#include "omn_FixedString.h"
#include "utl_FilePath.h"

class uti_Spawn;
namespace uti_detail
{
struct CommandPiece;
}

/// Where the three standard streams of a child go: to an open descriptor, to a file, to the null device or to a pipe.
///
///     symbol          <      >      2>      >>      2>>      >&               >>&
///     stream          in     out    error   out     error    out and error    out and error
///     the file is     read   new    new     extended         new              extended
///
/// Ownership:  owns the descriptors that it is given or opens, until a started child has them; those above 2 are then
///             closed in this process. A constructor that throws leaves them to the caller. Descriptors 0 to 2 are this
///             process's own streams: they stay open once a start was tried, but one that no start was tried with
///             closes them as well. ">&" without a start so closes 1, where the errors were to go.
/// Threads:    one thread at a time. Files are closed to every child but the one they are meant for.
/// Errors:     nex_TextException for what cannot be meant, uti_SystemException for what cannot be opened; what was set
///             before stays.
/// Example:    uti_Redirection wiring("<", "mesh.inp", ">&", "check.log");
class VEXOMU_API uti_Redirection
{
public:
    /// The target of one stream: a descriptor or a file, or nothing.
    class VEXOMU_API Handle
    {
    public:
        static constexpr int NO_DESCRIPTOR = -1;

        Handle() = default;
        Handle(int descriptor) : m_descriptor(descriptor) {}
        // A file; a relative name is one of the present current directory, whatever that will be later.
        Handle(const char* name) : Handle(utl_FilePath(name)) {}
        Handle(const omn_FixedString<>& name) : Handle(utl_FilePath(name.AsCharPtr())) {}
        Handle(const cow_String& name) : Handle(utl_FilePath(name)) {}
        Handle(const utl_FilePath& path);

        int Descriptor() const noexcept { return m_descriptor; }
        const cow_String& FileName() const noexcept { return m_fileName; }
        bool IsFree() const noexcept { return m_descriptor == NO_DESCRIPTOR && m_fileName.IsEmpty(); }

    private:
        friend class uti_Redirection;
        friend class uti_Spawn;

        int m_descriptor = NO_DESCRIPTOR;
        cow_String m_fileName;
    };

    uti_Redirection() = default;
    /// From symbols and file names as a command has them: "< mesh.inp 2> errors"; see uti_Spawn for quotes.
    explicit uti_Redirection(const cow_String& text);
    uti_Redirection(const cow_String& symbol, const Handle& target);
    uti_Redirection(const cow_String& symbol1, const Handle& target1, const cow_String& symbol2, const Handle& target2);
    uti_Redirection(const cow_String& symbol1, const Handle& target1, const cow_String& symbol2, const Handle& target2,
                    const cow_String& symbol3, const Handle& target3);
    /// From symbols and file names that alternate.
    explicit uti_Redirection(const cow_1DArrayList<cow_String, cow_String>& arguments);
    uti_Redirection(const uti_Redirection&) = delete;
    uti_Redirection& operator=(const uti_Redirection&) = delete;
    ~uti_Redirection();

    /// Redirects a free stream; each can be redirected once.
    void Redirect(const cow_String& symbol, const Handle& target);

    /// Makes a pipe that the child's output goes into, and returns the end to read from, which the caller closes.
    int CreateSource();
    /// Makes a pipe that the child's input comes from, and returns the end to write to, which the caller closes. Writing
    /// when the child reads no more fails with EPIPE: on POSIX the process ignores SIGPIPE from now on, unless it has set
    /// that signal's fate itself.
    int CreateSink();

    /// Redirects every free stream to the null device.
    void Nullify();
    /// Opens every stream that is redirected to a file.
    void OpenAll();

    /// "nul"; on POSIX "/dev/null".
    static omn_FixedString<> NullDevice();
    static bool IsSymbol(const cow_String& text);

private:
    friend class uti_Spawn;

    struct RedirectorSpec;
    class RedirectorMap;
    struct Slot
    {
        Handle target;
        bool append = false;
    };
    static constexpr int STREAMS = 3;
    static constexpr int FIRST_OWNED = 3; // lower descriptors are this process's own streams

    void Redirect(const uti_detail::CommandPiece& piece);
    void setRedirector(int stream, bool append, const Handle& target);
    /// Puts one end of a pipe into a free stream and returns the other.
    int ConnectPipe(int stream, bool isText, int line);
    /// A start is tried, or was all that this was made for: this process's own streams stay open from now on.
    void KeepStandardStreams() noexcept { m_firstOwned = FIRST_OWNED; }
    /// Lets go of the streams that a started child has: closes their descriptors.
    void HandOver() noexcept;
    void CloseOwned() noexcept;

    Slot m_slots[STREAMS];
    int m_firstOwned = 0; // no lower descriptor is closed
};
