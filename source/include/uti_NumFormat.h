#pragma once

#include "VEXomu_export.h"
#include "cow_String.h"

/// Turns floating-point numbers into text of a wanted length, and rounds them to what that text says.
///
///     notation       12345.678 with precision 6 (| marks the ends)
///     AUTOMATIC      |     12345.7|      as short as so many digits allow; always with a point
///     ENGINEERING    |  12.3457E+03 |    an exponent that 3 divides, a mantissa from 1 up to 1000
///     SCIENTIFIC     | 1.234568E+04|     so many decimals
///
/// The sign's column is blank for what is not negative. In the engineering notation the points of a table's column stand
/// below each other (a mantissa that rounds up to 1000 moves its own to the right). Infinities and NaN are written as the
/// C library writes them, without a point. Neither the locale nor the system changes a text.
///
/// Threads:    an ordinary value.
/// Complexity: O(precision); of the engineering notation also O(exponent).
/// Errors:     a notation that is none gives the text "Format Error". A precision below 0 counts as 0, one above
///             MAX_PRECISION as MAX_PRECISION.
/// Example:    uti_NumFormat(uti_NumFormat::ENGINEERING, 6).Format(0.000123) // " 123.E-06     "
/// Avoid for:  text that must read back equal: cow_String(double) or a stream.
class VEXOMU_API uti_NumFormat
{
public:
    enum Notation
    {
        AUTOMATIC = 0,
        ENGINEERING = 1,
        SCIENTIFIC = 2
    };
    static constexpr int MAX_PRECISION = 800; // no double has more digits

    /// Engineering with 6 digits: not what RestoreDefaults sets, promised, and it must stay.
    uti_NumFormat() = default;
    uti_NumFormat(int notation, int precision, int zeroDecimals = 0, bool keepPadding = true)
        : m_notation(notation), m_precision(precision), m_zeroDecimals(zeroDecimals), m_keepPadding(keepPadding)
    {}

    int GetNotation() const noexcept { return m_notation; }
    int Precision() const noexcept { return m_precision; }
    int ZeroDecimals() const noexcept { return m_zeroDecimals; }
    bool KeepPadding() const noexcept { return m_keepPadding; }
    void SetNotation(int notation) noexcept { m_notation = notation; }
    void SetPrecision(int digits) noexcept { m_precision = digits; }
    /// What rounds to zero with so many decimals is written as 0; 0 switches that off.
    void SetZeroDecimals(int decimals) noexcept { m_zeroDecimals = decimals; }
    /// Whether blanks around the text stay.
    void SetKeepPadding(bool keep) noexcept { m_keepPadding = keep; }
    /// Automatic with 6 digits, padding kept.
    void RestoreDefaults() noexcept;

    cow_String Format(double value) const;
    /// As the double; with zero decimals set an assertion says that they are meant for doubles.
    cow_String Format(float value) const;

    /// The number that the text says; 0 for a text that is none.
    double FormatDigits(double value) const;
    /// The same, at least `low`, else at most `high`.
    double FormatDigits(double value, double low, double high) const;
    float FormatDigits(float value) const;

    friend bool operator==(const uti_NumFormat&, const uti_NumFormat&) = default;

private:
    class Text;

    void FormatAutomatic(Text& text, double value) const;
    void FormatEngineering(Text& text, double value) const;
    void FormatScientific(Text& text, double value) const;
    void PointString(Text& text, int column) const;

    int Digits() const noexcept;
    bool RoundsToZero(double value) const;

    int m_notation = ENGINEERING;
    int m_precision = 6;
    int m_zeroDecimals = 0;
    bool m_keepPadding = true;
};
