#include "Test.h"
#include "VEXCRT.h"

namespace
{
std::string recorded;

void Record(const char* condition, const char* source, int line)
{
    recorded = std::string(condition) + "|" + source + "|" + std::to_string(line);
}

/// What reporting one assertion writes to standard error.
std::string Written()
{
    testing::internal::CaptureStderr();
    VEXCRT::_assert("size > 0 && \"100%s\"", "source/omu/impl/omu_X", 170);
    return testing::internal::GetCapturedStderr();
}

const char LINE[] = "Assertion failed: size > 0 && \"100%s\", file source/omu/impl/omu_X, line 170\n";
} // namespace

TEST(Assertions, The_default_handler_writes_one_line_and_an_installed_one_takes_its_place)
{
    EXPECT_EQ(Written(), LINE);
    const VEXCRT::AssertHandler original = VEXCRT::SetAssertHandler(&Record);
    EXPECT_EQ(Written(), "");
    EXPECT_EQ(recorded, "size > 0 && \"100%s\"|source/omu/impl/omu_X|170");
    EXPECT_EQ(VEXCRT::SetAssertHandler(nullptr), &Record);
    EXPECT_EQ(Written(), LINE) << "null stands for the default handler";
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
        VEXCRT::_assert("0", "x", 170);
        std::exit(0);
    };
    EXPECT_DEATH(abortOnAssert(), "Assertion failed: 0, file x, line 170");
}
