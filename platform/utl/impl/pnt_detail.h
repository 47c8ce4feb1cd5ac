#pragma once

#include <charconv>
#include <cstddef>
#include <string_view>

namespace pnt_detail
{
/// The text of a number without a stream's locale and flags; floating values as the shortest text that reads
/// back equal.
class NumberText
{
public:
    template <class T> explicit NumberText(T value) : m_end(std::to_chars(m_text, m_text + sizeof m_text, value).ptr) {}
    operator std::string_view() const { return {m_text, static_cast<std::size_t>(m_end - m_text)}; }

private:
    char m_text[32];
    char* m_end;
};
} // namespace pnt_detail
