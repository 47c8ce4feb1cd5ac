#pragma once

#include "cow_String.h"

#include <string_view>
#include <vector>

namespace uti_detail
{
/// A piece of a command text, with quotes and backslashes taken away.
struct CommandPiece
{
    enum Kind
    {
        WORD,
        OVERRIDE, ///< "NAME=value" before the first word
        FILE,     ///< where a stream goes; never empty
        STREAM    ///< "2>&1": the stream that the other one joins
    };

    Kind kind;
    cow_String text;
    cow_String symbol = {}; ///< of FILE and STREAM
};

/// Cuts a command text into pieces. Blanks separate words; '...' holds everything but its own mark; "..." too, and on
/// POSIX a backslash guards the next character, inside "..." only one of \ " $ `. Digits before < or > belong to the
/// symbol. Nothing else has a meaning: no variables, patterns, pipes. Throws nex_TextException for a quote without end
/// and for a symbol without target.
std::vector<CommandPiece> CutCommand(std::string_view text);
} // namespace uti_detail
