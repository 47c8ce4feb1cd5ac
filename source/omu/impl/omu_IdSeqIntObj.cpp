#include "omu_IdSeqIntObj.h"

#include "omu_IndexError_detail.h"

#include <algorithm>

omu_IdSeqIntObj::omu_IdSeqIntObj() : omu_IdSeqIntObj(omu_NO_OPERATION_RULES) {}

omu_IdSeqIntObj::omu_IdSeqIntObj(omu_OperationRules rules) : omu_SeqIntObj(rules)
{
    DescribeType("InstanceSequence", nullptr, nullptr);
}

int omu_IdSeqIntObj::Length() const
{
    return m_subscripts.Length();
}

omu_Primitive* omu_IdSeqIntObj::Index(const int&) const
{
    return nullptr;
}

omu_Primitive* omu_IdSeqIntObj::Slice(const int&, const int&) const
{
    return nullptr;
}

omu_Primitive* omu_IdSeqIntObj::Repeat(const int&) const
{
    return nullptr;
}

omu_Primitive* omu_IdSeqIntObj::Concat(omu_SeqIntObj*) const
{
    return nullptr;
}

int omu_IdSeqIntObj::Remove(const int&)
{
    return 0;
}

int omu_IdSeqIntObj::RemoveSlice(const int&, const int&)
{
    return 0;
}

int omu_IdSeqIntObj::IsUnique(const int&) const
{
    return 0;
}

int omu_IdSeqIntObj::ConvertIndex(const int& index, bool allowEnd) const
{
    const int length = Length();
    const int position = index >= 0 ? index : std::max(index + length, 0);
    if (position > length || (position == length && !allowEnd)) {
        omu_ThrowIndexError(index, "source/omu/impl/omu_IdSeqIntObj", __LINE__);
    }
    return position;
}

void omu_IdSeqIntObj::ConvertSubscrIndex(const int& index, int& id, int& instanceId) const
{
    int offset = 0;
    int run = 0;
    m_subscripts.Index(ConvertIndex(index, /*allowEnd=*/false), id, instanceId, offset, run);
}

void omu_IdSeqIntObj::Subscripts(omu_ListArrayInt& subscripts) const
{
    subscripts = m_subscripts;
}

void omu_IdSeqIntObj::Subscripts(omu_ListArrayInt& subscripts, int from, int to) const
{
    subscripts = m_subscripts.Slice(from, to);
}

bool omu_IdSeqIntObj::GetSingleInstanceId(int& instanceId) const
{
    cow_List<int> instanceIds;
    m_subscripts.GetKeys(instanceIds);
    if (instanceIds.Length() != 1) {
        return false;
    }
    instanceId = instanceIds[0];
    return true;
}

void omu_IdSeqIntObj::RemoveDuplicates()
{
    m_subscripts = m_subscripts.Compress();
}
