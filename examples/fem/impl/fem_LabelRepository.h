#pragma once

#include "omu_DictIntObjABC.h"
#include "omu_Table.h"

class fem_Part;

/// The nodes or the elements of a part, by label.
///
/// Ownership:  a member of its part.
/// Complexity: that of omu_Table; Keys O(labels).
class fem_LabelRepository final : public omu_DictIntObjABC<int>
{
public:
    /// Makes the value of a label that is there; the caller owns it.
    using MakeValue = omu_Primitive* (*)(fem_Part& part, int label);

    /// `member` is the part's, by which scripts reach it; `rows` has the labels, and stays with the part.
    fem_LabelRepository(fem_Part& part, const char* member, const omu_Table<unsigned int>& rows, MakeValue makeValue);

    /// Null: it stays the one of its part.
    omu_Primitive* Copy() const override { return nullptr; }
    /// The path that leads to it.
    cow_String Repr() const override;

    int Length() const override { return static_cast<int>(m_rows.Length()); }
    omu_Primitive* Value(const int& label) const override;
    void Keys(cow_List<int>& labels) const override;
    bool HasKey(const int& label) const override;

private:
    fem_Part& m_part;
    const char* m_member;
    const omu_Table<unsigned int>& m_rows;
    MakeValue m_makeValue;
};
