#pragma once

#include "VEXomu_export.h"

/// What the table of symbolic constants keeps for one constant: the id that the table gave it.
class VEXOMU_API omu_SymbolicConstantData
{
public:
    /// The id is the table's to give: any argument but 0 is reported as an assertion.
    explicit omu_SymbolicConstantData(unsigned int id = 0);

    unsigned int Id() const noexcept { return m_id; }

    friend bool operator==(const omu_SymbolicConstantData&, const omu_SymbolicConstantData&) = default;

private:
    friend class omu_SymbolicConstantTable;

    unsigned int m_id = 0;
};
