#pragma once

#include "cls_UidCatalog.h"
#include "thr_ThreadHint.h"

#include <atomic>

// The way to the calling thread's catalogue that every uid takes when it comes and when it goes.
namespace cls_detail
{
using CatalogHint = thr_ThreadHint<cls_UidCatalog>;

/// The calling thread's catalogue, made on first use.
inline cls_UidCatalog& ThisThreadsCatalog()
{
    cls_UidCatalog* const known = CatalogHint::Get();
    return known != nullptr ? *known : cls_UidCatalog::OfThisThread();
}

/// The catalogue of `entry` if it is the calling thread's, or null.
inline cls_UidCatalog* OwnerHere(const cls_UidCatalogEntry& entry) noexcept
{
    cls_UidCatalog* const owner = cls_UidCatalogEntryGroup::Of(&entry).Owner();
    if (owner == nullptr) {
        return nullptr;
    }
    cls_UidCatalog* const known = CatalogHint::Get();
    return owner == (known != nullptr ? known : cls_UidCatalog::FindOfThisThread()) ? owner : nullptr;
}
} // namespace cls_detail
