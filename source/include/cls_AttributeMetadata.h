#pragma once

#include "VEXomu_export.h"
#include "cls_CollectionType.h"
#include "cls_FieldHandle.h"
#include "omi_Btree.h"

#include <cstdint>

/// One persistent attribute of a class, as its metadata holds it. An ordinary value.
class VEXOMU_API cls_AttributeMetadata
{
public:
    cls_AttributeMetadata(const cls_FieldHandle& field, cls_AttributeType type, std::uint32_t count,
                          cls_CollectionType collection)
        : m_field(field), m_type(type), m_count(count), m_collection(collection)
    {}

    int FieldID() const noexcept { return m_field.FieldID(); }
    const cow_String& FieldName() const noexcept { return m_field.FieldName(); }
    cls_AttributeType Type() const noexcept { return m_type; }
    std::uint32_t Count() const noexcept { return m_count; }
    cls_CollectionType Collection() const noexcept { return m_collection; }

private:
    cls_FieldHandle m_field;
    cls_AttributeType m_type;
    std::uint32_t m_count;
    cls_CollectionType m_collection;
};

/// A field without a number and a name, of no type, with a count of 1 and no collection.
template <> VEXOMU_API cls_AttributeMetadata omi_Btree<cow_String, cls_AttributeMetadata>::GetNullValue();
