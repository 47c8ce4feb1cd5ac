#include "omu_PrimArrayData.h"

#include "VEXcrt_System.h"

#include <cstring>

namespace
{

/// From here on large pages make up for what they waste, at most one at each end.
constexpr std::size_t LARGE_BYTES = 4 * 1024 * 1024;

} // namespace

omu_PrimArrayData::omu_PrimArrayData(const void* bytes, std::size_t sizeBytes)
    : m_bytes(new unsigned char[sizeBytes]), m_sizeBytes(sizeBytes)
{
    if (sizeBytes >= LARGE_BYTES) {
        VEXCRT::PreferLargePages(m_bytes.get(), sizeBytes);
    }
    if (bytes == nullptr) {
        std::memset(m_bytes.get(), 0, sizeBytes);
    } else if (sizeBytes != 0) {
        std::memcpy(m_bytes.get(), bytes, sizeBytes);
    }
}
