#pragma once

#include "VEXomu_export.h"
#include "cow_1DArray.h"
#include "cow_1DArrayList.h"
#include "cow_Map.h"
#include "cow_String.h"
#include "omi_Singleton.h"
#include "omu_SymbolicConstantData.h"

class omu_SymbolicConstantTable;
extern template class VEXOMU_API omi_SingletonBase<omu_SymbolicConstantTable>;
extern template class VEXOMU_API omi_Singleton<omu_SymbolicConstantTable>;

/// Gives the name of every symbolic constant a small number. Number 0 is "_UNSPECIFIED"; no name is ever removed.
///
/// Threads:    the application's main thread.
/// Complexity: O(log names).
/// Errors:     misuse is reported on standard error and as an assertion; the table then stays as it is.
/// References: what GetString() returns dies with the next AddString().
class VEXOMU_API omu_SymbolicConstantTable : public omi_SingletonBase<omu_SymbolicConstantTable>
{
public:
    /// Adds a new, non-empty name and returns its number. For a known name that is misuse, and its number is the result;
    /// for an empty one 0.
    unsigned int AddString(cow_String name);
    /// Adds a record and returns its number, which is also the record's id.
    unsigned int AddSCD(omu_SymbolicConstantData data);
    /// The number of `name`; 0 when it is not in the table.
    unsigned int GetId(cow_String name) const;
    /// The name with number `id`; the one with number 0 when there is none.
    const cow_String& GetString(unsigned int id) const;
    /// Writes the table to standard output.
    void PrintCache() const;

private:
    friend class omi_Singleton<omu_SymbolicConstantTable>;
    friend class omi_SingletonBase<omu_SymbolicConstantTable>;
    omu_SymbolicConstantTable();
    ~omu_SymbolicConstantTable() = default;

    cow_1DArrayList<cow_String, cow_String> m_names; // a name's number is its position
    cow_1DArray<omu_SymbolicConstantData> m_data;
    cow_Map<cow_String, unsigned int> m_ids; // name -> position in m_names
};
