#include "uti_NumFormat.h"

#include "VEXCRT.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <iterator>
#include <string_view>
#include <system_error>

namespace
{
constexpr const char* SOURCE = "source/uti/impl/uti_NumFormat";

constexpr int MANTISSA_DIGITS = 3;                // before the point of the engineering notation, at most
constexpr int POINT_COLUMN = 1 + MANTISSA_DIGITS; // behind the sign
constexpr int EXPONENT_WIDTH = 4;                 // "E+03"
constexpr int SMALLEST_DECIMALS = 1100;           // with so many decimals no double but 0 is written as zeros

/// A text under construction: as long as any number gets, and never longer.
class Buffer
{
public:
    /// The number as printf writes it with "% f", "% E" or "% G".
    void AppendNumber(double value, std::chars_format format, int digits)
    {
        if (!std::signbit(value)) {
            *m_end++ = ' ';
        }
        if (!std::isfinite(value)) {
            AppendNotFinite(value, format != std::chars_format::fixed);
            return;
        }
        char* const start = m_end;
        m_end = std::to_chars(m_end, std::end(m_bytes), value, format, digits).ptr;
        if (char* const exponent = static_cast<char*>(
                format == std::chars_format::fixed ? nullptr : std::memchr(start, 'e', End(start)))) {
            *exponent = 'E';
        }
    }

    void Append(std::string_view text) { m_end = std::copy(text.begin(), text.end(), m_end); }
    void AppendExponent(int exponent)
    {
        Append(exponent < 0 ? "E-" : "E+");
        const int size = std::abs(exponent);
        Append(size < 10 ? "0" : "");
        m_end = std::to_chars(m_end, std::end(m_bytes), size).ptr;
    }
    void InsertPointBefore(std::size_t position)
    {
        std::memmove(m_bytes + position + 1, m_bytes + position, View().size() - position);
        m_bytes[position] = '.';
        ++m_end;
    }
    void TrimRight(char character)
    {
        while (m_end != m_bytes && m_end[-1] == character) {
            --m_end;
        }
    }
    /// Blanks in front, until the text is `width` long.
    void PadLeft(int width)
    {
        const std::size_t length = View().size();
        const std::size_t wanted = static_cast<std::size_t>(std::max(width, 0));
        if (length < wanted) {
            std::memmove(m_bytes + (wanted - length), m_bytes, length);
            std::memset(m_bytes, ' ', wanted - length);
            m_end += wanted - length;
        }
    }

    std::string_view View() const noexcept { return {m_bytes, End(m_bytes)}; }

private:
    std::size_t End(const char* start) const noexcept { return static_cast<std::size_t>(m_end - start); }
    void AppendNotFinite(double value, bool isUpperCase)
    {
        Append(std::signbit(value) ? "-" : "");
        const bool isNan = std::isnan(value);
        Append(isUpperCase ? (isNan ? "NAN" : "INF") : (isNan ? "nan" : "inf"));
    }

    // Up to 309 digits before a point or MAX_PRECISION and an exponent, with sign, point and padding.
    char m_bytes[uti_NumFormat::MAX_PRECISION + 400];
    char* m_end = m_bytes;
};

/// As atof in the C locale.
double ReadBack(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    double value = 0.0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec == std::errc::result_out_of_range && text.find("E-") == std::string_view::npos) {
        value = text[0] == '-' ? -HUGE_VAL : HUGE_VAL; // the largest numbers rounded up
    }
    return value;
}
} // namespace

void uti_NumFormat::RestoreDefaults() noexcept
{
    *this = {AUTOMATIC, 6};
}

int uti_NumFormat::Digits() const noexcept
{
    return std::clamp(m_precision, 0, MAX_PRECISION);
}

/// As the printed text with that many decimals would tell.
bool uti_NumFormat::RoundsToZero(double value) const
{
    if (!(std::fabs(value) < 1.0)) {
        return false;
    }
    char text[SMALLEST_DECIMALS + 8];
    const int decimals = std::min(m_zeroDecimals, SMALLEST_DECIMALS);
    char* const end = std::to_chars(text, std::end(text), std::fabs(value), std::chars_format::fixed, decimals).ptr;
    return std::string_view(text, static_cast<std::size_t>(end - text)).find_first_not_of("0.") ==
           std::string_view::npos;
}

