#pragma once

#include "VEXCRT.h"
#include "omu_Word.h"

/// The values of an omu_Varray and the ways to read them: the part of it that is inlined into its callers.
template <omu_Word T> class omu_WordArray
{
public:
    omu_WordArray(const omu_WordArray&) = delete;
    omu_WordArray& operator=(const omu_WordArray&) = delete;

    unsigned int Length() const noexcept { return m_length; }
    unsigned int Capacity() const noexcept { return m_capacity; }
    double GrowthFactor() const noexcept { return m_growthFactor; }

    /// Sets `value` to the one at `pos`; false, and nothing set, when there is none.
    bool Get(unsigned int pos, T* value) const noexcept
    {
        if (pos >= m_length) {
            return false;
        }
        *value = m_values[pos];
        return true;
    }
    /// The value at `i`; outside the array an assertion is reported and the result is the zero value.
    T operator[](unsigned int i) const
    {
        if (i >= m_length) {
            VEXCRT::_assert("i<length", "source/include/omu_Varray", __LINE__);
            return T{};
        }
        return m_values[i];
    }
    /// The values themselves, for reading.
    const T* ConstGetAll() const noexcept { return m_values; }

protected:
    static constexpr unsigned int DEFAULT_SIZE = 16;
    static constexpr double DEFAULT_GROWTH = 2.0;

    omu_WordArray(unsigned int size, double growth) noexcept : m_initialSize(size), m_growthFactor(growth) {}
    ~omu_WordArray() = default;

    unsigned int m_initialSize;
    double m_growthFactor;
    unsigned int m_length = 0;
    unsigned int m_capacity = 0;
    // Invariant: one value more than the capacity is allocated, so that m_values[m_length] can always be written to.
    T* m_values = nullptr;
};
