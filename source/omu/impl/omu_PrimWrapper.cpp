#include "omu_PrimWrapper.h"

#include "VEXCRT.h"
#include "omu_TypeIds.h"
#include "typ_ArchCompTable.h"

namespace
{

constexpr const char* SOURCE = "source/omu/impl/omu_PrimWrapper";

} // namespace

omu_PrimWrapper::omu_PrimWrapper(std::uint32_t typeId, void* object, const omu_PrimDictionary<cow_String>& attributes)
    : omu_Primitive('w'), m_typeId(typeId), m_object(object), m_attributes(attributes)
{}

omu_PrimWrapper::omu_PrimWrapper(bio_Ifilter& in) : omu_Primitive(in, 'w') {}

omu_PrimWrapper::omu_PrimWrapper(const omu_PrimWrapper& other)
    : omu_Primitive(other), m_typeId(other.m_typeId), m_attributes(other.m_attributes)
{
    m_object = obj_DeepCopyP0Ptr(other.m_object, m_typeId);
}

omu_PrimWrapper::~omu_PrimWrapper()
{
    DestroyObject();
}

void omu_PrimWrapper::DestroyObject() noexcept
{
    if (m_object == nullptr) {
        return;
    }
    if (const typ_Entry::DtorFn dtor = typ_ArchCompTable::GetDtorFunc(m_typeId)) {
        dtor(m_object);
    } else {
        VEXCRT::_assert("dtor != 0", SOURCE, __LINE__);
    }
    m_object = nullptr;
}

cow_String omu_PrimWrapper::TypeString() const
{
    return "Wrapper";
}

cow_String omu_PrimWrapper::AsString(int) const
{
    return "Wrapper";
}

bool omu_PrimWrapper::operator==(const omu_Primitive&) const
{
    VEXCRT::_assert("Wrappers should not be compared", SOURCE, __LINE__);
    return false;
}

void omu_PrimWrapper::Accept(omu_PrimVisitor*) const
{
    VEXCRT::_assert("Wrappers should not be visited", SOURCE, __LINE__);
}

omu_Primitive* omu_PrimWrapper::Copy() const
{
    return new omu_PrimWrapper(*this);
}

std::uint32_t omu_PrimWrapper::DynTypeId() const
{
    return TypeId();
}

std::uint32_t omu_PrimWrapper::TypeId()
{
    return omu_TypeIdOf(omu_PrimWrapperRow);
}

void* omu_PrimWrapper::CtorFunc(bio_Ifilter& in, void* place)
{
    return obj_Construct<omu_PrimWrapper>(in, place);
}

void omu_PrimWrapper::DtorFunc(void* object)
{
    obj_Destroy<omu_PrimWrapper>(object);
}

void omu_PrimWrapper::ReadData(bio_Ifilter& in, void* object)
{
    auto& wrapper = *static_cast<omu_PrimWrapper*>(object);
    wrapper.DestroyObject();
    std::uint32_t typeId = 0;
    in >> typeId;
    const std::uint64_t start = in.Offset();
    obj_InputP0Ptr(in, wrapper.m_object, typeId, wrapper.m_typeId);
    if (typeId == 0 && wrapper.m_object != nullptr) {
        // No writer makes it, and any class at all would be accepted here.
        in.FailAt("wrapped object of no stated type", start);
    }
    in >> wrapper.m_attributes;
}

void omu_PrimWrapper::WriteData(bio_Ofilter& out, const void* object)
{
    const auto& wrapper = *static_cast<const omu_PrimWrapper*>(object);
    out << wrapper.m_typeId;
    obj_OutputP0Ptr(out, wrapper.m_object, wrapper.m_typeId);
    out << wrapper.m_attributes;
}

void omu_PrimWrapper::PrintData(pnt_PrettyPrint& out, const void* object)
{
    const auto& wrapper = *static_cast<const omu_PrimWrapper*>(object);
    out.Open("omu_PrimWrapper");
    omu_Primitive::PrintData(out, object);
    out.Field(wrapper.m_typeId);
    if (wrapper.m_object != nullptr) {
        obj_PrintP0Obj(out, wrapper.m_object, wrapper.m_typeId);
    } else {
        out.Field("(null)");
    }
    out << wrapper.m_attributes;
    out.Close();
}
