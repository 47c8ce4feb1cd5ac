#pragma once

#include "rgx_pcre.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <cstddef>
#include <cstdint>
#include <memory>

namespace rgx_detail
{

struct Release
{
    void operator()(pcre2_code* code) const noexcept { pcre2_code_free(code); }
    void operator()(pcre2_match_data* data) const noexcept { pcre2_match_data_free(data); }
    void operator()(pcre2_match_context* context) const noexcept { pcre2_match_context_free(context); }
    void operator()(pcre2_jit_stack* stack) const noexcept { pcre2_jit_stack_free(stack); }
};
template <class T> using Owned = std::unique_ptr<T, Release>;

/// Unset ones become -1. A pair at a time, since most patterns have few.
inline void CopyOffsets(const PCRE2_SIZE* from, int pairs, int* to) noexcept
{
    for (const PCRE2_SIZE* const end = from + 2 * pairs; from != end; from += 2, to += 2) {
        to[0] = static_cast<int>(from[0]);
        to[1] = static_cast<int>(from[1]);
    }
}

} // namespace rgx_detail

struct real_pcre_extra
{
    bool isTranslated = false; // to machine code
};

struct real_pcre
{
    /// Matches bytes that are not null with option bits already checked; the result is that of pcre2_match.
    int Match(const char* subject, std::size_t length, std::uint32_t matchOptions = 0) const
    {
        const auto* const bytes = reinterpret_cast<PCRE2_SPTR>(subject);
        int result = 0;
        if (matchOptions == 0 && extra.isTranslated) [[likely]] {
            result = pcre2_jit_match(code.get(), bytes, length, 0, 0, data.get(), context.get());
        } else {
            result = pcre2_match(code.get(), bytes, length, 0, matchOptions, data.get(), context.get());
        }
        return result != PCRE2_ERROR_JIT_STACKLIMIT ? result : MatchInterpreted(subject, length, matchOptions);
    }

    rgx_detail::Owned<pcre2_code> code;
    rgx_detail::Owned<pcre2_match_data> data; // room for every group of the pattern
    rgx_detail::Owned<pcre2_match_context> context;
    rgx_detail::Owned<pcre2_jit_stack> stack; // for machine code; null: the machine's own
    const PCRE2_SIZE* offsets = nullptr;      // of the last match; in `data`
    int pairs = 0;                            // pairs of offsets
    std::uint32_t ownOptions = 0;             // beside those asked for
    mutable real_pcre_extra extra;            // studying and matching leave the pattern as it is to its users

private:
    int MatchInterpreted(const char* subject, std::size_t length, std::uint32_t matchOptions) const;
};
