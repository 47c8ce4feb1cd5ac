#pragma once

#include "VEXomu_export.h"
#include "cow_1DArrayList.h"
#include "cow_String.h"
#include "rgx_ReIterator.h"

// Regular expressions as PCRE2 has them, over bytes. Patterns and subjects end at their first zero byte: what lies behind
// it never matches, but is kept where the subject's text is handed on.
//
// Threads: one at a time; all use the one cache of compiled patterns.
// Errors:  nex_TextException for a pattern that is wrong ("rgx_match: error in regex at offset...") and for a match that
//          takes too many steps or too much memory ("rgx_match: exec error: " and PCRE2's code).

/// The first match of the pattern anywhere in the subject.
VEXOMU_API rgx_ReIterator rgx_match(const cow_String& pattern, const cow_String& subject);
/// The same; null is the empty subject.
VEXOMU_API rgx_ReIterator rgx_match(const cow_String& pattern, const char* subject);

/// The pieces between matches. A piece before a match is left out when it is empty, the last one never is; what follows
/// a match is searched as a text of its own, at whose start ^ matches. A pattern that matches the empty text where a
/// piece starts would never come to an end and throws nex_TextException.
VEXOMU_API cow_1DArrayList<cow_String, cow_String> rgx_split(const cow_String& pattern, const cow_String& subject);

/// All parts with the separator between each two.
VEXOMU_API cow_String rgx_join(const cow_1DArrayList<cow_String, cow_String>& parts, const cow_String& separator);

/// The subject with up to `count` matches replaced; what follows a match is searched as a text of its own. In the
/// replacement, "$" and digits 1 to 9 stand for a group, "$&" for the match, "$`" and "$'" for what is before and after
/// it: always of the first match, whichever match is being replaced (promised, and must stay). Other dollar signs stand
/// for themselves. An empty match before a byte keeps that byte and goes on behind it.
VEXOMU_API cow_String rgx_subn(const cow_String& pattern, const cow_String& subject, const cow_String& replacement,
                               int count);
