#include "omu_PrimSequence.h"

#include "VEXCRT.h"
#include "omu_TypeIds.h"

cow_String omu_PrimSequence::TypeString() const
{
    return "sequence";
}

std::uint32_t omu_PrimSequence::DynTypeId() const
{
    return TypeId();
}

std::uint32_t omu_PrimSequence::TypeId()
{
    return omu_TypeIdOf(omu_PrimSequenceRow);
}

void* omu_PrimSequence::CtorFunc(bio_Ifilter&, void*)
{
    VEXCRT::_assert("omu_PrimSequence::CtorFunc(): Illegal call to abstract class constructor.",
                    "source/omu/impl/omu_PrimSequence", __LINE__);
    return nullptr;
}

void omu_PrimSequence::DtorFunc(void* object)
{
    obj_Destroy<omu_PrimSequence>(object);
}

void omu_PrimSequence::ReadData(bio_Ifilter& in, void* object)
{
    omu_Primitive::ReadData(in, object);
}

void omu_PrimSequence::WriteData(bio_Ofilter& out, const void* object)
{
    omu_Primitive::WriteData(out, object);
}

void omu_PrimSequence::PrintData(pnt_PrettyPrint& out, const void* object)
{
    out.Open("omu_PrimSequence");
    omu_Primitive::PrintData(out, object);
    out.Close();
}
