// Objects of every streamable class, built from a stream that anybody may have written: read or refused; what was read is
// written, copied and shown as the same object.

#include "fuzz.h"

#include "bio_Ifilter.h"
#include "nex_TextException.h"
#include "obj_Stream.h"
#include "omu_Module.h"
#include "omu_Primitive.h"
#include "pnt_PrettyPrint.h"
#include "typ_ArchCompTable.h"

#include <sstream>
#include <utility>

namespace
{

constexpr std::uint32_t FIRST_ROW = 0x130000;
const std::uint32_t rowCount = [] {
    int count = 0;
    omu_initialize(count);
    return static_cast<std::uint32_t>(omu_ArchEntry().count);
}();

/// An object known by its type id alone.
class Object
{
public:
    explicit Object(const std::string& bytes)
    {
        bio_Ifilter in(bytes.data(), bytes.size());
        obj_InputP0Ptr(in, m_object, 0, m_typeId);
    }
    Object(void* object, std::uint32_t typeId) noexcept : m_object(object), m_typeId(typeId) {}
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    ~Object()
    {
        if (m_object != nullptr) {
            typ_ArchCompTable::GetDtorFunc(m_typeId)(m_object);
        }
    }

    Object Copy() const { return {obj_DeepCopyP0Ptr(m_object, m_typeId), m_typeId}; }
    std::string Bytes() const
    {
        bio_Ofilter out;
        obj_OutputP0Ptr(out, m_object, m_typeId);
        return BytesOf(out);
    }
    std::string Dump() const
    {
        std::ostringstream text;
        pnt_PrettyPrint out(text);
        obj_PrintP0Ptr(out, m_object, m_typeId);
        return text.str();
    }
    /// Null for an object that is no value.
    const omu_Primitive* AsValue() const
    {
        const bool isValue = m_object != nullptr && typ_ArchCompTable::IsParent(m_typeId, omu_Primitive::TypeId());
        return isValue ? static_cast<const omu_Primitive*>(m_object) : nullptr;
    }

private:
    void* m_object = nullptr;
    std::uint32_t m_typeId = 0;
};

void Check(const Object& object)
{
    const std::string bytes = object.Bytes();
    const Object again(bytes);
    Require(again.Bytes() == bytes);
    Require(object.Copy().Bytes() == bytes);
    Require(object.Dump() == again.Dump());
    if (const omu_Primitive* const value = object.AsValue()) {
        Require(value->AsString(0) == again.AsValue()->AsString(0));
        Require(value->TypeString() == again.AsValue()->TypeString());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput input(data, size);
    bio_Ofilter out;
    out << FIRST_ROW + input.Take<std::uint8_t>() % rowCount;
    std::string bytes = BytesOf(out);
    bytes += input.Rest();
    try {
        Check(Object(bytes));
    } catch (const nex_TextException&) { // refused
    }
    return 0;
}
