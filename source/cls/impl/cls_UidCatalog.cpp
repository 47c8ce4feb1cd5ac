#include "cls_UidCatalog.h"

#include "VEXCRT.h"
#include "thr_GlobalLock.h"
#include "thr_ThrSingletonRegistry.h"

template class thr_ThreadSingletonBase<cls_UidCatalog>;
template class thr_ThreadSingleton<cls_UidCatalog>;
template class thr_ThreadHint<cls_UidCatalog>;

namespace
{
// Below everything that may hold uids.
constexpr thr_ThreadObjectDestructLevel DESTRUCT_LEVEL{2};

// The groups that outlived their catalogues, chained as their previous groups. As all that a foreign thread may touch -
// every group's owner and count, every catalogue's dropped entries - they change under thr_GlobalLock.
constinit cls_UidCatalogEntryGroup* orphans = nullptr;
} // namespace

cls_UidCatalog::cls_UidCatalog()
{
    thr_GlobalSingleton<thr_ThrSingletonRegistry>::Instance().SetDestructLevel(&Finalize, DESTRUCT_LEVEL);
    thr_ThreadHint<cls_UidCatalog>::Set(this);
}

cls_UidCatalog::~cls_UidCatalog()
{
    cls_UidCatalogEntryGroup* unused = nullptr;
    while (!RetireGroups(unused)) {
        TakeBackDropped();
    }
    delete unused;
    thr_ThreadHint<cls_UidCatalog>::Set(nullptr);
}

int cls_UidCatalog::Finalize()
{
    return thr_ThreadSingletonBase<cls_UidCatalog>::Finalize();
}

cls_UidCatalog& cls_UidCatalog::OfThisThread()
{
    return thr_ThreadSingleton<cls_UidCatalog>::Instance();
}

cls_UidCatalog* cls_UidCatalog::FindOfThisThread() noexcept
{
    return thr_ThreadSingletonBase<cls_UidCatalog>::Instance();
}

int cls_UidCatalog::CountOrphanedGroups()
{
    const thr_GlobalLock::Holder lock;
    int count = 0;
    for (const auto* group = orphans; group != nullptr; group = group->m_previous) {
        ++count;
    }
    return count;
}

void cls_UidCatalog::Refill()
{
    TakeBackDropped();
    if (m_free[-1] == nullptr) {
        AddGroup();
    }
}

/// Makes another group of free entries when there is none left.
void cls_UidCatalog::AddGroup()
{
    constexpr std::size_t MORE = cls_UidCatalogEntryGroup::ENTRIES;
    if (m_count + MORE + 1 > m_room) {
        const std::size_t room = 2 * m_count + MORE + 1;
        m_stack = std::make_unique_for_overwrite<cls_UidCatalogEntry*[]>(room);
        m_room = room;
        m_stack[0] = nullptr;
        m_free = &m_stack[1];
    }
    m_groups = new cls_UidCatalogEntryGroup(m_groups);
    m_groups->m_owner.store(this, std::memory_order_relaxed);
    m_count += MORE;
    m_free += MORE;
    cls_UidCatalogEntry** place = m_free;
    for (cls_UidCatalogEntry* entry = m_groups->First(); entry != nullptr;) {
        cls_UidCatalogEntry* const next = entry->GetNext();
        entry->InitInUse();
        *--place = entry;
        entry = next;
    }
}

void cls_UidCatalog::TakeBackDropped()
{
    cls_UidCatalogEntry* entry = nullptr;
    {
        const thr_GlobalLock::Holder lock;
        entry = m_dropped.exchange(nullptr, std::memory_order_relaxed);
    }
    while (entry != nullptr) {
        cls_UidCatalogEntry* const next = entry->GetNext();
        entry->DeleteHistory(); // the storage engine's code: not under the lock
        Free(entry);
        entry = next;
    }
}

/// Gives up the groups: those with entries in use to the orphans, the others to `unused`. False, and nothing done, while
/// dropped entries wait.
bool cls_UidCatalog::RetireGroups(cls_UidCatalogEntryGroup*& unused) noexcept
{
    const thr_GlobalLock::Holder lock;
    if (m_dropped.load(std::memory_order_relaxed) != nullptr) {
        return false;
    }
    for (auto* group = m_groups; group != nullptr; group = group->m_previous) {
        group->m_inUse = cls_UidCatalogEntryGroup::ENTRIES;
    }
    for (; m_free[-1] != nullptr; --m_free) {
        --cls_UidCatalogEntryGroup::Of(m_free[-1]).m_inUse;
    }
    while (m_groups != nullptr) {
        cls_UidCatalogEntryGroup* const group = m_groups;
        m_groups = group->m_previous;
        group->m_owner.store(group, std::memory_order_relaxed);
        cls_UidCatalogEntryGroup*& chain = group->m_inUse != 0 ? orphans : unused;
        group->m_previous = chain;
        chain = group;
    }
    return true;
}

int cls_UidCatalog::LowerElsewhere(cls_UidCatalogEntry& entry)
{
    std::uintptr_t left = 0;
    bool isOrphan = false;
    {
        const thr_GlobalLock::Holder lock;
        cls_UidCatalog* const owner = cls_UidCatalogEntryGroup::Of(&entry).Owner();
        isOrphan = owner == nullptr;
        left = entry.Lower();
        if (left == 0 && !isOrphan) {
            entry.SetNext(owner->m_dropped.load(std::memory_order_relaxed));
            owner->m_dropped.store(&entry, std::memory_order_relaxed);
        }
    }
    if (!isOrphan) {
        VEXCRT::_assert("a cls_Uid is released on the thread that allocated it", "source/cls/impl/cls_UidCatalog",
                        __LINE__);
    } else if (left == 0) {
        FreeOrphan(entry);
    }
    return static_cast<int>(left);
}

void cls_UidCatalog::FreeOrphan(cls_UidCatalogEntry& entry)
{
    cls_UidCatalogEntryGroup* const group = &cls_UidCatalogEntryGroup::Of(&entry);
    entry.DeleteHistory();
    {
        const thr_GlobalLock::Holder lock;
        if (--group->m_inUse != 0) {
            return;
        }
        cls_UidCatalogEntryGroup** link = &orphans;
        while (*link != group) {
            link = &(*link)->m_previous;
        }
        *link = group->m_previous;
        group->m_previous = nullptr;
    }
    delete group;
}
