#pragma once

#include "bio_Ifilter.h"
#include "bio_Ofilter.h"
#include "cow_String.h"
#include "pnt_PrettyPrint.h"

#include <algorithm>
#include <compare>
#include <cstddef>
#include <cstring>
#include <string_view>

/// Text of at most N bytes, held in the object itself. Of a longer text the first N bytes are kept; the rest
/// is dropped without a word.
///
/// Complexity: copies N bytes; never allocates.
/// Errors:     reading a text of more than N bytes from a stream throws nex_TextException: stored data is not
/// cut. Avoid for:  texts a user wrote; a cow_String loses nothing.
template <std::size_t N = 255> class omn_FixedString
{
public:
    static constexpr std::size_t MAX_LENGTH = N;

    omn_FixedString() noexcept = default;
    /// A null pointer gives the empty text.
    omn_FixedString(const char* text) noexcept { Append(text != nullptr ? text : ""); }
    omn_FixedString(std::string_view text) noexcept { Append(text); }

    /// The bytes, followed by a zero byte that does not count.
    const char* AsCharPtr() const noexcept { return m_bytes; }
    std::string_view view() const noexcept { return {m_bytes, m_length}; }
    operator std::string_view() const noexcept { return view(); }
    int Length() const noexcept { return static_cast<int>(m_length); }
    bool IsEmpty() const noexcept { return m_length == 0; }

    /// Appends what fits.
    void Append(std::string_view text) noexcept
    {
        const std::size_t taken = std::min(text.size(), N - m_length);
        std::memmove(m_bytes + m_length, text.data(), taken);
        m_length += taken;
        m_bytes[m_length] = '\0';
    }

    friend bool operator==(const omn_FixedString& left, const omn_FixedString& right) noexcept
    {
        return left.view() == right.view();
    }
    friend std::strong_ordering operator<=>(const omn_FixedString& left, const omn_FixedString& right) noexcept
    {
        return left.view() <=> right.view();
    }

    friend bio_Ofilter& operator<<(bio_Ofilter& out, const omn_FixedString& text) { return out << cow_String(text); }
    friend bio_Ifilter& operator>>(bio_Ifilter& in, omn_FixedString& text)
    {
        const std::uint64_t start = in.Offset();
        cow_String read;
        in >> read;
        if (read.size() > N) {
            in.FailAt("a text too long for its field", start);
        }
        text = omn_FixedString(read.view());
        return in;
    }
    friend pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const omn_FixedString& text)
    {
        return out << text.AsCharPtr();
    }

private:
    // Invariant: m_length <= N, and the byte behind the text is zero.
    std::size_t m_length = 0;
    char m_bytes[N + 1] = {};
};
