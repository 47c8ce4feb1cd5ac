#include "omu_PrimPath.h"

#include "omu_PrimVisitor.h"
#include "omu_TypeIds.h"

omu_PrimPath::omu_PrimPath(const cow_List<cow_String>& components, char kind) noexcept
    : omu_Primitive('p'), m_kind(kind), m_components(components)
{}

omu_PrimPath::omu_PrimPath(bio_Ifilter& in) : omu_Primitive(in, 'p') {}

// Defined for users of the DLL who bind references to it.
constexpr char omu_PrimPath::DEFAULT_KIND;

cow_String omu_PrimPath::TypeString() const
{
    return "path";
}

cow_String omu_PrimPath::AsString(int) const
{
    std::size_t length = 2;
    for (const cow_String& component : m_components) {
        length += component.size() + 1;
    }
    cow_String text;
    text.Reserve(length);
    text.Append('\'');
    for (const cow_String& component : m_components) {
        text.Append(component);
        text.Append('.');
    }
    text.TrimRight(".");
    text.Append('\'');
    return text;
}

bool omu_PrimPath::operator==(const omu_Primitive& other) const
{
    return other.IsType('p') && m_components == static_cast<const omu_PrimPath&>(other).m_components;
}

void omu_PrimPath::Accept(omu_PrimVisitor* visitor) const
{
    visitor->VisitPath(*this);
}

omu_Primitive* omu_PrimPath::Copy() const
{
    return new omu_PrimPath(*this);
}

std::uint32_t omu_PrimPath::DynTypeId() const
{
    return TypeId();
}

std::uint32_t omu_PrimPath::TypeId()
{
    return omu_TypeIdOf(omu_PrimPathRow);
}

void* omu_PrimPath::CtorFunc(bio_Ifilter& in, void* place)
{
    return obj_Construct<omu_PrimPath>(in, place);
}

void omu_PrimPath::DtorFunc(void* object)
{
    obj_Destroy<omu_PrimPath>(object);
}

void omu_PrimPath::ReadData(bio_Ifilter& in, void* object)
{
    omu_Primitive::ReadData(in, object);
    auto& path = *static_cast<omu_PrimPath*>(object);
    in >> path.m_components >> path.m_kind;
}

void omu_PrimPath::WriteData(bio_Ofilter& out, const void* object)
{
    omu_Primitive::WriteData(out, object);
    const auto& path = *static_cast<const omu_PrimPath*>(object);
    out << path.m_components << path.m_kind;
}

void omu_PrimPath::PrintData(pnt_PrettyPrint& out, const void* object)
{
    const auto& path = *static_cast<const omu_PrimPath*>(object);
    out.Open("omu_PrimPath");
    omu_Primitive::PrintData(out, object);
    out << path.m_components;
    out.Field(path.m_kind);
    out.Close();
}
