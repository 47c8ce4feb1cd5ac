#include "rgx_pcre.h"

#include "rgx_pcre_detail.h"

#include <algorithm>
#include <new>

namespace
{

// What a match may cost before it ends in an error: steps, nested choices and memory of the interpreter.
constexpr std::uint32_t MATCH_LIMIT = 10'000'000;
constexpr std::uint32_t DEPTH_LIMIT = 1'000'000;
constexpr std::uint32_t HEAP_LIMIT_KIB = 256 * 1024;
// Stack of the machine code: what is there at first, and what is only reserved until a match needs it.
constexpr std::size_t START_STACK_BYTES = 32 * 1024;
constexpr std::size_t MAX_STACK_BYTES = 1024 * 1024;

constexpr std::uint32_t EXEC_OPTIONS =
    PCRE2_ANCHORED | PCRE2_ENDANCHORED | PCRE2_NOTBOL | PCRE2_NOTEOL | PCRE2_NOTEMPTY | PCRE2_NOTEMPTY_ATSTART;

const char* ErrorText(int error) noexcept
{
    thread_local char text[256];
    pcre2_get_error_message(error, reinterpret_cast<PCRE2_UCHAR*>(text), sizeof text);
    return text;
}

/// The last character of a class of characters, from its opening bracket on.
const char* ClassEnd(const char* at) noexcept
{
    at += at[1] == '^' ? 1 : 0;
    at += at[1] == ']' ? 1 : 0;
    while (at[1] != '\0' && *++at != ']') {
        at += *at == '\\' && at[1] != '\0' ? 1 : 0;
    }
    return at;
}

/// Whether something may be repeated behind a group with alternatives: machine code of releases before 10.43 then skips
/// places that match, such as the start of "b" for (b|)a*b, unless it is to try every place.
bool IsSkippedByMachineCode(const char* pattern) noexcept
{
    bool hasAlternatives = false;
    int open = 0;
    for (const char* at = pattern; *at != '\0'; ++at) {
        if (*at == '\\' && at[1] != '\0') {
            ++at; // what is escaped means nothing here
        } else if (*at == '[') {
            at = ClassEnd(at);
        } else if (*at == '*' || *at == '+' || *at == '{') {
            if (hasAlternatives) {
                return true;
            }
        } else {
            open += *at == '(' ? 1 : *at == ')' ? -1 : 0;
            hasAlternatives = hasAlternatives || (*at == '|' && open > 0);
        }
    }
    return false;
}

/// Options that a pattern needs beside those that are asked for.
std::uint32_t OwnOptions(const char* pattern) noexcept
{
    constexpr bool isFixed = PCRE2_MAJOR > 10 || PCRE2_MINOR >= 43;
    return PCRE2_NEVER_UTF | (!isFixed && IsSkippedByMachineCode(pattern) ? PCRE2_NO_START_OPTIMIZE : 0);
}

template <class T> void Tell(T* place, T value) noexcept
{
    if (place != nullptr) {
        *place = value;
    }
}

/// Gives the pattern what its matches need; false when memory is short.
bool Equip(real_pcre& pattern) noexcept
{
    pattern.data.reset(pcre2_match_data_create_from_pattern(pattern.code.get(), nullptr));
    pattern.context.reset(pcre2_match_context_create(nullptr));
    if (!pattern.data || !pattern.context) {
        return false;
    }
    pcre2_set_match_limit(pattern.context.get(), MATCH_LIMIT);
    pcre2_set_depth_limit(pattern.context.get(), DEPTH_LIMIT);
    pcre2_set_heap_limit(pattern.context.get(), HEAP_LIMIT_KIB);
    pattern.stack.reset(pcre2_jit_stack_create(START_STACK_BYTES, MAX_STACK_BYTES, nullptr));
    pcre2_jit_stack_assign(pattern.context.get(), nullptr, pattern.stack.get());
    pattern.offsets = pcre2_get_ovector_pointer(pattern.data.get());
    pattern.pairs = static_cast<int>(pcre2_get_ovector_count(pattern.data.get()));
    return true;
}

template <class T> T Info(const real_pcre& pattern, std::uint32_t what) noexcept
{
    T value{};
    pcre2_pattern_info(pattern.code.get(), what, &value);
    return value;
}

} // namespace

int real_pcre::MatchWith(std::uint32_t options, const char* subject, std::size_t length) const
{
    const int result =
        pcre2_match(code.get(), reinterpret_cast<PCRE2_SPTR>(subject), length, 0, options, data.get(), context.get());
    return result != PCRE2_ERROR_JIT_STACKLIMIT ? result : MatchInterpreted(options, subject, length);
}

