#pragma once

#include "VEXutl_export.h"

#include <cstdint>
#include <string_view>

/// The switches of debugging output, taken from the environment variable VEXUTL_DEBUG: a number, decimal or
/// with 0x hexadecimal, whose bit 0 switches the debugging text on and whose bit n switches on the reports of
/// category n.
///
/// Threads: read once, on the first call; any thread may ask.
class VEXUTL_API typ_DebugFlags
{
public:
    /// All switches; 0 when the variable is absent or not a 32-bit number.
    static std::uint32_t GetDebugFlags();
    /// The level of one category: 1 when it is switched on, else 0, also for a category other than 0 to 31.
    static int GetDebugFlags(int category);
    /// The number `text` holds by the rules above, or 0.
    static std::uint32_t Parse(std::string_view text) noexcept;
};
