#pragma once

#include "omu_Primitive.h"

/// The script's None: the value of what has none.
class VEXOMU_API omu_PrimNone : public omu_Primitive
{
public:
    omu_PrimNone() noexcept : omu_Primitive('n') {}
    explicit omu_PrimNone(bio_Ifilter& in);

    /// "None".
    cow_String TypeString() const override;
    /// "None".
    cow_String AsString(int depth) const override;
    /// True for every none value: only their payload byte is 0.
    bool operator==(const omu_Primitive& other) const override;
    void Accept(omu_PrimVisitor* visitor) const override;
    omu_Primitive* Copy() const override;
    std::uint32_t DynTypeId() const override;

    static std::uint32_t TypeId();
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    /// Type code, payload byte; one that is not 0 is refused.
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);
};
