#pragma once

#include "VEXomu_export.h"

class cow_String;

/// One-line checks that a number lies within its bounds; the error names the quantity and the bounds that were set.
///
/// Errors:     omu_RangeErrorException, also for NaN.
/// Example:    omu_RangeChecker::CheckInRange("width", 1, true, width, 10, false);   // 1 <= width < 10
/// Avoid for:  float values that may be 0 or less under an upper bound alone; see CheckLessThan.
class VEXOMU_API omu_RangeChecker
{
public:
    // A bound that is not inclusive and the limit of its type (int: -2147483648 and 2147483647; double: the smallest
    // normal and the largest finite one) is left out of the error's text, yet it is tested. A double's limit is left out
    // even when it is inclusive: the difference is promised, and it must stay.
    static void CheckInRange(const cow_String& quantity, int lower, bool lowerInclusive, int value, int higher,
                             bool higherInclusive);
    static void CheckInRange(const cow_String& quantity, double lower, bool lowerInclusive, double value, double higher,
                             bool higherInclusive);

    /// Also refuses 2147483647, or the largest double: the type's limit is a bound that is not inclusive.
    static void CheckGreaterThan(const cow_String& quantity, int lower, bool inclusive, int value);
    static void CheckGreaterThan(const cow_String& quantity, double lower, bool inclusive, double value);

    /// Also refuses -2147483648; of doubles it takes only those above 2.2250738585072014e-308, so neither 0 nor negative
    /// ones. Promised, and it must stay.
    static void CheckLessThan(const cow_String& quantity, int higher, bool inclusive, int value);
    static void CheckLessThan(const cow_String& quantity, double higher, bool inclusive, double value);

protected:
    omu_RangeChecker() = default;
};
