#pragma once

#include "VEXomu_export.h"

#include <memory>

/// Array of doubles whose length is set once; it has its own data, or wraps that of the caller.
///
/// Ownership:  owns its data, except what NewWrap was given, which must outlive it.
/// Threads:    one thread at a time; any number may read while none writes.
/// Complexity: Copy and GetData O(length); the rest O(1).
/// Errors:     std::bad_alloc; using an array before Initialize, or initializing it twice, is an assertion.
/// Example:    omu_ArrayReal64 areas(3); areas[0] = 1.5;
/// Avoid for:  data that is copied often; a cow_1DArray shares it.
class VEXOMU_API omu_ArrayReal64
{
public:
    /// Not initialized.
    omu_ArrayReal64() noexcept = default;
    /// `length` zeros.
    explicit omu_ArrayReal64(unsigned int length);
    /// A copy of `values`; no length or no values is an assertion, and the array is then empty.
    omu_ArrayReal64(unsigned int length, const double* values);
    omu_ArrayReal64(const omu_ArrayReal64&) = delete;
    omu_ArrayReal64& operator=(const omu_ArrayReal64&) = delete;
    ~omu_ArrayReal64();

    /// A new array over `values`, without a copy; no length or no values is an assertion, and the array is then empty.
    static omu_ArrayReal64* NewWrap(unsigned int length, double* values);

    /// Makes the array `length` zeros; does nothing but report an assertion when it is initialized already.
    void Initialize(unsigned int length);

    /// 0, after an assertion, when not initialized.
    unsigned int Length() const;
    /// The value at `i`, which is not checked.
    double operator[](unsigned int i) const noexcept { return m_data[i]; }
    double& operator[](unsigned int i) noexcept { return m_data[i]; }
    /// A copy of the data that the caller frees with delete[]; null when there is none. Asserts that it is initialized.
    double* GetData() const;
    /// A new array with a copy of the values, or one that is not initialized if this one is not.
    omu_ArrayReal64* Copy() const;

private:
    bool IsUsable() const;

    bool m_isInitialized = false;
    unsigned int m_length = 0;
    double* m_data = nullptr;          // m_length values; null when there are none
    std::unique_ptr<double[]> m_owned; // what m_data points to, unless that is wrapped
};
