#pragma once

#include "VEXutl_export.h"
#include "cow_String.h"

#include <compare>

class bio_Ifilter;
class bio_Ofilter;
class pnt_PrettyPrint;

/// The path of a file, held as the text it was made from: nothing is resolved, cleaned or checked. On Windows
/// "/" and
/// "\" both separate, a drive ("C:") may lead, and the text is UTF-8.
///
/// Ownership:  shares its text as cow_String does.
/// Threads:    one thread at a time; distinct copies may live on distinct threads.
/// Errors:     AbsolutePathName() throws nex_TextException when the system gives no answer; only it and
///             IsExecutable() ask.
/// Example:    utl_FilePath("jobs").Join("beam.inp").Extension()
class VEXUTL_API utl_FilePath
{
public:
    utl_FilePath() = default;
    explicit utl_FilePath(const cow_String& path) : m_path(path) {}
    explicit utl_FilePath(const char* path) : m_path(path) {}

    const cow_String& PathName() const noexcept { return m_path; }
    bool IsEmpty() const noexcept { return m_path.IsEmpty(); }
    /// True when the path does not depend on the current directory (nor, on Windows, on the current drive).
    bool IsAbsolute() const;
    /// True when the path leads to a file that may be run.
    bool IsExecutable() const;

    /// All before the last name, without the separators between ("/" for "/f"); empty when there is no
    /// separator. Separators at the end of the path do not count.
    utl_FilePath Directory() const;
    /// The last name; empty for an empty path and for "/".
    cow_String BaseName() const;
    /// What follows the last dot of the last name, with the dot; empty when only dots lead up to it
    /// (".profile", "..").
    cow_String Extension() const;

    /// `name` below this path; `name` itself when it is absolute or this path is empty.
    utl_FilePath Join(const cow_String& name) const;

    /// An absolute or empty path as it stands; any other below the present current directory.
    cow_String AbsolutePathName() const;

    /// Paths compare as texts, by unsigned bytes.
    friend bool operator==(const utl_FilePath& left, const utl_FilePath& right) noexcept = default;
    friend std::strong_ordering operator<=>(const utl_FilePath& left, const utl_FilePath& right) noexcept = default;

private:
    cow_String m_path;
};

VEXUTL_API bio_Ofilter& operator<<(bio_Ofilter& out, const utl_FilePath& path);
VEXUTL_API bio_Ifilter& operator>>(bio_Ifilter& in, utl_FilePath& path);
VEXUTL_API pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const utl_FilePath& path);
