#include "cls_ClassMetadata.h"

#include <algorithm>

cls_ClassMetadata::cls_ClassMetadata(const cow_String& name, std::uint32_t classId, int version, CtorFn ctor,
                                     std::uint32_t option)
    : m_name(name), m_classId(classId), m_option(option), m_ctor(ctor), m_version(version)
{}

cls_ClassMetadata::~cls_ClassMetadata() = default;

cls_ClassMetadata& cls_ClassMetadata::AddAttribute(const cls_FieldHandle& field, cls_AttributeType type,
                                                   std::uint32_t count, cls_CollectionType collection)
{
    m_attributes.try_emplace(field.FieldName(), field, type, count, collection);
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

int cls_ClassMetadata::MaxFieldID() const noexcept
{
    int largest = cls_FieldHandle::NOT_NUMBERED;
    for (const auto& [name, attribute] : m_attributes) {
        largest = std::max(largest, attribute.FieldID());
    }
    return largest;
}

const cls_AttributeMetadata* cls_ClassMetadata::FindAttribute(const cow_String& name) const
{
    const auto found = m_attributes.find(name);
    return found != m_attributes.end() ? &found->second : nullptr;
}

std::vector<const cls_AttributeMetadata*> cls_ClassMetadata::Attributes() const
{
    std::vector<const cls_AttributeMetadata*> attributes;
    attributes.reserve(m_attributes.size());
    for (const auto& [name, attribute] : m_attributes) {
        attributes.push_back(&attribute);
    }
    return attributes;
}
