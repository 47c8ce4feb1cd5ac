#include "typ_ArchCompTable.h"

#include "VEXCRT.h"

#include <atomic>

namespace
{
constexpr std::uint32_t COMPONENTS = 0x10000;
constexpr int MAX_LEVELS = 100; // no class derives so deeply: parents that go on form a circle

// The count is stored before the rows and read after them, so that a reader never meets rows without their
// count.
struct Component
{
    std::atomic<const typ_Entry*> rows;
    std::atomic<std::uint32_t> count;
};

// Zero pages until a component is inserted.
constinit Component components[COMPONENTS];
} // namespace

void typ_ArchCompTable::InsertEntry(std::uint32_t component, const typ_ArchCompEntry& entry)
{
    if (component >= COMPONENTS) {
        VEXCRT::_assert("component < 65536", "platform/utl/impl/typ_ArchCompTable", __LINE__);
        return;
    }
    components[component].count.store(entry.count, std::memory_order_relaxed);
    components[component].rows.store(entry.rows, std::memory_order_release);
}

const typ_Entry* typ_ArchCompTable::Find(std::uint32_t typeId) noexcept
{
    const Component& component = components[typeId >> 16];
    const std::uint32_t row = typeId & 0xFFFF;
    const typ_Entry* const rows = component.rows.load(std::memory_order_acquire);
    if (rows == nullptr || row == 0 || row >= component.count.load(std::memory_order_relaxed)) {
        return nullptr;
    }
    return rows + row;
}

bool typ_ArchCompTable::IsParent(std::uint32_t typeId, std::uint32_t ancestorId) noexcept
{
    for (int level = 0; level < MAX_LEVELS; ++level) {
        if (typeId == ancestorId) {
            return true;
        }
        const typ_Entry* const row = Find(typeId);
        if (row == nullptr || row->parent == typ_ROOT) { // which is no type, so nothing derives from it
            return false;
        }
        typeId = row->parent;
    }
    VEXCRT::_assert("the parents of a type end at a root", "platform/utl/impl/typ_ArchCompTable", __LINE__);
    return false;
}

cow_String typ_ArchCompTable::GetName(std::uint32_t typeId)
{
    const typ_Entry* const row = Find(typeId);
    return row != nullptr ? row->name : nullptr;
}

typ_Entry::DtorFn typ_ArchCompTable::GetDtorFunc(std::uint32_t typeId) noexcept
{
    const typ_Entry* const row = Find(typeId);
    return row != nullptr ? row->dtor : nullptr;
}
