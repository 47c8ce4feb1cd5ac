#include "pnt_PrettyPrint.h"

#include "pnt_detail.h"

#include <algorithm>
#include <ostream>
#include <string_view>

namespace
{
constexpr int INDENT_STEP = 2;
constexpr std::string_view BLANKS = "                                ";
} // namespace

pnt_PrettyPrint::pnt_PrettyPrint(std::ostream& out) : m_out(out) {}

void pnt_PrettyPrint::Open(const char* name)
{
    NewLine();
    *this << '(' << name;
    Indent();
}

void pnt_PrettyPrint::Close()
{
    Outdent();
    NewLine();
    *this << ')';
}

void pnt_PrettyPrint::NewLine()
{
    if (m_started) {
        Write("\n");
    }
    m_started = true;
    for (std::size_t left = static_cast<std::size_t>(std::max(m_depth, 0)) * INDENT_STEP; left != 0;) {
        const std::size_t blanks = std::min(left, BLANKS.size());
        Write(BLANKS.substr(0, blanks));
        left -= blanks;
    }
}

pnt_PrettyPrint& pnt_PrettyPrint::operator<<(const char* text)
{
    Write(text != nullptr ? text : "");
    return *this;
}

pnt_PrettyPrint& pnt_PrettyPrint::operator<<(const cow_String& text)
{
    Write(text.view());
    return *this;
}

pnt_PrettyPrint& pnt_PrettyPrint::operator<<(char value)
{
    Write({&value, 1});
    return *this;
}

pnt_PrettyPrint& pnt_PrettyPrint::operator<<(int value)
{
    Write(pnt_detail::NumberText(value));
    return *this;
}

pnt_PrettyPrint& pnt_PrettyPrint::operator<<(unsigned int value)
{
    Write(pnt_detail::NumberText(value));
    return *this;
}

pnt_PrettyPrint& pnt_PrettyPrint::operator<<(double value)
{
    Write(pnt_detail::NumberText(value));
    return *this;
}

pnt_PrettyPrint& pnt_PrettyPrint::operator<<(float value)
{
    Write(pnt_detail::NumberText(value));
    return *this;
}

void pnt_PrettyPrint::Write(std::string_view text)
{
    m_started = true;
    m_out.write(text.data(), static_cast<std::streamsize>(text.size()));
}
