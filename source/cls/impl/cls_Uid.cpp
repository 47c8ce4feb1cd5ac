#include "cls_Uid.h"

#include <utility>

cls_Uid& cls_Uid::operator=(const cls_Uid& other)
{
    if (m_entry != other.m_entry) {
        other.m_entry->RaiseRefCnt();
        std::exchange(m_entry, other.m_entry)->LowerRefCnt();
    }
    return *this;
}

void cls_Uid::NewUid()
{
    // A freed entry is the next one handed out: a sole handle gets its own back, so nothing needs to be allocated.
    if (!m_entry->Renew()) {
        *this = AllocateUid();
    }
}
