#include "Test.h"
#include "pnt_PrettyPrint.h"
#include "pnt_debugPrint.h"
#include "typ_DebugFlags.h"

#include <iostream>
#include <locale>

namespace
{
class GermanNumbers : public std::numpunct<char>
{
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};
} // namespace

TEST(PrettyPrint, Numbers_take_nothing_from_the_stream)
{
    std::ostringstream text;
    text.imbue(std::locale(std::locale::classic(), new GermanNumbers));
    text << std::hex << std::showpos;
    text.width(20);
    pnt_PrettyPrint out(text);
    out << std::numeric_limits<int>::min() << ' ' << std::numeric_limits<unsigned int>::max() << ' ' << 1234567.5 << ' '
        << 0.1F << ' ' << -std::numeric_limits<double>::denorm_min() << ' ' << std::numeric_limits<double>::infinity();
    EXPECT_EQ(text.str(), "-2147483648 4294967295 1234567.5 0.1 -5e-324 inf");
}

TEST(DebugPrint, Text_appears_only_between_start_and_end)
{
    std::ostringstream text;
    pnt_DebugPrint& print = pnt_debugPrint();
    if (print.IsOn()) {
        GTEST_SKIP() << "VEXUTL_DEBUG switches the text on for good";
    }
    print.SetStream(&text);
    print << "off" << 1;
    print.StartDebug();
    print.StartDebug("source/uti/impl/uti_Spawn", 575);
    print << "reaped " << cow_String("process") << ' ' << -1 << ' ' << 4000000000U << ' ' << 0.5;
    print.EndDebug();
    print << '\n';
    print.EndDebug();
    print.EndDebug(); // one too many
    print << "off again";
    print.SetStream(nullptr);
    EXPECT_EQ(DebugText([&] { print << "on again"; }), "on again");
    EXPECT_EQ(text.str(), "source/uti/impl/uti_Spawn:575: reaped process -1 4000000000 0.5\n");
}

TEST(DebugFlags, A_flags_text_is_a_whole_32_bit_number_or_nothing)
{
    const std::pair<const char*, std::uint32_t> rows[] = {{"", 0},      {"5", 5},           {"4294967295", 0xFFFFFFFF},
                                                          {"0x1f", 31}, {"0XFF", 255},      {"4294967296", 0},
                                                          {"0x", 0},    {"1 ", 0},          {" 1", 0},
                                                          {"-1", 0},    {"0x-1", 0},        {"1.5", 0},
                                                          {"on", 0},    {"0x100000000", 0}, {"010", 10}};
    for (const auto& [text, flags] : rows) {
        EXPECT_EQ(typ_DebugFlags::Parse(text), flags) << '"' << text << '"';
    }
}

TEST(DebugFlagsDeathTest, The_environment_decides_on_first_use)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a process that has not asked yet
    EXPECT_EXIT(
        {
            SetVariable("VEXUTL_DEBUG", "0x80000005");
            std::cerr << std::hex << typ_DebugFlags::GetDebugFlags();
            for (const int category : {-1, 0, 1, 2, 31, 32}) {
                std::cerr << ' ' << typ_DebugFlags::GetDebugFlags(category);
            }
            std::exit(pnt_debugPrint().IsOn() ? 0 : 1);
        },
        testing::ExitedWithCode(0), "80000005 0 1 0 1 1 0");
}
