#include "omu_PrimEnumBase.h"

#include "VEXCRT.h"
#include "cls_ClassRegistrar.h"
#include "cls_MementoWrite.h"
#include "cls_ReadVisitor.h"
#include "cls_WriteVisitor.h"
#include "nex_TextException.h"
#include "omu_PrimHolder.h"
#include "omu_PrimVisitor.h"
#include "omu_TypeIds.h"
#include "omu_ValueErrorException.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace
{

constexpr const char* SOURCE = "source/omu/impl/omu_PrimEnumBase";
constexpr const char* TEMPLATE_SOURCE = "source/include/omu_PrimEnum";

cls_FieldHandle TextField()
{
    return cls_FieldHandle("stringValue");
}

} // namespace

omu_PrimEnumBase::omu_PrimEnumBase(bio_Ifilter& in) : omu_Primitive(in, 'c') {}

cow_String omu_PrimEnumBase::TypeString() const
{
    return m_text.IsEmpty() ? cow_String("symbolic constant") : m_text;
}

cow_String omu_PrimEnumBase::AsString(int) const
{
    return m_text;
}

bool omu_PrimEnumBase::operator==(const omu_Primitive& other) const
{
    return other.IsType('c') && m_text == static_cast<const omu_PrimEnumBase&>(other).m_text;
}

void omu_PrimEnumBase::Accept(omu_PrimVisitor* visitor) const
{
    visitor->VisitEnum(*this);
}

omu_Primitive* omu_PrimEnumBase::Copy() const
{
    return new omu_PrimEnumBase(*this);
}

std::uint32_t omu_PrimEnumBase::DynTypeId() const
{
    return TypeId();
}

bool omu_PrimEnumBase::SetValue(const char* text)
{
    SetText(text);
    return true;
}

cow_Map<cow_String, unsigned int> omu_PrimEnumBase::PermissibleValues() const
{
    VEXCRT::_assert("Permissible values not available from base class", SOURCE, __LINE__);
    return {};
}

std::uint32_t omu_PrimEnumBase::TypeId()
{
    return omu_TypeIdOf(omu_PrimEnumBaseRow);
}

void* omu_PrimEnumBase::CtorFunc(bio_Ifilter& in, void* place)
{
    return obj_Construct<omu_PrimEnumBase>(in, place);
}

void omu_PrimEnumBase::DtorFunc(void* object)
{
    obj_Destroy<omu_PrimEnumBase>(object);
}

void omu_PrimEnumBase::ReadData(bio_Ifilter& in, void* object)
{
    omu_Primitive::ReadData(in, object);
    auto& constant = *static_cast<omu_PrimEnumBase*>(object);
    const std::uint64_t start = in.Offset();
    cow_String text;
    in >> text;
    // A zero byte would end the name too early, hence the second look.
    if (!constant.SetValue(text.AsCharPtr()) || constant.m_text != text) {
        in.FailAt(("unknown symbolic constant \"" + text + "\"").AsCharPtr(), start);
    }
}

void omu_PrimEnumBase::WriteData(bio_Ofilter& out, const void* object)
{
    omu_Primitive::WriteData(out, object);
    out << static_cast<const omu_PrimEnumBase*>(object)->m_text;
}

void omu_PrimEnumBase::PrintData(pnt_PrettyPrint& out, const void* object)
{
    out.Open("omu_PrimEnumBase");
    omu_Primitive::PrintData(out, object);
    out.Field(static_cast<const omu_PrimEnumBase*>(object)->m_text);
    out.Close();
}

void omu_PrimEnumBase::CowDtor(cls_PayloadHolder* payload)
{
    *reinterpret_cast<omu_PrimHolder*>(payload) = omu_PrimHolder();
}

cow_String omu_PrimEnumBase::JoinNames(const cow_Map<cow_String, unsigned int>& names)
{
    std::vector<std::pair<unsigned int, cow_String>> ordered;
    for (const auto& [name, position] : names) {
        ordered.emplace_back(position, name);
    }
    std::sort(ordered.begin(), ordered.end());
    cow_String text;
    for (std::size_t i = 0; i < ordered.size(); ++i) {
        if (i != 0) {
            text.Append(i + 1 == ordered.size() ? " or " : ", ");
        }
        text.Append(ordered[i].second);
    }
    return text;
}

void omu_PrimEnumBase::ThrowNotAllowed(const cow_String& text, int line)
{
    omu_ValueErrorException("omu_PrimEnum(const cow_String&) - Enum value not allowed:" + text)
        .Throw(TEMPLATE_SOURCE, line);
}

void omu_PrimEnumBase::ThrowNotStored(const cow_String& text, int line)
{
    nex_TextException("In omu_PrimEnum::omu_PrimEnum() Enum value not allowed: " + text).Throw(TEMPLATE_SOURCE, line);
}

void omu_PrimEnumBase::RegisterMetadata(cls_ClassRegistrar& registrar, void* (*ctor)(cls_ReadVisitor&))
{
    registrar.CreateClassMD("omu_PrimEnum", TypeId(), /*version=*/1, ctor, /*option=*/1)
        .AddDtor(&CowDtor)
        .AddAttribute(TextField(), cls_ATTRIBUTE_STRING, 1, cls_COLLECTION_NONE);
}

cow_String omu_PrimEnumBase::ReadStoredText(const cls_ReadVisitor& visitor)
{
    return visitor.Read(TextField(), cow_String());
}

void omu_PrimEnumBase::WriteStored(const cls_WriteVisitor& visitor, const cls_Uid& uid) const
{
    if (visitor.StartWrite(TypeId(), uid) != 0) {
        visitor.Memento()->WriteString(TextField(), m_text);
    }
}
