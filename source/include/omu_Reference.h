#pragma once

#include "VEXomu_export.h"

#include <cstdint>
#include <iosfwd>

class cow_String;
class pnt_PrettyPrint;

/// The three numbers under which the store knows an object: its catalogue, its number there, its class.
struct VEXOMU_API omu_Reference
{
    std::int32_t catalogId = 0;
    std::int32_t id = 0;
    std::int32_t typeId = 0;

    /// catid:1, id:2, type:3
    cow_String AsString() const;

    friend bool operator==(const omu_Reference&, const omu_Reference&) noexcept = default;
};

/// The text.
VEXOMU_API std::ostream& operator<<(std::ostream& out, const omu_Reference& reference);
VEXOMU_API pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const omu_Reference& reference);
