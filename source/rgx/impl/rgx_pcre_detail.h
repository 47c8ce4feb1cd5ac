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

/// Unset ones become -1. The few pairs of most patterns are copied without a loop, whose jumps are felt beside a match.
inline void CopyOffsets(const PCRE2_SIZE* from, int pairs, int* to) noexcept
{
    const auto copyPair = [=](int pair) {
        to[2 * pair] = static_cast<int>(from[2 * pair]);
        to[2 * pair + 1] = static_cast<int>(from[2 * pair + 1]);
    };
    if (pairs > 0) {
        copyPair(0);
    }
    if (pairs > 1) {
        copyPair(1);
    }
    if (pairs > 2) {
        copyPair(2);
    }
    for (int pair = 3; pair < pairs; ++pair) {
        copyPair(pair);
    }
}

} // namespace rgx_detail

struct real_pcre_extra
{
    bool isTranslated = false; // to machine code
};

struct real_pcre
{
    /// Matches bytes that are not null; the result is that of pcre2_match.
    int Match(const char* subject, std::size_t length) const
    {
        if (!extra.isTranslated) [[unlikely]] {
            return MatchWith(0, subject, length);
        }
        const int result =
            pcre2_jit_match(code.get(), reinterpret_cast<PCRE2_SPTR>(subject), length, 0, 0, data.get(), context.get());
        if (result == PCRE2_ERROR_JIT_STACKLIMIT) [[unlikely]] {
            return MatchInterpreted(0, subject, length);
        }
        return result;
    }
    /// The same with option bits, which were checked.
    int MatchWith(std::uint32_t options, const char* subject, std::size_t length) const;

    rgx_detail::Owned<pcre2_code> code;
    rgx_detail::Owned<pcre2_match_data> data; // room for every group of the pattern
    rgx_detail::Owned<pcre2_match_context> context;
    rgx_detail::Owned<pcre2_jit_stack> stack; // for machine code; null: the machine's own
    const PCRE2_SIZE* offsets = nullptr;      // of the last match; in `data`
    int pairs = 0;                            // pairs of offsets
    std::uint32_t ownOptions = 0;             // beside those asked for
    mutable real_pcre_extra extra;            // studying and matching leave the pattern as it is to its users

private:
    int MatchInterpreted(std::uint32_t options, const char* subject, std::size_t length) const;
};
