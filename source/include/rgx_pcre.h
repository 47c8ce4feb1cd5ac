#pragma once

#include "VEXomu_export.h"

/// Compiled pattern, with the memory its matches need.
struct real_pcre;
/// What studying found out about a pattern; a part of the pattern.
struct real_pcre_extra;

// The classic calls of the matching library. Option bits, result codes, error texts and version are those of PCRE2 (see
// pcre2.h); patterns and subjects are bytes, and a pattern or option that asks for UTF is refused.
//
// Ownership: a pattern belongs to whoever compiled it, until rgx_pcre_free.
// Threads:   a pattern serves one thread at a time; distinct patterns are independent.
// Errors:    results, never exceptions. Every match is limited in steps, depth and memory, so none runs on for ever.
extern "C" {

/// Compiles a zero-terminated pattern. Null when that fails: `error` is then its text, valid until the thread's next
/// failure, and `errorOffset` the place in the pattern.
VEXOMU_API real_pcre* rgx_pcre_compile(const char* pattern, int options, const char** error, int* errorOffset) noexcept;

/// Releases a pattern and its study data; null is allowed.
VEXOMU_API void rgx_pcre_free(real_pcre* code) noexcept;

/// Translates the pattern to machine code, which later matches use with or without the result at hand. Null when there is
/// nothing to gain (`error` is then null) or when it fails. Options: 0.
VEXOMU_API real_pcre_extra* rgx_pcre_study(const real_pcre* code, int options, const char** error) noexcept;

/// Matches `length` bytes. The result is the number of pairs of offsets set, one more than the highest group that took
/// part; 0 when `offsets` has room for fewer (those that fit are set, to the last pair); -1 when there is no match; other
/// negative numbers are errors. Offsets are -1 for groups that took no part.
/// Options: PCRE2_ANCHORED, _ENDANCHORED, _NOTBOL, _NOTEOL, _NOTEMPTY, _NOTEMPTY_ATSTART.
VEXOMU_API int rgx_pcre_exec(const real_pcre* code, const real_pcre_extra* extra, const char* subject, int length,
                             int options, int* offsets, int offsetCount) noexcept;

/// The number of groups, or an error. `options` gets the pattern's, those it sets itself included; `firstByte` what every
/// match starts with: a byte, -1 for the start of the subject or a line, -2 for anything. Both may be null.
VEXOMU_API int rgx_pcre_info(const real_pcre* code, int* options, int* firstByte) noexcept;

/// Number and date of the library's release.
VEXOMU_API const char* rgx_pcre_version() noexcept;
}
