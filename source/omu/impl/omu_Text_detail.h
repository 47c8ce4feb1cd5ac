#pragma once

#include <string>
#include <string_view>

class omu_Primitive;

// Texts of containers are put together in a std::string: its appending is inlined, and the pieces are short.

/// Appends the value's AsString(depth); numbers and strings, of which most containers consist, without a text of their
/// own in between.
void omu_AppendText(std::string& text, const omu_Primitive& value, int depth);

/// Appends `characters` as a script writes a string: in single quotes, with backslash, quote and line feed escaped.
void omu_AppendQuoted(std::string& text, std::string_view characters);

/// Appends a floating number as a script shows it: 15 digits at most, ".0" after a whole number.
void omu_AppendDouble(std::string& text, double value);
