#include "cls_UidCatalogEntry.h"

#include "VEXCRT.h"
#include "cls_UidCatalog_detail.h"

int cls_UidCatalogEntry::LowerRefCnt()
{
    // Nearly every uid ends here: the only handle, on its own thread, of an object without history. Only a handle can be
    // copied: while there is just one, this one, no other thread can change the count.
    cls_UidCatalog* const owner = cls_UidCatalogEntryGroup::Of(this).Owner();
    if (owner != nullptr && owner == cls_detail::CatalogHint::Get() && m_word.load(std::memory_order_acquire) == 1 &&
        m_history.Next() == &m_history) {
        owner->Free(this);
        return 0;
    }
    return LowerSlowly();
}

int cls_UidCatalogEntry::LowerSlowly()
{
    cls_UidCatalog* const catalog = cls_detail::OwnerHere(*this);
    if (catalog == nullptr) {
        return cls_UidCatalog::LowerElsewhere(*this);
    }
    if (m_word.load(std::memory_order_acquire) != 1) {
        if (const std::uintptr_t left = Lower(); left != 0) {
            return static_cast<int>(left);
        }
    }
    DeleteHistory();
    catalog->Free(this);
    return 0;
}

bool cls_UidCatalogEntry::Renew()
{
    if (m_word.load(std::memory_order_acquire) != 1 || cls_detail::OwnerHere(*this) == nullptr) {
        return false;
    }
    DeleteHistory();
    return true;
}

std::uintptr_t cls_UidCatalogEntry::Lower() noexcept
{
    if (thr_IsSingleThreaded()) {
        const std::uintptr_t left = m_word.load(std::memory_order_relaxed) - 1;
        m_word.store(left, std::memory_order_relaxed);
        return left;
    }
    return m_word.fetch_sub(1, std::memory_order_acq_rel) - 1;
}

void cls_UidCatalogEntry::DeleteHistory()
{
    m_word.store(1, std::memory_order_relaxed); // a uid made on the entry meanwhile must not free it a second time
    while (m_history.Next() != &m_history) {
        const cls_HistoryEntry* const first = m_history.Next();
        delete first;
        if (m_history.Next() == first) {
            VEXCRT::_assert("a history entry unlinks itself in its destructor", "source/cls/impl/cls_UidCatalogEntry",
                            __LINE__);
            m_history.Init();
        }
    }
}
