#include "pnt_debugPrint.h"

#include "pnt_detail.h"
#include "typ_DebugFlags.h"

#include <iostream>
#include <string>

pnt_DebugPrint& pnt_debugPrint()
{
    static pnt_DebugPrint print((typ_DebugFlags::GetDebugFlags() & 1) != 0);
    return print;
}

void pnt_DebugPrint::StartDebug(const char* source, int line)
{
    m_started.fetch_add(1, std::memory_order_relaxed);
    if (source != nullptr) {
        Write(std::string(source) + ':' + std::to_string(line) + ": ");
    }
}

void pnt_DebugPrint::EndDebug() noexcept
{
    int started = m_started.load(std::memory_order_relaxed);
    while (started > 0 && !m_started.compare_exchange_weak(started, started - 1, std::memory_order_relaxed)) {
    }
}

void pnt_DebugPrint::SetStream(std::ostream* stream)
{
    const std::lock_guard lock(m_mutex);
    m_stream = stream;
}

pnt_DebugPrint& pnt_DebugPrint::operator<<(const char* text)
{
    Write(text != nullptr ? text : "");
    return *this;
}

pnt_DebugPrint& pnt_DebugPrint::operator<<(const cow_String& text)
{
    Write(text.view());
    return *this;
}

pnt_DebugPrint& pnt_DebugPrint::operator<<(char value)
{
    Write({&value, 1});
    return *this;
}

pnt_DebugPrint& pnt_DebugPrint::operator<<(int value)
{
    Write(pnt_detail::NumberText(value));
    return *this;
}

pnt_DebugPrint& pnt_DebugPrint::operator<<(unsigned int value)
{
    Write(pnt_detail::NumberText(value));
    return *this;
}

pnt_DebugPrint& pnt_DebugPrint::operator<<(double value)
{
    Write(pnt_detail::NumberText(value));
    return *this;
}

void pnt_DebugPrint::Write(std::string_view text)
{
    if (!IsOn()) {
        return;
    }
    const std::lock_guard lock(m_mutex);
    std::ostream& stream = m_stream != nullptr ? *m_stream : std::cout;
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
}
