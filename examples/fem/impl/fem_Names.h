#pragma once

#include "cow_String.h"
#include "omu_PrimTuple.h"

#include <memory>

// What models and parts have in common: names that are unique in the collection that owns them.

/// Throws omu_ValueErrorException when `name` is empty or `isTaken`; `kind` is what the name is for.
void fem_CheckNewName(const char* kind, const cow_String& name, bool isTaken);

/// Throws omu_KeyErrorException: the collection has nothing of that name.
[[noreturn]] void fem_ThrowUnknownName(const char* kind, const cow_String& name);

/// The names of a map from name to object, in ascending order; the caller owns the tuple.
template <class Map> omu_PrimTuple* fem_NamesOf(const Map& objects)
{
    auto names = std::make_unique<omu_PrimTuple>(static_cast<int>(objects.size()));
    for (const auto& [name, object] : objects) {
        names->Put(name);
    }
    return names.release();
}
