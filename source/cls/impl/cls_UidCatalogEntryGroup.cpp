#include "cls_UidCatalogEntryGroup.h"

#include <new>
#include <utility>

namespace
{
constexpr std::align_val_t ALIGNMENT{std::bit_ceil(sizeof(cls_UidCatalogEntryGroup))};
}

cls_UidCatalogEntryGroup::cls_UidCatalogEntryGroup(cls_UidCatalogEntryGroup* previous) noexcept : m_previous(previous)
{
    for (int i = 0; i + 1 < ENTRIES; ++i) {
        m_entries[i].SetNext(&m_entries[i + 1]);
    }
}

cls_UidCatalogEntryGroup::~cls_UidCatalogEntryGroup()
{
    // A loop: a chain of some ten thousand groups would be too deep for destructors that call each other.
    while (m_previous != nullptr) {
        cls_UidCatalogEntryGroup* const previous = std::exchange(m_previous, m_previous->m_previous);
        previous->m_previous = nullptr;
        delete previous;
    }
}

// Defined for users of the DLL who bind references to it.
constexpr int cls_UidCatalogEntryGroup::ENTRIES;

void* cls_UidCatalogEntryGroup::operator new(std::size_t bytes)
{
    return ::operator new(bytes, ALIGNMENT);
}

void cls_UidCatalogEntryGroup::operator delete(void* block) noexcept
{
    ::operator delete(block, ALIGNMENT);
}
