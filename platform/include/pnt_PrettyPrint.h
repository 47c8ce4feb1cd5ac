#pragma once

#include "VEXutl_export.h"
#include "cow_String.h"

#include <concepts>
#include <iosfwd>
#include <string_view>

/// Indented text for debugging dumps, over any std::ostream:
///
///     (omu_PrimNumber
///       (omu_Primitive
///         i
///       )
///       7
///     )
///
/// Ownership:  refers to the stream of the caller.
/// Threads:    one thread at a time.
/// Errors:     those of the stream. Texts are independent of the stream's locale and flags.
class VEXUTL_API pnt_PrettyPrint
{
public:
    explicit pnt_PrettyPrint(std::ostream& out);
    pnt_PrettyPrint(const pnt_PrettyPrint&) = delete;
    pnt_PrettyPrint& operator=(const pnt_PrettyPrint&) = delete;

    /// Starts a line with "(" and `name`; what follows is indented one step more.
    void Open(const char* name);
    /// Ends what Open started with a line ")".
    void Close();

    /// The next text starts a new line, indented as is due by then. Several calls before it start only one.
    void NewLine() noexcept { m_newLine = true; }
    void Indent() noexcept { ++m_depth; }
    void Outdent() noexcept { --m_depth; }

    /// A new line with `value` on it.
    template <class T> void Field(const T& value)
    {
        NewLine();
        *this << value;
    }

    pnt_PrettyPrint& operator<<(const char* text);
    pnt_PrettyPrint& operator<<(const cow_String& text);
    pnt_PrettyPrint& operator<<(char value);
    template <std::same_as<bool> T> pnt_PrettyPrint& operator<<(T value) { return *this << (value ? "true" : "false"); }
    pnt_PrettyPrint& operator<<(int value);
    pnt_PrettyPrint& operator<<(unsigned int value);
    /// The shortest text that reads back equal.
    pnt_PrettyPrint& operator<<(double value);
    pnt_PrettyPrint& operator<<(float value);

private:
    void Write(std::string_view text);
    void StartLine();

    std::ostream& m_out;
    int m_depth = 0;
    bool m_newLine = true;  // asked for, not yet written
    bool m_started = false; // the first line has no line break before it
};
