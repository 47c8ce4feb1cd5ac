#include "cls_ClassMetadata.h"

#include "omi_BtreeIterator.h"

#include <algorithm>

cls_ClassMetadata::cls_ClassMetadata(const cow_String& name, std::uint32_t classId, int version, CtorFn ctor,
                                     std::uint32_t option)
    : m_name(name), m_classId(classId), m_option(option), m_ctor(ctor), m_version(version)
{}

cls_ClassMetadata::~cls_ClassMetadata() = default;

// Defined for users of the DLL who bind references to it.
constexpr int cls_ClassMetadata::DEFAULT_TABLE_EXTENT_QUANTUM;

cls_ClassMetadata& cls_ClassMetadata::AddAttribute(const cls_FieldHandle& field, cls_AttributeType type,
                                                   std::uint32_t count, cls_CollectionType collection)
{
    m_attributes.Insert(field.FieldName(), cls_AttributeMetadata(field, type, count, collection));
    return *this;
}

cls_ClassMetadata& cls_ClassMetadata::AddDtor(DtorFn dtor) noexcept
{
    m_dtor = dtor;
    return *this;
}

cls_ClassMetadata& cls_ClassMetadata::AddTableExtentQuantum(int quantum) noexcept
{
    m_tableExtentQuantum = quantum;
    return *this;
}

int cls_ClassMetadata::MaxFieldID() const
{
    int largest = cls_FieldHandle::NOT_NUMBERED;
    omi_BtreeIterator<cow_String, cls_AttributeMetadata> attribute(m_attributes);
    for (attribute.First(); !attribute.IsDone(); attribute.Next()) {
        largest = std::max(largest, attribute.Value().FieldID());
    }
    return largest;
}

const cls_AttributeMetadata* cls_ClassMetadata::FindAttribute(const cow_String& name) const
{
    return m_attributes.Find(name);
}

std::vector<const cls_AttributeMetadata*> cls_ClassMetadata::Attributes() const
{
    std::vector<const cls_AttributeMetadata*> attributes;
    attributes.reserve(static_cast<std::size_t>(m_attributes.Count()));
    omi_BtreeIterator<cow_String, cls_AttributeMetadata> attribute(m_attributes);
    for (attribute.First(); !attribute.IsDone(); attribute.Next()) {
        attributes.push_back(&attribute.Value());
    }
    return attributes;
}
