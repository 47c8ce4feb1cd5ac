#include "cls_HistoryEntry.h"

cls_HistoryEntry::~cls_HistoryEntry() = default;

void cls_HistoryEntry::Link(cls_HistoryEntry* before) noexcept
{
    m_next = before;
    m_previous = before->m_previous;
    m_previous->m_next = this;
    before->m_previous = this;
}

void cls_HistoryEntry::UnLink() noexcept
{
    m_previous->m_next = m_next;
    m_next->m_previous = m_previous;
    Init();
}
