#include "VEXCRT.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace
{
std::string lastReport;

void Record(const char* condition, const char* source, int line)
{
    lastReport = std::string(condition) + "|" + source + "|" + std::to_string(line);
}

std::string StandardErrorOf(void (*action)())
{
    testing::internal::CaptureStderr();
    action();
    return testing::internal::GetCapturedStderr();
}

void Report()
{
    VEXCRT::_assert("size > 0 && \"100%s\"", "source/omu/impl/omu_X", 170);
}
} // namespace

TEST(Assertions, The_default_handler_writes_one_line_and_returns)
{
    EXPECT_EQ(StandardErrorOf(&Report),
              "Assertion failed: size > 0 && \"100%s\", file source/omu/impl/omu_X, line 170\n");
}

TEST(Assertions, An_installed_handler_takes_the_place_of_the_one_returned)
{
    const VEXCRT::AssertHandler original = VEXCRT::SetAssertHandler(&Record);
    EXPECT_EQ(StandardErrorOf(&Report), "");
    EXPECT_EQ(lastReport, "size > 0 && \"100%s\"|source/omu/impl/omu_X|170");
    EXPECT_EQ(VEXCRT::SetAssertHandler(nullptr), &Record);
    EXPECT_NE(StandardErrorOf(&Report), "") << "null stands for the default handler";
    EXPECT_EQ(VEXCRT::SetAssertHandler(original), original);
}

TEST(AssertionsDeathTest, The_environment_makes_the_default_handler_abort_after_its_line)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto abortOnAssert = [] {
        static char setting[] = "VEXCRT_ABORT_ON_ASSERT=0"; // kept by the environment
#if defined(_WIN32)
        _putenv(setting);
#else
        putenv(setting);
#endif
        Report();
        std::exit(0);
    };
    EXPECT_DEATH(abortOnAssert(), "Assertion failed: .*, line 170");
}
