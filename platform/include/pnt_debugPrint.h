#pragma once

#include "VEXutl_export.h"
#include "cow_String.h"

#include <atomic>
#include <iosfwd>
#include <mutex>
#include <string_view>

/// The debugging text of the process. What is written while it is off is discarded.
///
/// Threads:   any thread may write, start and end; each << stays whole, lines of several threads may mix.
/// Example:   pnt_debugPrint() << "version:" << version << '\n';
class VEXUTL_API pnt_DebugPrint
{
public:
    pnt_DebugPrint(const pnt_DebugPrint&) = delete;
    pnt_DebugPrint& operator=(const pnt_DebugPrint&) = delete;

    /// Switches the text on until the matching EndDebug; the pairs nest. With a source the text that follows
    /// starts with "<source>:<line>: ".
    void StartDebug(const char* source = nullptr, int line = 0);
    /// Ends one StartDebug; one too many does nothing.
    void EndDebug() noexcept;
    /// True between StartDebug and EndDebug, and always when typ_DebugFlags has bit 0 set.
    bool IsOn() const noexcept { return m_always || m_started.load(std::memory_order_relaxed) > 0; }

    /// Sends the text to `stream`, which must outlive its use; null: to standard output, as at first.
    void SetStream(std::ostream* stream);

    pnt_DebugPrint& operator<<(const char* text);
    pnt_DebugPrint& operator<<(const cow_String& text);
    pnt_DebugPrint& operator<<(char value);
    pnt_DebugPrint& operator<<(int value);
    pnt_DebugPrint& operator<<(unsigned int value);
    /// The shortest text that reads back equal.
    pnt_DebugPrint& operator<<(double value);

private:
    friend VEXUTL_API pnt_DebugPrint& pnt_debugPrint();
    explicit pnt_DebugPrint(bool always) noexcept : m_always(always) {}

    void Write(std::string_view text);

    const bool m_always;
    std::atomic<int> m_started{0};
    std::mutex m_mutex;               // guards m_stream and what is behind it
    std::ostream* m_stream = nullptr; // null: standard output
};

/// The one debugging text of the process.
VEXUTL_API pnt_DebugPrint& pnt_debugPrint();
