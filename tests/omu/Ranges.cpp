#include "omu_RangeChecker.h"

#include "Test.h"
#include "omu_RangeErrorException.h"

namespace
{

using Checker = omu_RangeChecker;

constexpr int LOWEST = std::numeric_limits<int>::min();
constexpr int HIGHEST = std::numeric_limits<int>::max();
constexpr double SMALLEST = std::numeric_limits<double>::min();
constexpr double LARGEST = std::numeric_limits<double>::max();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

// An empty error: it passes.
const std::pair<void (*)(), const char*> rows[] = {
    {[] { Checker::CheckInRange("n", 1, true, 1, 10, false); }, ""},
    {[] { Checker::CheckInRange("n", 1, false, 10, 10, true); }, ""},
    {[] { Checker::CheckInRange("n", 1, true, 10, 10, false); }, "n must be an Integer in the range: 1 <= n < 10"},
    {[] { Checker::CheckInRange("n", 1, false, 1, 10, true); }, "n must be an Integer in the range: 1 < n <= 10"},
    {[] { Checker::CheckInRange("n", LOWEST, true, 6, 5, true); },
     "n must be an Integer in the range: -2147483648 <= n <= 5"},
    {[] { Checker::CheckInRange("n", 5, true, HIGHEST, HIGHEST, true); }, ""},
    {[] { Checker::CheckGreaterThan("n", 0, false, 0); }, "n must be an Integer > 0"},
    {[] { Checker::CheckGreaterThan("n", 0, true, HIGHEST); }, "n must be an Integer >= 0"},
    {[] { Checker::CheckLessThan("n", 0, false, LOWEST); }, "n must be an Integer < 0"},
    {[] { Checker::CheckLessThan("n", 0, true, 0); }, ""},
    {[] { Checker::CheckInRange("n", 0.5, false, 0.5, 2.0, false); }, "n must be a Float in the range: 0.5 < n < 2.0"},
    {[] { Checker::CheckInRange("n", 1.0, true, NOT_A_NUMBER, LARGEST, true); }, "n must be a Float >= 1.0"},
    {[] { Checker::CheckInRange("n", SMALLEST, true, SMALLEST, 5.0, false); }, ""},
    {[] { Checker::CheckInRange("n", SMALLEST, true, 5.0, 5.0, false); }, "n must be a Float < 5.0"},
    {[] { Checker::CheckLessThan("n", 5.0, true, -1.0); }, "n must be a Float <= 5.0"},
    {[] { Checker::CheckLessThan("n", 5.0, true, 5.0); }, ""},
    {[] { Checker::CheckGreaterThan("n", -1.0, false, -1.0); }, "n must be a Float > -1.0"},
};

} // namespace

TEST(RangeChecker, Bounds_are_tested_always_and_named_when_they_are_set)
{
    for (const auto& row : rows) {
        cow_String error;
        try {
            row.first();
        } catch (const omu_RangeErrorException& thrown) {
            error = thrown.JournalMessage();
            EXPECT_EQ(thrown.File(), "source/omu/impl/omu_RangeChecker");
            EXPECT_EQ(thrown.Line(), thrown.ValueKind() == omu_RangeErrorException::INTEGER ? 64 : 155);
        }
        EXPECT_EQ(error, row.second) << "row " << &row - rows;
    }
}
