#pragma once

#include "VEXutl_export.h"

#include <cstdint>

class bio_Ifilter;
class bio_Ofilter;
class pnt_PrettyPrint;

/// A complex number that remembers whether it was given by its parts or by magnitude and phase; nothing is
/// lost by converting before somebody asks for the other form.
///
/// Complexity: reading in the other form costs a sine and cosine, or an arc tangent and a root.
/// Errors:     none in arithmetic: what IEEE 754 gives, division by zero included.
class VEXUTL_API omi_complex
{
public:
    enum FormEnm : std::uint8_t
    {
        CARTESIAN = 0,
        POLAR = 1
    };

    omi_complex(double real = 0, double imaginary = 0) noexcept : m_first(real), m_second(imaginary) {}
    /// From a magnitude and a phase in radians, both kept as they are given.
    static omi_complex Polar(double magnitude, double phase) noexcept;

    FormEnm Form() const noexcept { return m_form; }
    bool IsCartesian() const noexcept { return m_form == CARTESIAN; }

    double RealPart() const noexcept;
    double ImaginaryPart() const noexcept;
    double Magnitude() const noexcept;
    /// In radians; of Cartesian parts between -pi and pi.
    double Phase() const noexcept;

    // Sums are Cartesian; products and quotients of two polar numbers are polar, all others Cartesian.
    friend VEXUTL_API omi_complex operator+(const omi_complex& left, const omi_complex& right) noexcept;
    friend VEXUTL_API omi_complex operator-(const omi_complex& left, const omi_complex& right) noexcept;
    friend VEXUTL_API omi_complex operator*(const omi_complex& left, const omi_complex& right) noexcept;
    friend VEXUTL_API omi_complex operator/(const omi_complex& left, const omi_complex& right) noexcept;

    /// Equal Cartesian parts, in whatever form; a NaN part equals nothing.
    friend VEXUTL_API bool operator==(const omi_complex& left, const omi_complex& right) noexcept;

    /// The form as one byte, then the two numbers of that form; a byte that is no form is refused.
    friend VEXUTL_API bio_Ofilter& operator<<(bio_Ofilter& out, const omi_complex& value);
    friend VEXUTL_API bio_Ifilter& operator>>(bio_Ifilter& in, omi_complex& value);
    /// "(real, imaginary)" or "(magnitude @ phase)".
    friend VEXUTL_API pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const omi_complex& value);

private:
    double m_first;  // real part or magnitude
    double m_second; // imaginary part or phase
    FormEnm m_form = CARTESIAN;
};
