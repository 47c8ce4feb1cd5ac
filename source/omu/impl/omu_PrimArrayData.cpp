#include "omu_PrimArrayData.h"

#include <cstring>

omu_PrimArrayData::omu_PrimArrayData(const void* bytes, std::size_t sizeBytes)
    : m_bytes(new unsigned char[sizeBytes]), m_sizeBytes(sizeBytes)
{
    if (bytes == nullptr) {
        std::memset(m_bytes.get(), 0, sizeBytes);
    } else if (sizeBytes != 0) {
        std::memcpy(m_bytes.get(), bytes, sizeBytes);
    }
}
