#include "omu_VaryMatrixUint32.h"

#include "pnt_debugPrint.h"

#include <new>

unsigned int omu_VaryMatrixUint32::RowLength(unsigned int row) const
{
    const omu_Varray<unsigned int>* const values = Find(row);
    return values != nullptr ? values->Length() : 0;
}

unsigned int omu_VaryMatrixUint32::Get(unsigned int row, unsigned int col) const
{
    unsigned int value = 0;
    if (const omu_Varray<unsigned int>* const values = Find(row)) {
        values->Get(col, &value);
    }
    return value;
}

void omu_VaryMatrixUint32::Debug() const
{
    pnt_DebugPrint& out = pnt_debugPrint();
    out << "Start of Matrix\nNo. of rows = " << NumRows() << '\n';
    for (unsigned int row = 0; row < NumRows(); ++row) {
        out << "Row " << row << ':';
        for (unsigned int col = 0; col < RowLength(row); ++col) {
            out << ' ' << Get(row, col);
        }
        out << '\n';
    }
    out << "End of Matrix\n";
}

bool omu_VaryMatrixUint32::AddRow()
{
    return InsertRow(NumRows());
}

bool omu_VaryMatrixUint32::InsertRow(unsigned int row)
{
    try {
        return omu_ObjVarray::Insert(row, std::make_unique<omu_Varray<unsigned int>>(m_rowSize, m_rowGrowth));
    } catch (const std::bad_alloc&) {
        return false;
    }
}

bool omu_VaryMatrixUint32::Add(unsigned int row, unsigned int value)
{
    omu_Varray<unsigned int>* const values = Find(row);
    return values != nullptr && values->Add(value);
}

bool omu_VaryMatrixUint32::Set(unsigned int row, unsigned int col, unsigned int value)
{
    omu_Varray<unsigned int>* const values = Find(row);
    return values != nullptr && values->Set(col, value);
}

bool omu_VaryMatrixUint32::Insert(unsigned int row, unsigned int col, unsigned int value)
{
    omu_Varray<unsigned int>* const values = Find(row);
    return values != nullptr && values->Insert(col, value);
}

bool omu_VaryMatrixUint32::Remove(unsigned int row, unsigned int col)
{
    omu_Varray<unsigned int>* const values = Find(row);
    return values != nullptr && values->Remove(col, nullptr);
}
