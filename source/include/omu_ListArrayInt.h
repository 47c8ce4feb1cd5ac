#pragma once

#include "VEXomu_export.h"
#include "cow_List.h"
#include "omu_IntAndArrayInt.h"

/// Element ids in runs that belong to one instance each: what an instance sequence holds. A flat position counts the
/// elements of all runs.
///
/// Ownership:  an ordinary value; copies share the runs, and the runs their ids, until one side writes.
/// Threads:    one thread at a time; distinct copies may live on distinct threads.
/// Complexity: Length and Index O(runs); Slice O(runs + ids of the two runs that are cut); AppendOrMerge O(runs or ids
///             appended); Compress and GetKeys O(ids log ids) at worst.
/// Errors:     std::bad_alloc. Positions outside are never an error.
/// Example:    list.AppendOrMerge(omu_IntAndArrayInt(7, {1, 2})); list.AppendOrMerge(omu_IntAndArrayInt(7, {3}));
class VEXOMU_API omu_ListArrayInt
{
public:
    using Runs = cow_List<omu_IntAndArrayInt>;

    omu_ListArrayInt() = default;
    explicit omu_ListArrayInt(const Runs& allRuns) : m_runs(allRuns) {}

    /// Number of ids in all runs.
    int Length() const noexcept;
    const Runs& ConstRuns() const noexcept { return m_runs; }
    /// The element at flat position `p`: its id, the instance of its run, its offset in the run, and the run's position.
    /// Outside the list nothing is set.
    void Index(int p, int& id, int& instanceId, int& offset, int& run) const noexcept;
    /// The elements from flat position `from` up to but not including `to`, both cut to the list, in the runs they stand
    /// in, and with the runs without ids between these. Empty when `to` is 0 or not above `from`.
    omu_ListArrayInt Slice(int from, int to) const;
    /// One run for each instance, in the order in which they come first; its ids ascending, each once.
    omu_ListArrayInt Compress() const;
    /// The instances, in the order in which they come first.
    void GetKeys(cow_List<int>& instanceIds) const;
    /// Writes the runs to the debugging text: "InstId =" and the instance, "Ids =" and the ids.
    void Print() const;

    /// Appends the ids to the last run if that has the same instance, otherwise the run.
    void AppendOrMerge(const omu_IntAndArrayInt& run);
    /// Appends the runs of `other`, which may be this list. Only a single run is merged, which is promised: of several
    /// none is.
    void AppendOrMerge(const omu_ListArrayInt& other);

    friend bool operator==(const omu_ListArrayInt& left, const omu_ListArrayInt& right)
    {
        return left.m_runs == right.m_runs;
    }

private:
    Runs m_runs;
};
