#include "cls_Uid.h"

#include "cls_UidCatalog.h"

cls_Uid::cls_Uid() : m_entry(cls_UidCatalog::OfThisThread().AllocateEntry()) {}

cls_Uid& cls_Uid::operator=(const cls_Uid& other)
{
    if (this != &other) {
        cls_UidCatalogEntry* const old = m_entry;
        m_entry = other.m_entry;
        m_entry->RaiseRefCnt();
        old->LowerRefCnt();
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
