#include "rgx_funcs.h"

#include "nex_TextException.h"
#include "rgx_ReCompileCache.h"
#include "rgx_pcre_detail.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

namespace
{

constexpr const char* SOURCE = "source/rgx/impl/rgx_funcs";
constexpr const char* REFERENCE_PATTERN = "\\$([1-9]+|&|`|')";

const real_pcre& Compiled(const cow_String& pattern)
{
    return *static_cast<const real_pcre*>(omi_Singleton<rgx_ReCompileCache>::Instance().Get(pattern));
}

[[noreturn]] void ThrowExecError(int result)
{
    nex_TextException("rgx_match: exec error: " + cow_String(result)).Throw(SOURCE, 72);
}

/// Number of pairs of the match in `text`, 0 for none.
[[gnu::always_inline]] inline int Match(const real_pcre& compiled, std::string_view text)
{
    const int result = compiled.Match(text.data(), text.size());
    if (result < PCRE2_ERROR_NOMATCH) {
        ThrowExecError(result);
    }
    return std::max(result, 0);
}

/// The end of the text when it has none.
const char* FirstZeroByte(std::string_view text)
{
    const void* const zero = std::memchr(text.data(), '\0', text.size());
    return zero != nullptr ? static_cast<const char*>(zero) : text.data() + text.size();
}

/// What is left of a subject, from whose front matches are taken.
class Rest
{
public:
    explicit Rest(std::string_view subject)
        : m_front(subject.data()), m_searchedEnd(FirstZeroByte(subject)), m_end(subject.data() + subject.size())
    {}
    /// After its first match.
    Rest(std::string_view subject, const rgx_ReIterator& match) : Rest(subject)
    {
        SetMatch(static_cast<std::size_t>(match.Start(0)), static_cast<std::size_t>(match.End(0)));
    }

    /// Matches the pattern against what is left.
    bool Find(const real_pcre& compiled)
    {
        if (Match(compiled, {m_front, m_searchedEnd}) == 0) {
            return false;
        }
        SetMatch(compiled.offsets[0], compiled.offsets[1]);
        return true;
    }
    std::size_t Start() const noexcept { return m_start; }
    std::size_t End() const noexcept { return m_matchEnd; }

    std::string_view Text() const noexcept { return {m_front, m_end}; }
    std::string_view BeforeMatch() const noexcept { return {m_front, m_start}; }
    std::string_view Matched() const noexcept { return {m_front + m_start, m_front + m_matchEnd}; }

    void Drop(std::size_t count)
    {
        m_front += count;
        if (m_front > m_searchedEnd) {
            m_searchedEnd = FirstZeroByte(Text()); // a zero byte was dropped
        }
    }

private:
    void SetMatch(std::size_t start, std::size_t end) noexcept
    {
        m_start = start;
        m_matchEnd = std::max(start, end); // a group that a lookahead calls may move the start behind the end
    }

    const char* m_front;
    const char* m_searchedEnd; // the first zero byte, if there is one
    const char* m_end;
    std::size_t m_start = 0; // of the last match
    std::size_t m_matchEnd = 0;
};

/// The replacement with its references replaced by texts of `match`.
cow_String Expanded(const cow_String& replacement, const rgx_ReIterator& match)
{
    Rest rest(replacement);
    cow_String expanded;
    for (const real_pcre& reference = Compiled(REFERENCE_PATTERN); rest.Find(reference); rest.Drop(rest.End())) {
        const cow_String text = rest.Matched();
        const std::size_t all[] = {0, text.size(), 1, text.size()};
        rgx_ReIterator number(text, all, 2);
        number.Next();
        expanded += rest.BeforeMatch();
        expanded += match.NthString(number.StringAsGroupNum());
    }
    expanded += rest.Text();
    return expanded;
}

} // namespace

rgx_ReIterator rgx_match(const cow_String& pattern, const cow_String& subject)
{
    const real_pcre& compiled = Compiled(pattern);
    const std::string_view text(subject.begin(), FirstZeroByte(subject));
    const int pairs = Match(compiled, text);
    if (pairs == 0) {
        return {};
    }
    return {text.size() == subject.size() ? subject : cow_String(text), compiled.offsets, pairs};
}

rgx_ReIterator rgx_match(const cow_String& pattern, const char* subject)
{
    return rgx_match(pattern, cow_String(subject));
}

cow_1DArrayList<cow_String, cow_String> rgx_split(const cow_String& pattern, const cow_String& subject)
{
    const real_pcre& compiled = Compiled(pattern);
    cow_1DArrayList<cow_String, cow_String> pieces;
    Rest rest(subject);
    while (rest.Find(compiled)) {
        if (rest.Start() > 0) {
            pieces.Append(rest.BeforeMatch());
        }
        if (rest.End() == 0) {
            nex_TextException("rgx_split: pattern matches the empty string").Throw(SOURCE, __LINE__);
        }
        rest.Drop(rest.End());
    }
    pieces.Append(rest.Text().size() == subject.size() ? subject : cow_String(rest.Text()));
    return pieces;
}

cow_String rgx_join(const cow_1DArrayList<cow_String, cow_String>& parts, const cow_String& separator)
{
    std::size_t length = parts.IsEmpty() ? 0 : (parts.size() - 1) * separator.size();
    for (const cow_String& part : parts) {
        length += part.size();
    }
    cow_String joined;
    joined.Reserve(length);
    for (int i = 0; i < parts.Length(); ++i) {
        joined += i != 0 ? separator.view() : std::string_view();
        joined += parts[i];
    }
    return joined;
}

cow_String rgx_subn(const cow_String& pattern, const cow_String& subject, const cow_String& replacement, int count)
{
    const rgx_ReIterator first = rgx_match(pattern, subject);
    if (!first.IsMatched() || count < 1) {
        return subject;
    }
    const cow_String expansion = Expanded(replacement, first);
    const std::string_view expanded = expansion;
    const real_pcre& compiled = Compiled(pattern); // again: the references' pattern may have pushed it out
    std::string result;                            // whose appending is inlined
    result.reserve(subject.size());
    Rest rest(subject, first);
    for (int n = 1; !rest.Text().empty(); ++n) {
        result += rest.BeforeMatch();
        result += expanded;
        if (rest.End() == 0) {
            result += rest.Text().front();
        }
        rest.Drop(std::max<std::size_t>(rest.End(), 1));
        if (n == count || !rest.Find(compiled)) {
            result += rest.Text();
            return std::string_view(result);
        }
    }
    result += expanded; // for the empty match at the very end
    return std::string_view(result);
}
