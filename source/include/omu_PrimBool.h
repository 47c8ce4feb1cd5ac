#pragma once

#include "omu_PrimEnum.h"

template <> VEXOMU_API const omu_EnumRow<bool>* omu_EnumTable<bool, 1>();
template <> VEXOMU_API const omu_EnumRow<bool>* omu_EnumTable<bool, 2>();
VEXOMU_EXTERN_TEMPLATE(omu_PrimEnum<bool, 1>);
VEXOMU_EXTERN_TEMPLATE(omu_PrimEnum<bool, 2>);

/// A two-valued symbolic constant: TRUE and FALSE for instance 1, ON and OFF for instance 2.
template <int Inst> class omu_PrimBool : public omu_PrimEnum<bool, Inst>
{
    static_assert(Inst == 1 || Inst == 2, "there are two boolean flavours");

public:
    using omu_PrimEnum<bool, Inst>::omu_PrimEnum;

    void Accept(omu_PrimVisitor* visitor) const override;
    omu_Primitive* Copy() const override;
    std::uint32_t DynTypeId() const override;

    static std::uint32_t TypeId();
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    // ReadData and WriteData are those of omu_PrimEnumBase.
    static void PrintData(pnt_PrettyPrint& out, const void* object);
};

VEXOMU_EXTERN_TEMPLATE(omu_PrimBool<1>);
VEXOMU_EXTERN_TEMPLATE(omu_PrimBool<2>);
