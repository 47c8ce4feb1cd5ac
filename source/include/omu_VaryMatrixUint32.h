#pragma once

#include "VEXomu_export.h"
#include "omu_ObjVarray.h"

/// Matrix of unsigned integers whose rows have lengths of their own.
///
/// Ownership:  owns its rows.
/// Threads:    one thread at a time; any number may read while none writes.
/// Complexity: Get, Set, Add amortised O(1); Insert and Remove O(row behind); InsertRow and RemoveRow O(rows behind).
/// Errors:     changes give false when a position is outside or memory is short, as omu_Varray; Get gives 0 outside.
/// Example:    omu_VaryMatrixUint32 neighbours; neighbours.AddRow(); neighbours.Add(0, 17);
class VEXOMU_API omu_VaryMatrixUint32 : public omu_ObjVarray<omu_Varray<unsigned int>>
{
public:
    /// Sizes 16, growth factors 2.
    omu_VaryMatrixUint32() = default;
    /// Room for `rowsSize` rows; each new row has room for `rowSize` values. The factors are those by which they grow.
    omu_VaryMatrixUint32(unsigned int rowsSize, unsigned int rowSize, double rowsGrowth, double rowGrowth)
        : omu_ObjVarray(rowsSize, rowsGrowth), m_rowSize(rowSize), m_rowGrowth(rowGrowth)
    {}

    unsigned int NumRows() const { return Length(); }
    /// 0 for a row that does not exist.
    unsigned int RowLength(unsigned int row) const;
    /// 0 outside the matrix.
    unsigned int Get(unsigned int row, unsigned int col) const;
    /// Writes all rows to the debugging text.
    void Debug() const;

    bool AddRow();
    bool InsertRow(unsigned int row);
    bool RemoveRow(unsigned int row) { return omu_ObjVarray::Remove(row); }

    bool Add(unsigned int row, unsigned int value);
    bool Set(unsigned int row, unsigned int col, unsigned int value);
    /// Inserts before column `col`; at the row's length appends.
    bool Insert(unsigned int row, unsigned int col, unsigned int value);
    bool Remove(unsigned int row, unsigned int col);

private:
    unsigned int m_rowSize = 16;
    double m_rowGrowth = 2.0;
};
