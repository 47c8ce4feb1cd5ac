#include "Test.h"
#include "VEXCRT.h"

namespace
{
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
    RecordedAssertions assertions;
    EXPECT_EQ(Written(), "");
    EXPECT_EQ(assertions.Take(), Texts{"size > 0 && \"100%s\""});
    EXPECT_EQ(assertions.Places(), Texts{"source/omu/impl/omu_X 170"});
    const VEXCRT::AssertHandler recorder = VEXCRT::SetAssertHandler(nullptr);
    EXPECT_EQ(Written(), LINE) << "null stands for the default handler";
    EXPECT_NE(VEXCRT::SetAssertHandler(recorder), recorder);
}

TEST(AssertionsDeathTest, The_environment_makes_the_default_handler_abort_after_its_line)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto abortOnAssert = [] {
        SetVariable("VEXCRT_ABORT_ON_ASSERT", "0");
        VEXCRT::_assert("0", "x", 170);
        std::exit(0);
    };
    EXPECT_DEATH(abortOnAssert(), "Assertion failed: 0, file x, line 170");
}
