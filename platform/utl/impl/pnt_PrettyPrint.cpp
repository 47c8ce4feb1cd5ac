#include "pnt_PrettyPrint.h"

#include "pnt_detail.h"

#include <ostream>
#include <string_view>

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
    if (m_newLine) {
        StartLine();
    }
    m_out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

void pnt_PrettyPrint::StartLine()
{
    m_newLine = false;
    if (m_started) {
        m_out.put('\n');
    }
    m_started = true;
    for (int level = 0; level < m_depth; ++level) {
        m_out.write("  ", 2);
    }
}
