#include "omu_ArrayReal64.h"

#include "VEXCRT.h"

#include <algorithm>

namespace
{
constexpr char SOURCE[] = "source/omu/impl/omu_ArrayReal64";

/// The length that can be read from `dat`; a missing length or pointer is reported.
unsigned int ReadableLength(unsigned int len, const double* dat)
{
    if (len == 0) {
        VEXCRT::_assert("len != 0", SOURCE, __LINE__);
    }
    if (dat == nullptr) {
        VEXCRT::_assert("dat != 0", SOURCE, __LINE__);
        return 0;
    }
    return len;
}
} // namespace

omu_ArrayReal64::omu_ArrayReal64(unsigned int length)
{
    Initialize(length);
}

omu_ArrayReal64::omu_ArrayReal64(unsigned int length, const double* values)
{
    Initialize(ReadableLength(length, values));
    std::copy_n(values, m_length, m_data);
}

omu_ArrayReal64::~omu_ArrayReal64() = default;

omu_ArrayReal64* omu_ArrayReal64::NewWrap(unsigned int length, double* values)
{
    auto* const array = new omu_ArrayReal64;
    array->m_isInitialized = true;
    array->m_length = ReadableLength(length, values);
    array->m_data = array->m_length != 0 ? values : nullptr;
    return array;
}

void omu_ArrayReal64::Initialize(unsigned int length)
{
    if (m_isInitialized) {
        VEXCRT::_assert("! initialized", SOURCE, __LINE__);
        return;
    }
    if (length != 0) {
        m_owned = std::make_unique<double[]>(length);
        m_data = m_owned.get();
    }
    m_length = length;
    m_isInitialized = true;
}

bool omu_ArrayReal64::IsUsable() const
{
    if (!m_isInitialized) {
        VEXCRT::_assert("initialized", SOURCE, __LINE__);
    }
    return m_isInitialized;
}

unsigned int omu_ArrayReal64::Length() const
{
    return IsUsable() ? m_length : 0;
}

double* omu_ArrayReal64::GetData() const
{
    if (!IsUsable() || m_length == 0) {
        return nullptr;
    }
    auto* const copy = new double[m_length];
    std::copy_n(m_data, m_length, copy);
    return copy;
}

omu_ArrayReal64* omu_ArrayReal64::Copy() const
{
    auto copy = std::make_unique<omu_ArrayReal64>();
    if (m_isInitialized) {
        copy->Initialize(m_length);
        std::copy_n(m_data, m_length, copy->m_data);
    }
    return copy.release();
}
