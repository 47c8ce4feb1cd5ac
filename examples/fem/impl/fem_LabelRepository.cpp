#include "fem_LabelRepository.h"

#include "fem_Part.h"
#include "fem_Repository.h"

fem_LabelRepository::fem_LabelRepository(fem_Part& part, const char* member, const omu_Table<unsigned int>& rows,
                                         MakeValue makeValue)
    : m_part(part), m_member(member), m_rows(rows), m_makeValue(makeValue)
{
    fem_KeepQueriesOutOfJournal(*this);
}

cow_String fem_LabelRepository::Repr() const
{
    return m_part.Repr() + "." + m_member;
}

omu_Primitive* fem_LabelRepository::Value(const int& label) const
{
    return HasKey(label) ? m_makeValue(m_part, label) : nullptr;
}

void fem_LabelRepository::Keys(cow_List<int>& labels) const
{
    unsigned int label = 0;
    unsigned int row = 0;
    for (unsigned int i = 0; m_rows.GetEntry(i, label, row); ++i) {
        labels.Append(static_cast<int>(label));
    }
}

bool fem_LabelRepository::HasKey(const int& label) const
{
    return label > 0 && m_rows.Exists(static_cast<unsigned int>(label));
}
