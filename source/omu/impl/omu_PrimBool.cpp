#include "omu_PrimBool.h"

#include "omu_PrimVisitor.h"
#include "omu_TypeIds.h"

template <> const omu_EnumRow<bool>* omu_EnumTable<bool, 1>()
{
    static constexpr omu_EnumRow<bool> rows[] = {{"TRUE", true}, {"FALSE", false}, {nullptr, false}};
    return rows;
}

template <> const omu_EnumRow<bool>* omu_EnumTable<bool, 2>()
{
    static constexpr omu_EnumRow<bool> rows[] = {{"ON", true}, {"OFF", false}, {nullptr, false}};
    return rows;
}

template <int Inst> void omu_PrimBool<Inst>::Accept(omu_PrimVisitor* visitor) const
{
    visitor->VisitBool(*this);
}

template <int Inst> omu_Primitive* omu_PrimBool<Inst>::Copy() const
{
    return new omu_PrimBool(*this);
}

template <int Inst> std::uint32_t omu_PrimBool<Inst>::DynTypeId() const
{
    return TypeId();
}

template <int Inst> std::uint32_t omu_PrimBool<Inst>::TypeId()
{
    return omu_TypeIdOf(Inst == 1 ? omu_TrueFalseConstRow : omu_OnOffConstRow);
}

template <int Inst> void* omu_PrimBool<Inst>::CtorFunc(bio_Ifilter& in, void* place)
{
    return obj_Construct<omu_PrimBool>(in, place);
}

template <int Inst> void omu_PrimBool<Inst>::DtorFunc(void* object)
{
    obj_Destroy<omu_PrimBool>(object);
}

template <int Inst> void omu_PrimBool<Inst>::PrintData(pnt_PrettyPrint& out, const void* object)
{
    // Both flavours print this very text: promised.
    out.Open("omu_PrimBool<Inst>");
    omu_PrimEnumBase::PrintData(out, object);
    out.Close();
}

template class omu_PrimEnum<bool, 1>;
template class omu_PrimEnum<bool, 2>;
template class omu_PrimBool<1>;
template class omu_PrimBool<2>;
