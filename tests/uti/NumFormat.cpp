#include "uti_NumFormat.h"

#include "Test.h"
#include "uti_FormatMap.h"

#include <clocale>

namespace
{
constexpr double INF = std::numeric_limits<double>::infinity();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double LARGEST = std::numeric_limits<double>::max();
constexpr double SMALLEST = std::numeric_limits<double>::denorm_min();

std::string Text(const uti_NumFormat& format, double value)
{
    return std::string(format.Format(value).view());
}

TEST(NumFormat, Texts)
{
    const std::tuple<int, int, double, const char*> rows[] = {
        {0, 6, 100, "         100."},
        {0, 6, 1e20, "       1.E+20"},
        {0, 0, 5e-7, " 5.E-07"},
        {0, 6, -0.0, "          -0."},
        {0, 6, INF, "         INF"},
        {1, 6, 12345.678, "  12.3457E+03 "},
        {1, 6, 0.000123, " 123.E-06     "},
        {1, 6, 0, "   0.         "},
        {1, 6, -0.0, "  -0.         "},
        {1, 3, 999.9999, " 1000.     "},
        {1, 3, 0.9999999, " 1000.E-03 "},
        {1, 16, 99.999999999999986, " 100.                   "},
        {1, 0, 7.6, "   8.    "},
        {1, -2, 1e-12, "   1.E-12"},
        {1, 17, 0.5, " 500.E-03                "},
        {1, 4, -LARGEST, "-179.8E+306 "},
        {1, 4, SMALLEST, "   4.941E-324"},
        {1, 3, -INF, "-inf       "},
        {1, 3, NOT_A_NUMBER, " nan       "},
        {2, 0, 5, " 5E+00."},
        {2, 6, NOT_A_NUMBER, "         NAN"},
        {7, 6, 1, "Format Error"},
        {-1, 6, INF, "Format Error"},
    };
    for (const auto& [notation, precision, value, text] : rows) {
        EXPECT_EQ(Text({notation, precision}, value), text) << notation << " " << precision << " " << value;
        cow_String trimmed(text);
        trimmed.Trim(" ");
        EXPECT_EQ(Text({notation, precision, 0, false}, value), trimmed.view());
    }
}

TEST(NumFormat, Any_number_is_written_as_printf_would_in_every_locale)
{
    std::mt19937_64 random(7);
    for (int round = 0; round < 20000; ++round) {
        // Any at all; halves that round to even; such as users write.
        const double kinds[] = {std::bit_cast<double>(random()), std::ldexp(double(random() % 4096), -6),
                                double(random() % 1000000) / std::pow(10.0, random() % 12)};
        const double value = kinds[round % 3];
        const int precision = static_cast<int>(random() % 19);
        if (!std::isfinite(value)) {
            continue;
        }
        std::setlocale(LC_ALL, "de_DE.UTF-8");
        const std::string scientific = Text({2, precision}, value);
        std::string general = Text({0, precision}, value);
        const std::string engineering = Text({1, precision, 0, false}, value);
        const double digits = uti_NumFormat(1, 17).FormatDigits(value);
        std::setlocale(LC_ALL, "C");
        char expected[64];
        std::snprintf(expected, sizeof expected, "% *.*E", precision + 6, precision, value);
        ASSERT_EQ(scientific, std::string(expected) + (precision ? "" : "."));
        std::snprintf(expected, sizeof expected, "% *.*G", precision + 6, precision, value);
        ASSERT_NE(general.find('.'), std::string::npos);
        if (std::string(expected).find('.') == std::string::npos) {
            general.erase(general.find('.'), 1);
        }
        ASSERT_EQ(general, expected);
        if (value >= 1 && value < 1000) {
            const int decimals = precision - (value >= 100 ? 3 : value >= 10 ? 2 : 1);
            std::snprintf(expected, sizeof expected, "%#.*f", std::max(decimals, 0), value);
            std::string fixed(expected);
            fixed.erase(fixed.find_last_not_of('0') + 1);
            ASSERT_EQ(engineering, fixed);
        }
        ASSERT_NEAR(digits / (value == 0 ? 1 : value), value != 0, 1e-13) << value;
    }
}

TEST(NumFormat, What_rounds_to_zero_is_zero_and_digits_are_those_that_are_shown)
{
    const uti_NumFormat six(1, 6, 6, false);
    const std::pair<double, const char*> rows[] = {{1e-9, "0."},    {-1e-9, "0."},         {1e-5, "10.E-06"},
                                                   {4.99e-7, "0."}, {5.01e-7, "501.E-09"}, {SMALLEST, "0."}};
    for (const auto& [value, text] : rows) {
        EXPECT_EQ(Text(six, value), text);
    }
    EXPECT_EQ(Text({0, 6, 2000, false}, SMALLEST), "4.94066E-324");
    EXPECT_EQ(Text({0, 6, -3, false}, 1e-9), "1.E-09") << "no number of decimals";
    RecordedAssertions assertions;
    EXPECT_EQ(six.Format(1e-9f), "0.");
    EXPECT_EQ(assertions.Take(), Texts{"\"Precision computation not implemented for float\" == 0"});

    const uti_NumFormat three(1, 3);
    EXPECT_EQ(three.FormatDigits(-12345.678), -12.3e3);
    EXPECT_EQ(three.FormatDigits(0.1f), 0.1f);
    EXPECT_EQ(three.FormatDigits(LARGEST), INF) << "rounded up";
    EXPECT_EQ(three.FormatDigits(-INF), -INF);
    EXPECT_EQ(three.FormatDigits(1.5, 0.0, 1.0), 1.0);
    EXPECT_EQ(three.FormatDigits(-0.0, 0.5, 1.0), 0.5);
    EXPECT_EQ(uti_NumFormat(9, 3).FormatDigits(1.5), 0.0);
}

TEST(FormatMap, Default_settings_reset_four_formats_and_leave_others)
{
    auto& formats = thr_ThreadSingleton<uti_FormatMap>::Instance();
    formats.Get("defaultFormat")->SetPrecision(2);
    formats.Remove("geometryFormat");
    formats.Insert("mine", {2, 3});
    formats.DefaultSettings();
    EXPECT_EQ(*formats.Find("defaultFormat"), uti_NumFormat(1, 6));
    EXPECT_EQ(*formats.Find("floatStepFormat"), uti_NumFormat(2, 1, 6));
    EXPECT_EQ(*formats.Find("geometryFormat"), uti_NumFormat(1, 12, 6, false));
    EXPECT_EQ(*formats.Find("fieldReportFormat"), uti_NumFormat());
    EXPECT_EQ(*formats.Find("mine"), uti_NumFormat(2, 3));
    EXPECT_EQ(formats.Find("other"), nullptr);
    uti_NumFormat format;
    format.RestoreDefaults();
    EXPECT_EQ(format, uti_NumFormat(0, 6, 0, true));
}
} // namespace
