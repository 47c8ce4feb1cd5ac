#include "omu_Text_detail.h"

#include "omu_PrimList.h"
#include "omu_PrimNumber.h"
#include "omu_PrimString.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <typeinfo>

namespace
{

constexpr int MAX_DIGITS = 15;

/// Significant digits of a number in fixed notation that is no whole number.
std::ptrdiff_t DigitsOf(std::string_view text)
{
    const std::size_t first = text.find_first_not_of("-0.");
    return static_cast<std::ptrdiff_t>(text.size() - first - (text.find('.') > first ? 1 : 0));
}

/// Writes what "%.15g" does at `text`; the result is its end. The shortest digits that read back equal are tried first:
/// where there are no more than fifteen they are the same, since a double holds any fifteen. That is cheaper for the
/// short numbers that scripts mostly show, and dearer for those that need all their digits.
char* WriteFifteenDigits(char* text, char* limit, double value)
{
    const double size = std::fabs(value);
    if (size >= 1e-4 && size < 1e15) { // where "%g" uses fixed notation
        char* const end = std::to_chars(text, limit, value, std::chars_format::fixed).ptr;
        if (DigitsOf({text, end}) <= MAX_DIGITS) {
            return end;
        }
    }
    return std::to_chars(text, limit, value, std::chars_format::general, MAX_DIGITS).ptr;
}

/// Writes a number that is no whole one and has at most six decimals and fifteen digits, as "%.15g" does; the result is
/// its end, or null for other numbers. Such a number is one integer divided by a million, which is exact enough to tell:
/// the division rounds correctly, as reading the digits would.
char* WriteShortDecimal(char* text, char* limit, double value)
{
    constexpr int DECIMALS = 6;
    constexpr std::int64_t SCALE = 1'000'000;
    const double size = std::fabs(value);
    if (!(size >= 1e-4 && size < 1e9)) { // where "%g" uses fixed notation, and fifteen digits are enough
        return nullptr;
    }
    const auto scaled = static_cast<std::int64_t>(size * SCALE + 0.5);
    if (static_cast<double>(scaled) / SCALE != size) {
        return nullptr;
    }
    *text = '-';
    char* const point = std::to_chars(text + (value < 0), limit, scaled / SCALE).ptr;
    *point = '.';
    char* end = point + 1 + DECIMALS;
    std::int64_t rest = scaled % SCALE;
    for (char* digit = end; digit != point + 1; rest /= 10) {
        *--digit = static_cast<char>('0' + rest % 10);
    }
    while (end[-1] == '0') {
        --end;
    }
    return end;
}

/// The first character that does not stand for itself between quotes, or npos.
std::size_t FindEscaped(std::string_view text)
{
    const auto isEscaped = [](char character) { return character == '\\' || character == '\'' || character == '\n'; };
    const auto found = std::find_if(text.begin(), text.end(), isEscaped);
    return found != text.end() ? static_cast<std::size_t>(found - text.begin()) : std::string_view::npos;
}

template <class Integer> void AppendInteger(std::string& text, Integer value)
{
    char digits[16];
    text.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

void AppendNumber(std::string& text, const omu_PrimNumber& number)
{
    if (number.IsType('f')) {
        omu_AppendDouble(text, number.GetValue());
    } else if (number.GetDataType() == omu_PrimNumber::UINT32) {
        AppendInteger(text, number.GetUnsigned());
    } else {
        AppendInteger(text, number.GetInt());
    }
}

} // namespace

void omu_AppendText(std::string& text, const omu_Primitive& value, int depth)
{
    // Exactly these classes: one derived from them may have another text. The code is asked first because classes that
    // differ are told apart by their names, character by character.
    const std::type_info& type = typeid(value);
    switch (value.TypeCode()) {
    case 'i':
    case 'f':
        if (type == typeid(omu_PrimNumber)) {
            AppendNumber(text, static_cast<const omu_PrimNumber&>(value));
            return;
        }
        break;
    case 's':
        if (type == typeid(omu_PrimString)) {
            omu_AppendQuoted(text, static_cast<const omu_PrimString&>(value).GetString());
            return;
        }
        break;
    case '(':
        if (type == typeid(omu_PrimTuple) || type == typeid(omu_PrimList)) {
            static_cast<const omu_PrimTuple&>(value).AppendItems(text, depth);
            return;
        }
        break;
    default:
        break;
    }
    text += value.AsString(depth).view();
}

void omu_AppendQuoted(std::string& text, std::string_view characters)
{
    text += '\'';
    for (;;) {
        const std::size_t plain = FindEscaped(characters);
        text += characters.substr(0, plain);
        if (plain == std::string_view::npos) {
            break;
        }
        text += '\\';
        text += characters[plain] == '\n' ? 'n' : characters[plain];
        characters.remove_prefix(plain + 1);
    }
    text += '\'';
}

void omu_AppendDouble(std::string& text, double value)
{
    // Whole numbers of at most 15 digits are most of what scripts show, and integers are several times faster to
    // write. Negative zero has to keep its sign.
    const bool isShortWhole =
        std::fabs(value) < 1e15 && value == std::trunc(value) && !(value == 0 && std::signbit(value));
    char digits[32];
    char* const limit = digits + sizeof digits;
    if (isShortWhole) {
        text.append(digits, std::to_chars(digits, limit, static_cast<std::int64_t>(value)).ptr);
        text += ".0";
    } else if (char* const shortEnd = WriteShortDecimal(digits, limit, value)) {
        text.append(digits, shortEnd);
    } else {
        const std::string_view written(digits, WriteFifteenDigits(digits, limit, value));
        text += written;
        text += written.find_first_of(".e") == std::string_view::npos ? ".0" : "";
    }
}
