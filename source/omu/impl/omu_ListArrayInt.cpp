#include "omu_ListArrayInt.h"

#include "omi_BlkBitVect.h"
#include "pnt_debugPrint.h"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <unordered_map>
#include <vector>

namespace
{
// Bits are unsigned: with the sign turned around they ascend as the ids do.
constexpr std::uint32_t SIGN = 0x80000000;

std::uint32_t BitOf(int id) noexcept
{
    return static_cast<std::uint32_t>(id) ^ SIGN;
}

int IdOf(std::uint32_t bit) noexcept
{
    return static_cast<int>(bit ^ SIGN);
}

/// The runs by instance, these in the order in which they come first.
std::vector<std::vector<const omu_IntAndArrayInt*>> GroupRuns(const omu_ListArrayInt::Runs& runs)
{
    std::vector<std::vector<const omu_IntAndArrayInt*>> groups;
    std::unordered_map<int, std::size_t> places;
    for (const omu_IntAndArrayInt& run : runs) {
        const auto [place, isNew] = places.try_emplace(run.InstanceId(), groups.size());
        if (isNew) {
            groups.emplace_back();
        }
        groups[place->second].push_back(&run);
    }
    return groups;
}

/// Reads dense ids back from a bit vector, which is far cheaper than sorting them.
omu_IntAndArrayInt::Ids AscendingByBits(const std::vector<int>& ids)
{
    omi_BlkBitVect bits;
    for (const int id : ids) {
        bits.Set(BitOf(id));
    }
    omu_IntAndArrayInt::Ids ascending;
    ascending.Reserve(static_cast<int>(bits.Count()));
    for (omi_BlkBitVectTrav bit(bits); !bit.IsDone(); bit.Next()) {
        ascending.Append(IdOf(bit.Current()));
    }
    return ascending;
}

/// The ids of all runs, ascending, each once.
omu_IntAndArrayInt::Ids UnitedIds(const std::vector<const omu_IntAndArrayInt*>& runs)
{
    std::vector<int> ids;
    for (const omu_IntAndArrayInt* const run : runs) {
        ids.insert(ids.end(), run->ConstIds().begin(), run->ConstIds().end());
    }
    if (ids.empty()) {
        return {};
    }
    const auto [least, largest] = std::minmax_element(ids.begin(), ids.end());
    constexpr std::size_t DENSE = 32; // numbers for each id; blocks of bits for fewer cost more than sorting
    if (BitOf(*largest) - BitOf(*least) <= ids.size() * DENSE) {
        return AscendingByBits(ids);
    }
    std::sort(ids.begin(), ids.end());
    return {ids.begin(), std::unique(ids.begin(), ids.end())};
}
} // namespace

int omu_ListArrayInt::Length() const noexcept
{
    return std::accumulate(m_runs.begin(), m_runs.end(), 0,
                           [](int length, const omu_IntAndArrayInt& run) { return length + run.Length(); });
}

void omu_ListArrayInt::Index(int p, int& id, int& instanceId, int& offset, int& run) const noexcept
{
    int rest = p;
    for (int i = 0; rest >= 0 && i < m_runs.Length(); ++i) {
        if (rest < m_runs[i].Length()) {
            id = m_runs[i].ConstIds()[rest];
            instanceId = m_runs[i].InstanceId();
            offset = rest;
            run = i;
            return;
        }
        rest -= m_runs[i].Length();
    }
}

omu_ListArrayInt omu_ListArrayInt::Slice(int from, int to) const
{
    omu_ListArrayInt slice;
    from = std::max(from, 0);
    int start = 0; // flat position of the run
    for (const omu_IntAndArrayInt& run : m_runs) {
        const int first = std::clamp(from - start, 0, run.Length());
        const int end = std::clamp(to - start, 0, run.Length());
        const bool isWithin = end != 0 || !slice.m_runs.IsEmpty(); // also a run without ids, between others
        if (first == 0 && end == run.Length() && isWithin) {
            slice.m_runs.Append(run);
        } else if (first < end) {
            const int* const ids = run.ConstIds().data();
            slice.m_runs.Append(omu_IntAndArrayInt(run.InstanceId(), {ids + first, ids + end}));
        }
        start += run.Length();
        if (start >= to) {
            break;
        }
    }
    return slice;
}

omu_ListArrayInt omu_ListArrayInt::Compress() const
{
    omu_ListArrayInt compressed;
    for (const auto& runs : GroupRuns(m_runs)) {
        compressed.m_runs.Append(omu_IntAndArrayInt(runs.front()->InstanceId(), UnitedIds(runs)));
    }
    return compressed;
}

void omu_ListArrayInt::GetKeys(cow_List<int>& instanceIds) const
{
    instanceIds.Clear();
    for (const auto& runs : GroupRuns(m_runs)) {
        instanceIds.Append(runs.front()->InstanceId());
    }
}

void omu_ListArrayInt::Print() const
{
    for (const omu_IntAndArrayInt& run : m_runs) {
        pnt_debugPrint() << "InstId = " << run.InstanceId() << "\nIds =";
        for (const int id : run.ConstIds()) {
            pnt_debugPrint() << ' ' << id;
        }
        pnt_debugPrint() << '\n';
    }
}

void omu_ListArrayInt::AppendOrMerge(const omu_IntAndArrayInt& run)
{
    const int last = m_runs.Length() - 1;
    if (last >= 0 && m_runs[last].InstanceId() == run.InstanceId()) {
        const omu_IntAndArrayInt::Ids ids = run.ConstIds(); // the run may be the last one itself
        m_runs.Get(last).GetIds().AppendAll(ids);
    } else {
        m_runs.Append(run);
    }
}

void omu_ListArrayInt::AppendOrMerge(const omu_ListArrayInt& other)
{
    if (other.m_runs.Length() == 1) {
        AppendOrMerge(other.m_runs[0]);
    } else {
        m_runs.AppendAll(other.m_runs);
    }
}
