#include "omu_QueryPathMsg.h"

#include "omu_TypeIds.h"

omu_QueryPathMsg::omu_QueryPathMsg(bio_Ifilter&) {}

std::uint32_t omu_QueryPathMsg::DynTypeId() const
{
    return TypeId();
}

std::uint32_t omu_QueryPathMsg::TypeId()
{
    return omu_TypeIdOf(omu_QueryPathMsgRow);
}

void* omu_QueryPathMsg::CtorFunc(bio_Ifilter& in, void* place)
{
    return obj_Construct<omu_QueryPathMsg>(in, place);
}

void omu_QueryPathMsg::DtorFunc(void* object)
{
    obj_Destroy<omu_QueryPathMsg>(object);
}

void omu_QueryPathMsg::ReadData(bio_Ifilter& in, void* object)
{
    in >> static_cast<omu_QueryPathMsg*>(object)->m_path;
}

void omu_QueryPathMsg::WriteData(bio_Ofilter& out, const void* object)
{
    out << static_cast<const omu_QueryPathMsg*>(object)->m_path;
}

void omu_QueryPathMsg::PrintData(pnt_PrettyPrint& out, const void* object)
{
    out.Open("omu_QueryPathMsg");
    out << static_cast<const omu_QueryPathMsg*>(object)->m_path;
    out.Close();
}
