#include "omu_Primitive.h"

#include "VEXCRT.h"
#include "nex_TextException.h"
#include "omu_PrimWrapper.h"
#include "omu_TypeIds.h"
#include "typ_ArchCompTable.h"

#include <algorithm>
#include <string_view>

static_assert(omu_Primitive::MAX_NESTING == bio_MAX_NESTING, "whatever can be built can be written");

namespace
{

constexpr const char* SOURCE = "source/omu/impl/omu_Primitive";

} // namespace

// Defined for users of the DLL who bind references to it.
constexpr int omu_Primitive::MAX_NESTING;

cow_String omu_Primitive::TypeString() const
{
    return "primitive";
}

std::uint32_t omu_Primitive::DynTypeId() const
{
    return TypeId();
}

bool omu_Primitive::IsA(std::uint32_t typeId) const
{
    return typ_ArchCompTable::IsParent(DynTypeId(), typeId);
}

std::uint32_t omu_Primitive::TypeId()
{
    return omu_TypeIdOf(omu_PrimitiveRow);
}

void* omu_Primitive::CtorFunc(bio_Ifilter&, void*)
{
    VEXCRT::_assert("omu_Primitive::CtorFunc(): Illegal call to abstract class constructor.", SOURCE, __LINE__);
    return nullptr;
}

void omu_Primitive::DtorFunc(void* object)
{
    obj_Destroy<omu_Primitive>(object);
}

void omu_Primitive::ReadData(bio_Ifilter& in, void* object)
{
    omu_Primitive& value = *static_cast<omu_Primitive*>(object);
    const char ownCode[] = {value.m_typeCode, '\0'};
    ReadTypeCode(in, value, ownCode);
}

void omu_Primitive::ReadTypeCode(bio_Ifilter& in, omu_Primitive& value, const char* allowedCodes)
{
    const std::uint64_t start = in.Offset();
    char code = '\0';
    in >> code;
    // One or two characters: looking at them here is cheaper than any call, and every value that is read gets here.
    const char* allowed = allowedCodes;
    while (*allowed != '\0' && *allowed != code) {
        ++allowed;
    }
    if (*allowed == '\0') {
        in.FailAt("type code of another class", start);
    }
    value.m_typeCode = code;
}

void omu_Primitive::NoteContainer(const omu_Primitive& item)
{
    // The attributes of a wrapper may change at any time, so it keeps no account of its own.
    const bool isWrapper = item.IsType('w');
    const omu_Primitive& inner = isWrapper ? static_cast<const omu_PrimWrapper&>(item).Attributes() : item;
    const int levels = inner.m_nesting + (isWrapper ? 2 : 1);
    if (levels > MAX_NESTING) {
        nex_TextException("value nested deeper than " + cow_String(MAX_NESTING) + " levels").Throw(SOURCE, __LINE__);
    }
    m_nesting = static_cast<std::uint8_t>(std::max<int>(m_nesting, levels));
    m_hasStreamForm = m_hasStreamForm && inner.m_hasStreamForm;
}

void omu_Primitive::RequireStreamForm(const omu_Primitive& value)
{
    if (!value.m_hasStreamForm) {
        nex_TextException("kernel objects cannot be written to a stream").Throw(SOURCE, __LINE__);
    }
}

void omu_Primitive::WriteData(bio_Ofilter& out, const void* object)
{
    out << static_cast<const omu_Primitive*>(object)->m_typeCode;
}

void omu_Primitive::PrintData(pnt_PrettyPrint& out, const void* object)
{
    out.Open("omu_Primitive");
    out.Field(static_cast<const omu_Primitive*>(object)->m_typeCode);
    out.Close();
}
