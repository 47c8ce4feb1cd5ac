#include "omu_RangeChecker.h"

#include "omu_RangeErrorException.h"

#include <limits>

namespace
{

constexpr const char* SOURCE = "source/omu/impl/omu_RangeChecker";

// What stands for a bound that is not there. For double the lower one is the smallest normal number above zero, not the
// lowest: promised, and it must stay.
template <class T> constexpr T NO_LOWER = std::numeric_limits<T>::min();
template <class T> constexpr T NO_HIGHER = std::numeric_limits<T>::max();

template <class T> bool IsInRange(T lower, bool lowerInclusive, T value, T higher, bool higherInclusive) noexcept
{
    return (lowerInclusive ? value >= lower : value > lower) && (higherInclusive ? value <= higher : value < higher);
}

omu_RangeQualifierEnm Qualifier(int limit, bool inclusive, int noLimit) noexcept
{
    return inclusive ? omu_INCLUSIVE : limit == noLimit ? omu_NO_RANGE : omu_NOT_INCLUSIVE;
}

omu_RangeQualifierEnm Qualifier(double limit, bool inclusive, double noLimit) noexcept
{
    return limit == noLimit ? omu_NO_RANGE : inclusive ? omu_INCLUSIVE : omu_NOT_INCLUSIVE;
}

template <class T>
void Check(const cow_String& quantity, T lower, bool lowerInclusive, T value, T higher, bool higherInclusive, int line)
{
    if (!IsInRange(lower, lowerInclusive, value, higher, higherInclusive)) {
        omu_RangeErrorException(quantity, lower, Qualifier(lower, lowerInclusive, NO_LOWER<T>), higher,
                                Qualifier(higher, higherInclusive, NO_HIGHER<T>))
            .Throw(SOURCE, line);
    }
}

} // namespace

// The lines that the errors report are promised.
void omu_RangeChecker::CheckInRange(const cow_String& quantity, int lower, bool lowerInclusive, int value, int higher,
                                    bool higherInclusive)
{
    Check(quantity, lower, lowerInclusive, value, higher, higherInclusive, 64);
}

void omu_RangeChecker::CheckInRange(const cow_String& quantity, double lower, bool lowerInclusive, double value,
                                    double higher, bool higherInclusive)
{
    Check(quantity, lower, lowerInclusive, value, higher, higherInclusive, 155);
}

void omu_RangeChecker::CheckGreaterThan(const cow_String& quantity, int lower, bool inclusive, int value)
{
    CheckInRange(quantity, lower, inclusive, value, NO_HIGHER<int>, false);
}

void omu_RangeChecker::CheckGreaterThan(const cow_String& quantity, double lower, bool inclusive, double value)
{
    CheckInRange(quantity, lower, inclusive, value, NO_HIGHER<double>, false);
}

void omu_RangeChecker::CheckLessThan(const cow_String& quantity, int higher, bool inclusive, int value)
{
    CheckInRange(quantity, NO_LOWER<int>, false, value, higher, inclusive);
}

void omu_RangeChecker::CheckLessThan(const cow_String& quantity, double higher, bool inclusive, double value)
{
    CheckInRange(quantity, NO_LOWER<double>, false, value, higher, inclusive);
}
