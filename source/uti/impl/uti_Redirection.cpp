#include "uti_Redirection.h"

#include "VEXcrt_Process.h"
#include "cow_Map.h"
#include "nex_TextException.h"
#include "thr_ThreadSingleton.h"
#include "thr_ThreadSingletonBase.h"
#include "uti_CommandText_detail.h"
#include "uti_SystemException.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <string_view>

using uti_detail::CommandPiece;

namespace
{
constexpr const char* SOURCE = "source/uti/impl/uti_Redirection";
constexpr auto DESTRUCT_LEVEL = static_cast<thr_ThreadObjectDestructLevel>(16);
constexpr int MAX_ARGUMENTS = 6;
constexpr int FSTAT_FAILED = -1;

enum Stream
{
    INPUT,
    OUTPUT,
    ERRORS
};
constexpr const char* STREAM_NAMES[] = {"stdin", "stdout", "stderr"};

[[noreturn]] void ThrowRedirected(int stream, int line)
{
    nex_TextException(cow_String("Stream ") + STREAM_NAMES[stream] + " has already redirected.").Throw(SOURCE, line);
}
} // namespace

// Defined for users of the DLL who bind references to it.
constexpr int uti_Redirection::Handle::NO_DESCRIPTOR;

/// What a symbol means.
struct uti_Redirection::RedirectorSpec
{
    RedirectorSpec(int stream_, bool append_, bool alsoErrors_)
        : stream(stream_), append(append_), alsoErrors(alsoErrors_)
    {}

    int stream;
    bool append;
    bool alsoErrors;
};

/// The symbols; one table for each thread.
class uti_Redirection::RedirectorMap : public thr_ThreadSingletonBase<uti_Redirection::RedirectorMap>
{
public:
    /// Null for what is no symbol.
    const RedirectorSpec* Find(const cow_String& symbol) const { return m_specs.Find(symbol); }

private:
    friend class thr_ThreadSingleton<RedirectorMap>;

    RedirectorMap();
    static int Finalize() { return thr_ThreadSingletonBase<RedirectorMap>::Finalize(); }

    cow_Map<cow_String, RedirectorSpec> m_specs;
};

uti_Redirection::RedirectorMap::RedirectorMap()
{
    thr_GlobalSingleton<thr_ThrSingletonRegistry>::Instance().SetDestructLevel(&Finalize, DESTRUCT_LEVEL);
    m_specs.Insert("<", {INPUT, false, false});
    m_specs.Insert(">", {OUTPUT, false, false});
    m_specs.Insert("2>", {ERRORS, false, false});
    m_specs.Insert(">>", {OUTPUT, true, false});
    m_specs.Insert("2>>", {ERRORS, true, false});
    m_specs.Insert(">&", {OUTPUT, false, true});
    m_specs.Insert(">>&", {OUTPUT, true, true});
}

uti_Redirection::Handle::Handle(const utl_FilePath& path) : m_fileName(path.AbsolutePathName()) {}

uti_Redirection::uti_Redirection(const cow_String& text)
{
    for (const CommandPiece& piece : uti_detail::CutCommand(text)) {
        Redirect(piece);
    }
}

uti_Redirection::uti_Redirection(const cow_String& symbol, const Handle& target)
{
    Redirect(symbol, target);
}

// Nothing is delegated from here on: the destructor would run, and close the caller's descriptor, when a later pair is
// refused.

uti_Redirection::uti_Redirection(const cow_String& symbol1, const Handle& target1, const cow_String& symbol2,
                                 const Handle& target2)
{
    Redirect(symbol1, target1);
    Redirect(symbol2, target2);
}

uti_Redirection::uti_Redirection(const cow_String& symbol1, const Handle& target1, const cow_String& symbol2,
                                 const Handle& target2, const cow_String& symbol3, const Handle& target3)
{
    Redirect(symbol1, target1);
    Redirect(symbol2, target2);
    Redirect(symbol3, target3);
}

uti_Redirection::uti_Redirection(const cow_1DArrayList<cow_String, cow_String>& arguments)
{
    if (arguments.Length() > MAX_ARGUMENTS) {
        // The spelling is promised and must stay.
        nex_TextException("Two many redirection arguments").Throw(SOURCE, 177);
    }
    if (arguments.Length() % 2 != 0) {
        nex_TextException("Redirection arguments must be paired").Throw(SOURCE, 179);
    }
    for (int i = 0; i < arguments.Length(); i += 2) {
        Redirect(arguments[i], Handle(arguments[i + 1]));
    }
}

uti_Redirection::~uti_Redirection()
{
    CloseOwned();
}

