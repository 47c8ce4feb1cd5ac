#include "omu_TextRepr.h"

#include "omu_InterfaceObj.h"

#include <algorithm>
#include <optional>
#include <string_view>

template class omi_SingletonBase<omu_TextRepr>;
template class omi_Singleton<omu_TextRepr>;

namespace
{

/// At most this many bytes of a formatted text are shown.
constexpr std::size_t MAX_LENGTH = 255;

/// A "%s" with its flags, width and precision.
struct Conversion
{
    std::size_t length = 0; // of the conversion itself
    bool alignsLeft = false;
    std::size_t width = 0;
    std::size_t precision = MAX_LENGTH;
};

/// Reads digits at `position`, which moves past them; numbers above MAX_LENGTH make no difference and count as it.
std::size_t ReadNumber(std::string_view text, std::size_t& position)
{
    std::size_t number = 0;
    for (; position < text.size() && text[position] >= '0' && text[position] <= '9'; ++position) {
        number = std::min(number * 10 + static_cast<std::size_t>(text[position] - '0'), MAX_LENGTH);
    }
    return number;
}

/// The conversion that `text`, which starts with a percent sign, starts with.
std::optional<Conversion> ParseConversion(std::string_view text)
{
    Conversion conversion;
    std::size_t position = std::min(text.find_first_not_of("-+ #0", 1), text.size());
    conversion.alignsLeft = text.substr(0, position).find('-') != std::string_view::npos;
    conversion.width = ReadNumber(text, position);
    if (position < text.size() && text[position] == '.') {
        ++position;
        conversion.precision = ReadNumber(text, position);
    }
    if (position == text.size() || text[position] != 's') {
        return std::nullopt;
    }
    conversion.length = position + 1;
    return conversion;
}

void AppendConverted(cow_String& text, const Conversion& conversion, std::string_view argument)
{
    const std::string_view shown = argument.substr(0, conversion.precision);
    cow_String padding;
    for (std::size_t length = shown.size(); length < conversion.width; ++length) {
        padding.Append(' ');
    }
    text.Append(conversion.alignsLeft ? shown : padding.view());
    text.Append(conversion.alignsLeft ? padding.view() : shown);
}

/// `format` with `argument` in place of its first conversion. The format comes from a user: printf must not see it.
cow_String Format(std::string_view format, std::string_view argument)
{
    cow_String text;
    bool isConverted = false;
    while (!format.empty() && text.size() < MAX_LENGTH) {
        std::size_t consumed = 1;
        if (format.starts_with("%%")) {
            text.Append('%');
            consumed = 2;
        } else if (const auto conversion = isConverted || format[0] != '%' ? std::nullopt : ParseConversion(format)) {
            AppendConverted(text, *conversion, argument);
            consumed = conversion->length;
            isConverted = true;
        } else {
            text.Append(format[0]);
        }
        format.remove_prefix(consumed);
    }
    return text.Substring(0, static_cast<int>(MAX_LENGTH));
}

} // namespace

cow_String omu_TextRepr::GetMaxRecursionString(const omu_InterfaceObj* object) const
{
    if (object == nullptr) {
        return m_maxRecursionString;
    }
    return "'" + Format(m_maxRecursionString, object->ExposedTypeName()) + "'";
}
