#pragma once

#include "omu_Primitive.h"

/// An expression that the script layer evaluates before any kernel code sees it.
class VEXOMU_API omu_PrimExpr : public omu_Primitive
{
public:
    explicit omu_PrimExpr(const cow_String& text) noexcept : omu_Primitive('e'), m_text(text) {}
    explicit omu_PrimExpr(bio_Ifilter& in);

    const cow_String& GetString() const noexcept { return m_text; }

    /// "expression".
    cow_String TypeString() const override;
    /// The text as written.
    cow_String AsString(int depth) const override;
    /// Equal texts; only an expression equals an expression.
    bool operator==(const omu_Primitive& other) const override;
    /// Reports an assertion: an expression that survives evaluation is a fault of the script layer.
    void Accept(omu_PrimVisitor* visitor) const override;
    omu_Primitive* Copy() const override;
    std::uint32_t DynTypeId() const override;

    static std::uint32_t TypeId();
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    /// Type code, text.
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);

private:
    cow_String m_text;
};
