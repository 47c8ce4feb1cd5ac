#include "cls_ReadVisitor.h"

#include "cls_FieldHandle.h"
#include "cls_MementoRead.h"

cls_ReadVisitor::cls_ReadVisitor(cls_MementoRead* memento) noexcept : m_memento(memento) {}

cls_ReadVisitor::cls_ReadVisitor(const cls_ReadVisitor& parent)
    : m_memento(parent.m_memento ? parent.m_memento->Clone() : nullptr)
{}

cls_ReadVisitor::cls_ReadVisitor(const cls_ReadVisitor& parent, const cls_FieldHandle& field)
    : m_memento(parent.m_memento ? parent.m_memento->MakeFieldReader(field) : nullptr)
{}

cls_ReadVisitor::~cls_ReadVisitor() = default;

int cls_ReadVisitor::FieldIsPresent(const cls_FieldHandle& field) const
{
    return m_memento ? m_memento->FieldIsPresent(field) : 0;
}

int cls_ReadVisitor::DataIsPresent(const cls_FieldHandle& field) const
{
    return m_memento ? m_memento->DataIsPresent(field) : 0;
}

cls_Uid cls_ReadVisitor::GetUid() const
{
    return m_memento ? cls_Uid(m_memento->GetUidEntry()) : cls_Uid::AllocateUid();
}

cow_String cls_ReadVisitor::Read(const cls_FieldHandle& field, const cow_String& defaultText) const
{
    return m_memento ? m_memento->ReadString(field, defaultText) : defaultText;
}

cow_String cls_ReadVisitor::DbId() const
{
    return m_memento ? m_memento->DbId() : cow_String();
}
