#include "omu_PrimList.h"

#include "omu_PrimTuple_detail.h"
#include "omu_PrimVisitor.h"
#include "omu_TypeIds.h"

cow_String omu_PrimList::TypeString() const
{
    return "list";
}

void omu_PrimList::Accept(omu_PrimVisitor* visitor) const
{
    visitor->VisitList(*this);
}

omu_Primitive* omu_PrimList::Copy() const
{
    return new omu_PrimList(*this);
}

std::uint32_t omu_PrimList::DynTypeId() const
{
    return TypeId();
}

omu_PrimSequence* omu_PrimList::Slice(int low, int high) const
{
    return SliceAs<omu_PrimList>(low, high);
}

omu_PrimSequence* omu_PrimList::Repeat(int count) const
{
    return RepeatAs<omu_PrimList>(count);
}

omu_PrimSequence* omu_PrimList::Concat(omu_PrimSequence* other) const
{
    return ConcatAs<omu_PrimList>(other);
}

std::uint32_t omu_PrimList::TypeId()
{
    return omu_TypeIdOf(omu_PrimListRow);
}

void* omu_PrimList::CtorFunc(bio_Ifilter& in, void* place)
{
    return obj_Construct<omu_PrimList>(in, place);
}

void omu_PrimList::DtorFunc(void* object)
{
    obj_Destroy<omu_PrimList>(object);
}

void omu_PrimList::ReadData(bio_Ifilter& in, void* object)
{
    omu_PrimTuple::ReadData(in, object);
    in >> static_cast<omu_PrimList*>(object)->m_extra;
}

void omu_PrimList::WriteData(bio_Ofilter& out, const void* object)
{
    omu_PrimTuple::WriteData(out, object);
    out << static_cast<const omu_PrimList*>(object)->m_extra;
}

void omu_PrimList::PrintData(pnt_PrettyPrint& out, const void* object)
{
    out.Open("omu_PrimList");
    omu_PrimTuple::PrintData(out, object);
    out.Field(static_cast<const omu_PrimList*>(object)->m_extra);
    out.Close();
}
