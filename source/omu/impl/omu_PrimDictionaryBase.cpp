#include "omu_PrimDictionaryBase.h"

#include "VEXCRT.h"
#include "omu_TypeIds.h"

cow_String omu_PrimDictionaryBase::TypeString() const
{
    return "dictionary";
}

std::uint32_t omu_PrimDictionaryBase::DynTypeId() const
{
    return TypeId();
}

std::uint32_t omu_PrimDictionaryBase::TypeId()
{
    return omu_TypeIdOf(omu_PrimDictionaryBaseRow);
}

void* omu_PrimDictionaryBase::CtorFunc(bio_Ifilter&, void*)
{
    VEXCRT::_assert("omu_PrimDictionaryBase::CtorFunc(): Illegal call to abstract class constructor.",
                    "source/omu/impl/omu_PrimDictionaryBase", __LINE__);
    return nullptr;
}

void omu_PrimDictionaryBase::DtorFunc(void* object)
{
    obj_Destroy<omu_PrimDictionaryBase>(object);
}

void omu_PrimDictionaryBase::ReadData(bio_Ifilter& in, void* object)
{
    omu_Primitive::ReadData(in, object);
}

void omu_PrimDictionaryBase::WriteData(bio_Ofilter& out, const void* object)
{
    omu_Primitive::WriteData(out, object);
}

void omu_PrimDictionaryBase::PrintData(pnt_PrettyPrint& out, const void* object)
{
    out.Open("omu_PrimDictionaryBase");
    omu_Primitive::PrintData(out, object);
    out.Close();
}