void uti_Redirection::Redirect(const cow_String& symbol, const Handle& target)
{
    const RedirectorSpec* const spec = thr_ThreadSingleton<RedirectorMap>::Instance().Find(symbol);
    if (!spec) {
        nex_TextException("Unrecognized redirector symbol").Throw(SOURCE, 199);
    }
    if (target.Descriptor() != Handle::NO_DESCRIPTOR && !VEXCRT::IsOpenDescriptor(target.Descriptor())) {
        // What the call returned, where errno would tell more: promised, and it must stay.
        uti_SystemException("fstat", FSTAT_FAILED).Throw(SOURCE, 206);
    }
    setRedirector(spec->stream, spec->append, target);
    if (spec->alsoErrors) {
        setRedirector(ERRORS, false, Handle(OUTPUT));
    }
}

/// A word has no symbol, also one that was quoted and looks like one: that is refused.
void uti_Redirection::Redirect(const CommandPiece& piece)
{
    if (piece.kind == CommandPiece::STREAM) {
        setRedirector(ERRORS, false, Handle(OUTPUT)); // that of the child: this process may have none
    } else {
        Redirect(piece.symbol, Handle(piece.text));
    }
}

void uti_Redirection::setRedirector(int stream, bool append, const Handle& target)
{
    if (!m_slots[stream].target.IsFree()) {
        ThrowRedirected(stream, 231);
    }
    m_slots[stream] = {target, append};
}

int uti_Redirection::ConnectPipe(int stream, bool isText, int line)
{
    VEXCRT::Pipe pipe;
    if (!m_slots[stream].target.IsFree()) {
        ThrowRedirected(stream, line);
    }
    if (!VEXCRT::MakePipe(pipe, isText)) {
        uti_SystemException("pipe", errno).Throw(SOURCE, __LINE__);
    }
    const bool isInput = stream == INPUT;
    setRedirector(stream, false, Handle(isInput ? pipe.readEnd : pipe.writeEnd));
    return isInput ? pipe.writeEnd : pipe.readEnd;
}

// That a source is text and a sink is not is promised and must stay.

int uti_Redirection::CreateSource()
{
    return ConnectPipe(OUTPUT, /*isText=*/true, 260);
}

int uti_Redirection::CreateSink()
{
    VEXCRT::IgnoreBrokenPipes();
    return ConnectPipe(INPUT, /*isText=*/false, 276);
}

void uti_Redirection::Nullify()
{
    for (int stream = 0; stream < STREAMS; ++stream) {
        if (m_slots[stream].target.IsFree()) {
            setRedirector(stream, false, Handle(NullDevice()));
        }
    }
}

void uti_Redirection::OpenAll()
{
    for (int stream = 0; stream < STREAMS; ++stream) {
        Handle& target = m_slots[stream].target;
        if (target.m_descriptor != Handle::NO_DESCRIPTOR || target.m_fileName.IsEmpty()) {
            continue;
        }
        if (target.m_fileName.view().find('\0') != std::string_view::npos) {
            uti_SystemException("open", EINVAL).Throw(SOURCE, __LINE__);
        }
        const VEXCRT::OpenFor writing = m_slots[stream].append ? VEXCRT::OpenFor::APPENDING : VEXCRT::OpenFor::WRITING;
        const int descriptor =
            VEXCRT::OpenFile(target.m_fileName.AsCharPtr(), stream == INPUT ? VEXCRT::OpenFor::READING : writing);
        if (descriptor < 0) {
            // Without the file's name: promised, and it must stay.
            uti_SystemException("open", errno).Throw(SOURCE, 303);
        }
        target.m_descriptor = descriptor;
    }
}

void uti_Redirection::HandOver() noexcept
{
    CloseOwned();
    for (Slot& slot : m_slots) {
        if (slot.target.m_descriptor > INPUT) {
            slot.target.m_descriptor = Handle::NO_DESCRIPTOR;
        }
    }
}

void uti_Redirection::CloseOwned() noexcept
{
    for (const Slot* slot = std::cbegin(m_slots); slot != std::cend(m_slots); ++slot) {
        const int descriptor = slot->target.m_descriptor;
        const auto isSame = [descriptor](const Slot& other) { return other.target.m_descriptor == descriptor; };
        // A descriptor may serve several streams; the last one closes it.
        if (descriptor >= m_firstOwned && std::none_of(slot + 1, std::cend(m_slots), isSame)) {
            VEXCRT::CloseDescriptor(descriptor);
        }
    }
}

omn_FixedString<> uti_Redirection::NullDevice()
{
    return VEXCRT::NullDevice();
}

bool uti_Redirection::IsSymbol(const cow_String& text)
{
    return thr_ThreadSingleton<RedirectorMap>::Instance().Find(text) != nullptr;
}
