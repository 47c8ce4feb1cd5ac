#pragma once

#include "VEXomu_export.h"
#include "cow_Map.h"
#include "cow_String.h"

/// Texts for the user, read from a file: so an installation translates them without a new program. A lookup for
/// uti_ResourceManager.
///
///     # a comment
///     uti_XypException_MSGID_01 = X-Y-Daten sind leer
///
/// Each line has a label, "=" and the text, without the blanks around them; in the text \n, \t and \\ stand for a line
/// break, a tab and a backslash, \s for a blank at one of its ends. Labels that the file has not keep their default text.
///
/// Ownership:  an ordinary value; copies share the texts.
/// Threads:    one thread at a time; distinct copies may live on distinct threads.
/// Complexity: O(log labels) for a text.
/// Errors:     the constructor throws uti_SystemException for a file that cannot be read, and nex_TextException, with file
///             and line, for a line that is none of the above and for a label that stands there twice. Nothing is
///             installed by then, so the texts that were shown stay.
/// Example:    manager.InstallLookup(uti_MessageFile("messages.de"));
class VEXOMU_API uti_MessageFile
{
public:
    explicit uti_MessageFile(const cow_String& path);

    /// The file's text for the label, or `defaultText`.
    cow_String operator()(const char* label, const char* defaultText) const;

    int Length() const noexcept { return m_texts.Length(); }

private:
    cow_Map<cow_String, cow_String> m_texts;
};
