#include "cls_PC.h"

#include "VEXCRT.h"

cls_PC::~cls_PC()
{
    Unlink();
}

void cls_PC::Flush() const
{
    VEXCRT::_assert("Can't flush non-specialized cls_PC object.", "source/cls/impl/cls_PC", __LINE__);
}

void cls_PC::Link(cls_PC* node) noexcept
{
    node->Unlink();
    node->m_next = this;
    node->m_previous = m_previous;
    m_previous->m_next = node;
    m_previous = node;
}

void cls_PC::Unlink() noexcept
{
    m_previous->m_next = m_next;
    m_next->m_previous = m_previous;
    m_next = this;
    m_previous = this;
}
