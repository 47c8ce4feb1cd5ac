#include "omi_complex.h"

#include "bio_Ifilter.h"
#include "bio_Ofilter.h"
#include "pnt_PrettyPrint.h"

#include <cmath>
#include <complex>

namespace
{
std::complex<double> Parts(const omi_complex& value)
{
    return {value.RealPart(), value.ImaginaryPart()};
}

omi_complex FromParts(const std::complex<double>& parts)
{
    return {parts.real(), parts.imag()};
}

bool BothPolar(const omi_complex& left, const omi_complex& right)
{
    return !left.IsCartesian() && !right.IsCartesian();
}
} // namespace

omi_complex omi_complex::Polar(double magnitude, double phase) noexcept
{
    omi_complex value(magnitude, phase);
    value.m_form = POLAR;
    return value;
}

double omi_complex::RealPart() const noexcept
{
    return IsCartesian() ? m_first : m_first * std::cos(m_second);
}

double omi_complex::ImaginaryPart() const noexcept
{
    return IsCartesian() ? m_second : m_first * std::sin(m_second);
}

double omi_complex::Magnitude() const noexcept
{
    return IsCartesian() ? std::hypot(m_first, m_second) : m_first;
}

double omi_complex::Phase() const noexcept
{
    return IsCartesian() ? std::atan2(m_second, m_first) : m_second;
}

omi_complex operator+(const omi_complex& left, const omi_complex& right) noexcept
{
    return FromParts(Parts(left) + Parts(right));
}

omi_complex operator-(const omi_complex& left, const omi_complex& right) noexcept
{
    return FromParts(Parts(left) - Parts(right));
}

omi_complex operator*(const omi_complex& left, const omi_complex& right) noexcept
{
    if (BothPolar(left, right)) {
        return omi_complex::Polar(left.m_first * right.m_first, left.m_second + right.m_second);
    }
    return FromParts(Parts(left) * Parts(right));
}

omi_complex operator/(const omi_complex& left, const omi_complex& right) noexcept
{
    if (BothPolar(left, right)) {
        return omi_complex::Polar(left.m_first / right.m_first, left.m_second - right.m_second);
    }
    return FromParts(Parts(left) / Parts(right));
}

bool operator==(const omi_complex& left, const omi_complex& right) noexcept
{
    return left.RealPart() == right.RealPart() && left.ImaginaryPart() == right.ImaginaryPart();
}

bio_Ofilter& operator<<(bio_Ofilter& out, const omi_complex& value)
{
    return out << static_cast<std::uint8_t>(value.m_form) << value.m_first << value.m_second;
}

bio_Ifilter& operator>>(bio_Ifilter& in, omi_complex& value)
{
    const std::uint64_t start = in.Offset();
    std::uint8_t form = 0;
    in >> form;
    if (form > omi_complex::POLAR) {
        in.FailAt("an unknown form of complex number", start);
    }
    double first = 0;
    double second = 0;
    in >> first >> second;
    value = form == omi_complex::POLAR ? omi_complex::Polar(first, second) : omi_complex(first, second);
    return in;
}

pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const omi_complex& value)
{
    return out << '(' << value.m_first << (value.IsCartesian() ? ", " : " @ ") << value.m_second << ')';
}
