#include "cls_WriteVisitor.h"

#include "cls_AgentRequest.h"
#include "cls_MementoWrite.h"

cls_WriteVisitor::cls_WriteVisitor(cls_MementoWrite* memento) noexcept : m_memento(memento) {}

cls_WriteVisitor::cls_WriteVisitor(const cls_AgentRequest& request) noexcept : m_request(&request) {}

cls_WriteVisitor::cls_WriteVisitor(const cls_WriteVisitor& parent, const cls_FieldHandle& field,
                                   const cls_PayloadHolder* payload)
    : m_parent(&parent), m_field(field), m_payload(payload)
{}

cls_WriteVisitor::cls_WriteVisitor(const cls_WriteVisitor& parent, std::uint32_t element) noexcept
    : m_parent(&parent), m_element(element)
{}

cls_WriteVisitor::~cls_WriteVisitor() = default;

// Defined for users of the DLL who bind references to it.
constexpr std::uint32_t cls_WriteVisitor::NO_ELEMENT;

int cls_WriteVisitor::StartWrite(std::uint32_t classId, const cls_Uid& uid) const
{
    if (!m_memento) {
        m_memento = MakeMemento(classId, uid);
    }
    return m_memento ? 1 : 0;
}

std::unique_ptr<cls_MementoWrite> cls_WriteVisitor::MakeMemento(std::uint32_t classId, const cls_Uid& uid) const
{
    if (m_request != nullptr) {
        return std::unique_ptr<cls_MementoWrite>(m_request->MakeWriteObj(classId, uid));
    }
    cls_MementoWrite* const record = m_parent != nullptr ? m_parent->Memento() : nullptr;
    if (record == nullptr) {
        return nullptr; // the parent was refused its record: what it holds is not written either
    }
    return std::unique_ptr<cls_MementoWrite>(m_element != NO_ELEMENT
                                                 ? record->MakeElementWriter(m_element, uid)
                                                 : record->MakeFieldWriter(m_field, classId, uid, m_payload));
}

int cls_WriteVisitor::FieldIsPresent(const cls_FieldHandle& field) const
{
    return m_memento ? m_memento->FieldIsPresent(field) : 0;
}

void cls_WriteVisitor::CheckCollectionType(cls_CollectionType type) const
{
    if (m_parent != nullptr && m_parent->Memento() != nullptr && !m_field.FieldName().IsEmpty()) {
        m_parent->Memento()->CheckCollectionType(type, m_field);
    }
}