int real_pcre::MatchInterpreted(std::uint32_t options, const char* subject, std::size_t length) const
{
    // Match data of its own: the interpreter's memory, which may be much, would stay with the pattern's.
    const rgx_detail::Owned<pcre2_match_data> own(pcre2_match_data_create_from_pattern(code.get(), nullptr));
    if (!own) {
        return PCRE2_ERROR_NOMEMORY;
    }
    const int result = pcre2_match(code.get(), reinterpret_cast<PCRE2_SPTR>(subject), length, 0, options | PCRE2_NO_JIT,
                                   own.get(), context.get());
    std::copy_n(pcre2_get_ovector_pointer(own.get()), 2 * pairs, pcre2_get_ovector_pointer(data.get()));
    return result;
}

real_pcre* rgx_pcre_compile(const char* pattern, int options, const char** error, int* errorOffset) noexcept
{
    int failure = PCRE2_ERROR_NOMEMORY;
    PCRE2_SIZE offset = 0;
    std::unique_ptr<real_pcre> compiled(new (std::nothrow) real_pcre);
    if (compiled) {
        pattern = pattern != nullptr ? pattern : "";
        const auto asked = static_cast<std::uint32_t>(options);
        compiled->ownOptions = OwnOptions(pattern) & ~asked;
        compiled->code.reset(pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern), PCRE2_ZERO_TERMINATED,
                                           asked | compiled->ownOptions, &failure, &offset, nullptr));
    }
    if (compiled && compiled->code) {
        if (Equip(*compiled)) {
            return compiled.release();
        }
        failure = PCRE2_ERROR_NOMEMORY;
    }
    Tell(error, ErrorText(failure));
    Tell(errorOffset, static_cast<int>(offset));
    return nullptr;
}

void rgx_pcre_free(real_pcre* code) noexcept
{
    delete code;
}

real_pcre_extra* rgx_pcre_study(const real_pcre* code, int options, const char** error) noexcept
{
    int result = PCRE2_ERROR_NULL;
    if (options != 0) {
        result = PCRE2_ERROR_BADOPTION;
    } else if (code != nullptr) {
        result = pcre2_jit_compile(code->code.get(), PCRE2_JIT_COMPLETE);
        // The pattern may forbid machine code, or use what has none.
        code->extra.isTranslated = result == 0 && Info<std::size_t>(*code, PCRE2_INFO_JITSIZE) != 0;
    }
    const bool isFailure = code == nullptr || options != 0 || result == PCRE2_ERROR_NOMEMORY;
    Tell(error, isFailure ? ErrorText(result) : nullptr);
    return !isFailure && code->extra.isTranslated ? &code->extra : nullptr;
}

int rgx_pcre_exec(const real_pcre* code, const real_pcre_extra*, const char* subject, int length, int options,
                  int* offsets, int offsetCount) noexcept
{
    if (code == nullptr || subject == nullptr || (offsets == nullptr && offsetCount != 0)) {
        return PCRE2_ERROR_NULL;
    }
    if ((length | offsetCount) < 0) {
        return PCRE2_ERROR_BADDATA;
    }
    int result = 0;
    if (options == 0) [[likely]] {
        result = code->Match(subject, static_cast<std::size_t>(length));
    } else if ((static_cast<std::uint32_t>(options) & ~EXEC_OPTIONS) != 0) {
        return PCRE2_ERROR_BADOPTION;
    } else {
        result = code->MatchWith(static_cast<std::uint32_t>(options), subject, static_cast<std::size_t>(length));
    }
    if (result < 0) {
        return result;
    }
    const int room = static_cast<int>(static_cast<unsigned int>(offsetCount) / 2);
    rgx_detail::CopyOffsets(code->offsets, std::min(code->pairs, room), offsets);
    return result <= room ? result : 0;
}

int rgx_pcre_info(const real_pcre* code, int* options, int* firstByte) noexcept
{
    if (code == nullptr) {
        return PCRE2_ERROR_NULL;
    }
    const auto all = Info<std::uint32_t>(*code, PCRE2_INFO_ALLOPTIONS);
    Tell(options, static_cast<int>(all & ~code->ownOptions));
    switch (Info<std::uint32_t>(*code, PCRE2_INFO_FIRSTCODETYPE)) {
    case 1:
        Tell(firstByte, static_cast<int>(Info<std::uint32_t>(*code, PCRE2_INFO_FIRSTCODEUNIT)));
        break;
    case 2:
        Tell(firstByte, -1);
        break;
    default:
        Tell(firstByte, -2);
    }
    return static_cast<int>(Info<std::uint32_t>(*code, PCRE2_INFO_CAPTURECOUNT));
}

const char* rgx_pcre_version() noexcept
{
    static const struct Version
    {
        Version() noexcept { pcre2_config(PCRE2_CONFIG_VERSION, text); }
        char text[64] = {};
    } version;
    return version.text;
}