cow_String uti_NumFormat::Format(double value) const
{
    if (m_zeroDecimals > 0 && RoundsToZero(value)) {
        value = 0.0;
    }
    cow_String text;
    switch (m_notation) {
    case AUTOMATIC:
        text = FormatAutomatic(value);
        break;
    case ENGINEERING:
        text = FormatEngineering(value);
        break;
    case SCIENTIFIC:
        text = FormatScientific(value);
        break;
    default:
        return "Format Error";
    }
    if (!m_keepPadding) {
        text.Trim(" ");
    }
    return text;
}

cow_String uti_NumFormat::Format(float value) const
{
    if (m_zeroDecimals != 0) {
        VEXCRT::_assert("\"Precision computation not implemented for float\" == 0", SOURCE, 69);
    }
    return Format(static_cast<double>(value));
}

double uti_NumFormat::FormatDigits(double value) const
{
    return ReadBack(Format(value));
}

double uti_NumFormat::FormatDigits(double value, double low, double high) const
{
    const double rounded = FormatDigits(value);
    return rounded <= low ? low : rounded >= high ? high : rounded;
}

float uti_NumFormat::FormatDigits(float value) const
{
    return static_cast<float>(ReadBack(Format(value)));
}

cow_String uti_NumFormat::FormatScientific(double value) const
{
    Buffer text;
    text.AppendNumber(value, std::chars_format::scientific, Digits());
    text.PadLeft(Digits() + 6);
    if (Digits() == 0 && std::isfinite(value)) {
        text.Append("."); // behind the exponent: promised, and it must stay
    }
    return text.View();
}

cow_String uti_NumFormat::FormatAutomatic(double value) const
{
    Buffer text;
    text.AppendNumber(value, std::chars_format::general, Digits());
    text.PadLeft(Digits() + 6);
    if (std::isfinite(value) && text.View().find('.') == std::string_view::npos) {
        text.InsertPointBefore(std::min(text.View().find('E'), text.View().size()));
    }
    return text.View();
}

cow_String uti_NumFormat::FormatEngineering(double value) const
{
    Buffer text;
    if (!std::isfinite(value)) {
        text.AppendNumber(value, std::chars_format::fixed, 0);
        return PointString(text.View(), POINT_COLUMN);
    }
    // Step by step, and not by one power: these are the digits that are promised.
    int exponent = 0;
    double mantissa = value;
    if (std::fabs(mantissa) >= 1.0) {
        for (; std::fabs(mantissa) >= 1000.0; exponent += 3) {
            mantissa *= 0.001;
        }
    } else if (mantissa != 0.0) {
        for (; std::fabs(mantissa) < 1.0; exponent -= 3) {
            mantissa *= 1000.0;
        }
    }
    int integerDigits = 1;
    for (double rest = std::fabs(mantissa) * 0.1; rest >= 1.0 && integerDigits < MANTISSA_DIGITS; rest *= 0.1) {
        ++integerDigits;
    }
    const int decimals = Digits() - integerDigits;
    text.AppendNumber(mantissa, std::chars_format::fixed, std::max(decimals, 0));
    if (decimals <= 0) {
        text.Append(".");
    } else {
        text.TrimRight('0');
    }
    if (exponent != 0) {
        text.AppendExponent(exponent);
    }
    return PointString(text.View(), POINT_COLUMN);
}

/// Pads the text so that its point stands at `column`, and to the width of the longest text of this precision.
cow_String uti_NumFormat::PointString(const cow_String& text, int column) const
{
    const int point = text.Find(".");
    const int before = std::max(column - (point < 0 ? text.Length() : point), 0);
    const int width = column + 1 + std::max(Digits() - 1, 0) + EXPONENT_WIDTH;
    const int behind = std::max(width - before - text.Length(), 0);
    cow_String padded;
    padded.Reserve(static_cast<std::size_t>(before + text.Length() + behind));
    constexpr std::string_view BLANKS = "                ";
    const auto appendBlanks = [&](int count) {
        for (; count > 0; count -= static_cast<int>(BLANKS.size())) {
            padded.Append(BLANKS.substr(0, static_cast<std::size_t>(count)));
        }
    };
    appendBlanks(before);
    padded.Append(text);
    appendBlanks(behind);
    return padded;
}
