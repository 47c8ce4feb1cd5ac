#pragma once

#include "VEXomu_export.h"

#include <cstddef>
#include <memory>

/// The bytes that a numeric array and the views of it share; they keep their place and size for life.
///
/// Ownership:  owns the bytes; is itself held by cow_CountedHld.
class VEXOMU_API omu_PrimArrayData
{
public:
    /// Copies `bytes`, or fills with zeros when null. Throws std::bad_alloc.
    omu_PrimArrayData(const void* bytes, std::size_t sizeBytes);
    omu_PrimArrayData(const omu_PrimArrayData&) = delete;
    omu_PrimArrayData& operator=(const omu_PrimArrayData&) = delete;

    unsigned char* Bytes() noexcept { return m_bytes.get(); }
    std::size_t SizeBytes() const noexcept { return m_sizeBytes; }

private:
    std::unique_ptr<unsigned char[]> m_bytes;
    std::size_t m_sizeBytes;
};
