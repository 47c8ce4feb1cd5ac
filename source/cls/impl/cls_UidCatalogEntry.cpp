#include "cls_UidCatalogEntry.h"

#include "VEXCRT.h"
#include "cls_UidCatalog.h"

namespace
{
/// The catalogue of `entry` if it is the calling thread's, or null.
cls_UidCatalog* OwnerHere(const cls_UidCatalogEntry& entry) noexcept
{
    cls_UidCatalog* const owner = cls_UidCatalogEntryGroup::Of(&entry).Owner();
    if (owner == nullptr) {
        return nullptr;
    }
    cls_UidCatalog* const known = thr_ThreadHint<cls_UidCatalog>::Get();
    return owner == (known != nullptr ? known : cls_UidCatalog::FindOfThisThread()) ? owner : nullptr;
}
} // namespace

int cls_UidCatalogEntry::LowerRefCnt()
{
    return cls_UidCatalog::TakeBack(*this) ? 0 : LowerSlowly();
}

int cls_UidCatalogEntry::LowerSlowly()
{
    cls_UidCatalog* const catalog = OwnerHere(*this);
    if (catalog == nullptr) {
        return cls_UidCatalog::LowerElsewhere(*this);
    }
    if (CountIn(m_word.load(std::memory_order_acquire)) != 1) {
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
    if (CountIn(m_word.load(std::memory_order_acquire)) != 1 || OwnerHere(*this) == nullptr) {
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
        return CountIn(left);
    }
    return CountIn(m_word.fetch_sub(1, std::memory_order_acq_rel) - 1);
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
