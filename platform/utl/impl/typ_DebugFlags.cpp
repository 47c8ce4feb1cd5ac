#include "typ_DebugFlags.h"

#include "VEXcrt_System.h"

#include <charconv>

std::uint32_t typ_DebugFlags::GetDebugFlags()
{
    static const std::uint32_t flags = Parse(VEXCRT::GetEnvironment("VEXUTL_DEBUG").value_or(""));
    return flags;
}

int typ_DebugFlags::GetDebugFlags(int category)
{
    return category >= 0 && category < 32 ? static_cast<int>(GetDebugFlags() >> category & 1) : 0;
}

std::uint32_t typ_DebugFlags::Parse(std::string_view text) noexcept
{
    int base = 10;
    if (text.starts_with("0x") || text.starts_with("0X")) {
        base = 16;
        text.remove_prefix(2);
    }
    std::uint32_t flags = 0;
    const char* const end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, flags, base);
    return error == std::errc() && last == end ? flags : 0;
}
