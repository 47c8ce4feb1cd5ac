#pragma once

#include "cow_1DArrayList.h"

/// One run of an omu_ListArrayInt: an instance and the ids of some of its elements. An ordinary value; copies share the
/// ids until one side writes.
class omu_IntAndArrayInt
{
public:
    using Ids = cow_1DArrayList<int>;

    omu_IntAndArrayInt() = default;
    omu_IntAndArrayInt(int instanceId, const Ids& ids) : m_instanceId(instanceId), m_ids(ids) {}

    int InstanceId() const noexcept { return m_instanceId; }
    const Ids& ConstIds() const noexcept { return m_ids; }
    /// The ids for writing.
    Ids& GetIds() noexcept { return m_ids; }
    int Length() const noexcept { return m_ids.Length(); }

    friend bool operator==(const omu_IntAndArrayInt& left, const omu_IntAndArrayInt& right)
    {
        return left.m_instanceId == right.m_instanceId && left.m_ids == right.m_ids;
    }

private:
    int m_instanceId = 0;
    Ids m_ids;
};
