#include "StreamChecks.h"
#include "omi_complex.h"

#include <numbers>

namespace
{
constexpr double PI = std::numbers::pi;
constexpr double INFINITE = std::numeric_limits<double>::infinity();

void ExpectNear(const omi_complex& value, double real, double imaginary)
{
    EXPECT_NEAR(value.RealPart(), real, 1e-12);
    EXPECT_NEAR(value.ImaginaryPart(), imaginary, 1e-12);
}
} // namespace

TEST(Complex, Each_form_keeps_what_it_was_given_and_equals_the_other)
{
    const omi_complex polar = omi_complex::Polar(-2, 7 * PI);
    EXPECT_EQ(std::pair(polar.Magnitude(), polar.Phase()), std::pair(-2.0, 7 * PI));
    ExpectNear(polar, 2, 0);
    const omi_complex cartesian(-3, 4);
    EXPECT_EQ(std::pair(cartesian.Magnitude(), cartesian.Phase()), std::pair(5.0, std::atan2(4.0, -3.0)));
    EXPECT_DOUBLE_EQ(omi_complex(3e200, 4e200).Magnitude(), 5e200);

    EXPECT_EQ(omi_complex(2, 0), omi_complex::Polar(2, 0));
    EXPECT_EQ(omi_complex::Polar(0, 1), omi_complex());
    EXPECT_FALSE(omi_complex(1, 2) == omi_complex(1, 3) || omi_complex(1, 2) == omi_complex(0, 2));
    const omi_complex nan(std::nan(""), 0);
    EXPECT_FALSE(nan == nan);
}

TEST(Complex, Arithmetic_agrees_in_every_mix_of_forms)
{
    const omi_complex forms[2][2] = {{{1, 2}, omi_complex::Polar(std::sqrt(5.0), std::atan2(2.0, 1.0))},
                                     {{3, -4}, omi_complex::Polar(5, std::atan2(-4.0, 3.0))}};
    for (const omi_complex& left : forms[0]) {
        for (const omi_complex& right : forms[1]) {
            SCOPED_TRACE(left.Form() * 2 + right.Form());
            ExpectNear(left + right, 4, -2);
            ExpectNear(left - right, -2, 6);
            ExpectNear(left * right, 11, 2);
            ExpectNear(left / right, -0.2, 0.4);
            const bool bothPolar = !left.IsCartesian() && !right.IsCartesian();
            EXPECT_TRUE((left * right).IsCartesian() == !bothPolar && (left / right).IsCartesian() == !bothPolar);
            EXPECT_TRUE((left + right).IsCartesian() && (left - right).IsCartesian());
        }
    }
    EXPECT_EQ((omi_complex(1, 0) / omi_complex(0, 0)).RealPart(), INFINITE);
}

TEST(Complex, A_stream_keeps_the_form_and_refuses_others)
{
    for (const omi_complex& value : {omi_complex(1.5, -2), omi_complex::Polar(1.5, -2)}) {
        ExpectStreamed(value);
        EXPECT_EQ(BytesOf(value).size(), 17U);
        EXPECT_EQ(BytesOf(value)[0], value.IsCartesian() ? 0 : 1);
        EXPECT_EQ(DumpOf(value), value.IsCartesian() ? "(1.5, -2)" : "(1.5 @ -2)");
    }
    omi_complex read(7, 8);
    EXPECT_EQ(ReadFrom("\x02" + std::string(16, '\0'), read), "an unknown form of complex number at offset 0");
    EXPECT_EQ(read, omi_complex(7, 8));
}
