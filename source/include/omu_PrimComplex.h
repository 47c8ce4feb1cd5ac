#pragma once

#include "omi_complex.h"
#include "omu_Primitive.h"

/// A script's complex number; keeps the form, Cartesian or polar, that it was made with.
class VEXOMU_API omu_PrimComplex : public omu_Primitive
{
public:
    explicit omu_PrimComplex(const omi_complex& value) noexcept : omu_Primitive('x'), m_value(value) {}
    explicit omu_PrimComplex(bio_Ifilter& in);

    const omi_complex& GetValue() const noexcept { return m_value; }

    /// "complex".
    cow_String TypeString() const override;
    /// Real part, "+", imaginary part, "j". The plus stands also before a negative imaginary part: promised.
    cow_String AsString(int depth) const override;
    bool operator==(const omu_Primitive& other) const override;
    void Accept(omu_PrimVisitor* visitor) const override;
    omu_Primitive* Copy() const override;
    std::uint32_t DynTypeId() const override;

    static std::uint32_t TypeId();
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    /// Type code, value.
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);

private:
    omi_complex m_value;
};
