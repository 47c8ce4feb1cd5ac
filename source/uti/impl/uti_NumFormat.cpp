#include "uti_NumFormat.h"

#include "VEXCRT.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
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

// Numbers of up to so many digits are mostly written by one multiplication, which takes a fifth of what to_chars takes.
constexpr int QUICK_DIGITS = 9;
constexpr int NOT_KNOWN = -1;

// The powers of ten that a double holds exactly.
constexpr double POWERS[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                             1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

/// `size` * 10^power as an integer, rounded as its text would be; NOT_KNOWN when that is no quick number, or so close to a
/// half that the rounding of the product may hide on which side.
std::int64_t Scaled(double size, int power)
{
    constexpr double TOO_LARGE = 1e10;
    constexpr double TOO_CLOSE = 1e-5; // the product is off by at most a tenth of it
    if (std::abs(power) >= std::ssize(POWERS)) {
        return NOT_KNOWN;
    }
    const double scaled = power < 0 ? size / POWERS[-power] : size * POWERS[power];
    if (scaled >= TOO_LARGE) {
        return NOT_KNOWN;
    }
    const auto whole = static_cast<std::int64_t>(scaled);
    const double rest = scaled - static_cast<double>(whole);
    return std::fabs(rest - 0.5) < TOO_CLOSE ? NOT_KNOWN : whole + (rest > 0.5);
}

/// The first `count` digits of a number, or NOT_KNOWN, and the power of ten that the very first counts.
struct LeadingDigits
{
    LeadingDigits(double size, int count)
    {
        const int binaryExponent = static_cast<int>(std::bit_cast<std::uint64_t>(size) >> 52) - 1023;
        exponent = binaryExponent * 1233 >> 12; // times the logarithm of 2: right, or one too small
        digits = count > QUICK_DIGITS ? NOT_KNOWN : Scaled(size, count - 1 - exponent);
        if (digits != NOT_KNOWN && digits >= static_cast<std::int64_t>(POWERS[count])) {
            ++exponent;
            digits = Scaled(size, count - 1 - exponent);
        }
    }

    std::int64_t digits;
    int exponent;
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

// Defined for users of the DLL who bind references to it.
constexpr int uti_NumFormat::MAX_PRECISION;

/// A text under construction: as long as any number gets, and never longer.
class uti_NumFormat::Text
{
public:
    /// The number as printf writes it with "% f", "% E" or "% G".
    void AppendNumber(double value, std::chars_format format, int digits)
    {
        *m_end++ = std::signbit(value) ? '-' : ' ';
        if (!std::isfinite(value)) {
            const bool isLowerCase = format == std::chars_format::fixed;
            return Append(std::isnan(value) ? (isLowerCase ? "nan" : "NAN") : (isLowerCase ? "inf" : "INF"));
        }
        const double size = std::fabs(value);
        if (format == std::chars_format::fixed        ? AppendFixed(size, digits)
            : format == std::chars_format::scientific ? AppendScientific(size, digits)
                                                      : AppendGeneral(size, std::max(digits, 1))) {
            return;
        }
        m_end = std::to_chars(m_end, std::end(m_bytes), size, format, digits).ptr;
        if (format != std::chars_format::fixed && ExponentStart() != m_end) {
            *ExponentStart() = 'E';
        }
    }
    void Append(std::string_view text) { m_end = std::copy(text.begin(), text.end(), m_end); }
    void AppendExponent(int exponent)
    {
        Append(exponent < 0 ? "E-" : "E+");
        const int size = std::abs(exponent);
        if (size >= 100) {
            *m_end++ = static_cast<char>('0' + size / 100);
        }
        *m_end++ = static_cast<char>('0' + size / 10 % 10);
        *m_end++ = static_cast<char>('0' + size % 10);
    }
    /// Puts a point behind the first digits of a number that has none.
    void EnsurePoint()
    {
        char* const point = m_bytes + FRONT + PointPosition();
        if (point == m_end || *point != '.') {
            std::memmove(point + 1, point, static_cast<std::size_t>(m_end - point));
            *point = '.';
            ++m_end;
        }
    }
    void TrimRight(char character)
    {
        while (m_end != m_begin && m_end[-1] == character) {
            --m_end;
        }
    }
    void TrimLeft(char character)
    {
        while (m_end != m_begin && *m_begin == character) {
            ++m_begin;
        }
    }
    /// Blanks in front, or behind, until the text is `width` long.
    void PadLeft(int width)
    {
        while (m_end - m_begin < width) {
            *--m_begin = ' ';
        }
    }
    void PadRight(int width)
    {
        while (m_end - m_begin < width) {
            *m_end++ = ' ';
        }
    }
    /// How many characters stand before the point of a number, or before where it would stand.
    int PointPosition() const noexcept
    {
        const char* const start = m_bytes + FRONT;
        const char* const point = std::find_if(start + 1, static_cast<const char*>(m_end),
                                               [](char character) { return character == '.' || character == 'E'; });
        return static_cast<int>(point - start);
    }
    std::string_view View() const noexcept { return {m_begin, static_cast<std::size_t>(m_end - m_begin)}; }

private:
    static constexpr int FRONT = MAX_PRECISION + 6; // the most that is padded in front

    // What printf writes for a quick number; false, and nothing done, for others.
    bool AppendFixed(double size, int decimals)
    {
        const std::int64_t digits = decimals > QUICK_DIGITS ? NOT_KNOWN : Scaled(size, decimals);
        if (digits == NOT_KNOWN) {
            return false;
        }
        int before = 1;
        while (digits >= static_cast<std::int64_t>(POWERS[before + decimals])) {
            ++before;
        }
        AppendDigits(digits, before, decimals);
        return true;
    }
    bool AppendScientific(double size, int decimals)
    {
        const LeadingDigits leading(size, 1 + decimals);
        if (leading.digits == NOT_KNOWN) {
            return false;
        }
        AppendDigits(leading.digits, 1, decimals);
        AppendExponent(leading.exponent);
        return true;
    }
    bool AppendGeneral(double size, int count)
    {
        constexpr int LOWEST_EXPONENT = -4; // of what is written without one
        const LeadingDigits leading(size, count);
        if (leading.digits == NOT_KNOWN) {
            return false;
        }
        const bool isFixed = leading.exponent >= LOWEST_EXPONENT && leading.exponent < count;
        if (isFixed && leading.exponent < 0) {
            Append(std::string_view("0.000").substr(0, static_cast<std::size_t>(1 - leading.exponent)));
            AppendDigits(leading.digits, count, 0);
            TrimRight('0');
            return true;
        }
        const int before = isFixed ? 1 + leading.exponent : 1;
        AppendDigits(leading.digits, before, count - before);
        if (before < count) {
            TrimRight('0');
            TrimRight('.');
        }
        if (!isFixed) {
            AppendExponent(leading.exponent);
        }
        return true;
    }
    /// An integer with a point among its digits, unless it would be the last.
    void AppendDigits(std::int64_t digits, int before, int behind)
    {
        const auto append = [&digits](char* end, int count) {
            for (; count > 0; --count, digits /= 10) {
                *--end = static_cast<char>('0' + digits % 10);
            }
        };
        if (behind > 0) {
            append(m_end + before + 1 + behind, behind);
            m_end[before] = '.';
        }
        append(m_end + before, before);
        m_end += before + (behind > 0 ? 1 + behind : 0);
    }
    char* ExponentStart() noexcept
    {
        constexpr int SHORTEST = 6; // " 1e+20"
        return m_end - m_begin < SHORTEST ? m_end : m_end[-4] == 'e' ? m_end - 4 : m_end[-5] == 'e' ? m_end - 5 : m_end;
    }
    // Padding, then up to 309 digits before a point or MAX_PRECISION and an exponent, with sign, point and padding.
    char m_bytes[FRONT + MAX_PRECISION + 400];
    char* m_begin = m_bytes + FRONT; // where the sign is until the text is padded
    char* m_end = m_begin;
};

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
    Text text;
    switch (m_notation) {
    case AUTOMATIC:
        FormatAutomatic(text, value);
        break;
    case ENGINEERING:
        FormatEngineering(text, value);
        break;
    case SCIENTIFIC:
        FormatScientific(text, value);
        break;
    default:
        return "Format Error";
    }
    if (!m_keepPadding) {
        text.TrimRight(' ');
        text.TrimLeft(' ');
    }
    return text.View();
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

void uti_NumFormat::FormatScientific(Text& text, double value) const
{
    text.AppendNumber(value, std::chars_format::scientific, Digits());
    text.PadLeft(Digits() + 6);
    if (Digits() == 0 && std::isfinite(value)) {
        text.Append("."); // behind the exponent: promised, and it must stay
    }
}

void uti_NumFormat::FormatAutomatic(Text& text, double value) const
{
    text.AppendNumber(value, std::chars_format::general, Digits());
    text.PadLeft(Digits() + 6);
    if (std::isfinite(value)) {
        text.EnsurePoint();
    }
}

void uti_NumFormat::FormatEngineering(Text& text, double value) const
{
    if (!std::isfinite(value)) {
        text.AppendNumber(value, std::chars_format::fixed, 0);
        return PointString(text, POINT_COLUMN);
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
    PointString(text, POINT_COLUMN);
}

/// Pads the text so that its point stands at `column`, and to the width of the longest text of this precision.
void uti_NumFormat::PointString(Text& text, int column) const
{
    const int length = static_cast<int>(text.View().size());
    text.PadLeft(length + column - text.PointPosition());
    text.PadRight(column + 1 + std::max(Digits() - 1, 0) + EXPONENT_WIDTH);
}
