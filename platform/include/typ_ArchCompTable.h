#pragma once

#include "VEXutl_export.h"
#include "cow_String.h"
#include "typ_ArchCompEntry.h"

#include <cstdint>

/// Run-time type tables of the whole process: component number -> rows of persistable classes.
///
/// Threads:    components are inserted at start-up; look-ups take no lock and may run on any thread.
/// Complexity: Find is two loads; IsParent one Find per level.
/// Errors:     an unknown id is answered with null, false or an empty name; parents in a circle are an assertion.
class VEXUTL_API typ_ArchCompTable
{
public:
    /// Registers the rows of `component` (0 to 65535). Inserting a component again replaces its rows.
    static void InsertEntry(std::uint32_t component, const typ_ArchCompEntry& entry);

    /// The row of `typeId`, or null when no such class is registered.
    static const typ_Entry* Find(std::uint32_t typeId) noexcept;

    /// True when `typeId` is `ancestorId` or derives from it. Unregistered ids are only themselves.
    static bool IsParent(std::uint32_t typeId, std::uint32_t ancestorId) noexcept;

    /// The class's name; empty when the id is unknown.
    static cow_String GetName(std::uint32_t typeId);

    /// The function that deletes an object of the class, or null.
    static typ_Entry::DtorFn GetDtorFunc(std::uint32_t typeId) noexcept;
};
