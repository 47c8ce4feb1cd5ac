// Tables by label, the uint table, the tree of names and compressed runs, a million keys each unless the name says
// otherwise, beside what C++ users have for the same.

#include "omi_BtreeIterator.h"
#include "omi_UintTableIterator.h"
#include "omu_IdSeqIntObj.h"
#include "omu_ListArrayInt.h"
#include "omu_Table.h"

#include <absl/container/btree_map.h>
#include <absl/container/flat_hash_map.h>
#include <benchmark/benchmark.h>
#include <boost/container/flat_map.hpp>

#include <algorithm>
#include <cstdint>
#include <malloc.h>
#include <map>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

namespace
{
using Keys = std::vector<unsigned int>;
using Hash = absl::flat_hash_map<unsigned int, unsigned int>;
using BtreeMap = absl::btree_map<unsigned int, unsigned int>;
using FlatMap = boost::container::flat_map<unsigned int, unsigned int>;
using Pairs = std::map<unsigned int, unsigned int>;

constexpr unsigned int KEYS = 1000000;

Keys Consecutive()
{
    Keys keys(KEYS);
    for (unsigned int i = 0; i < KEYS; ++i) {
        keys[i] = 1001 + i;
    }
    return keys;
}

/// Labels of which one in a hundred was deleted.
Keys Gaps()
{
    std::mt19937 random(1);
    Keys keys;
    for (unsigned int key = 1001; keys.size() < KEYS; ++key) {
        if (random() % 100 != 0) {
            keys.push_back(key);
        }
    }
    return keys;
}

Keys RandomBelow(unsigned int limit)
{
    std::mt19937 random(2);
    Keys keys;
    while (keys.size() < KEYS) {
        while (keys.size() < KEYS) {
            keys.push_back(1 + static_cast<unsigned int>(random()) % (limit - 1));
        }
        std::sort(keys.begin(), keys.end());
        keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    }
    return keys;
}

Keys Sparse()
{
    return RandomBelow(4294967295U);
}

/// One key in sixteen of the numbers below 2^24.
Keys Random()
{
    return RandomBelow(1U << 24);
}

/// As run-time type ids are: a component in the high half, up to forty rows in each.
Keys ClassIds()
{
    Keys keys;
    for (const unsigned int component : {2U, 19U, 31U, 35U, 200U, 201U}) {
        for (unsigned int row = 1; row <= 40; ++row) {
            keys.push_back((component << 16) + row);
        }
    }
    return keys;
}

Keys Shuffled(Keys keys)
{
    std::shuffle(keys.begin(), keys.end(), std::mt19937(3));
    return keys;
}

void Put(omu_Table<unsigned int>& table, unsigned int key)
{
    table.Add(key, key);
}
void Put(omi_UintTable<unsigned int>& table, unsigned int key)
{
    table.Insert(key, key);
}
template <class Map> void Put(Map& map, unsigned int key)
{
    map.emplace_hint(map.end(), key, key);
}

unsigned int Look(const omu_Table<unsigned int>& table, unsigned int key)
{
    unsigned int value = 0;
    table.Get(key, &value);
    return value;
}
unsigned int Look(const omi_UintTable<unsigned int>& table, unsigned int key)
{
    const unsigned int* const value = table.Find(key);
    return value != nullptr ? *value : 0;
}
template <class Map> unsigned int Look(const Map& map, unsigned int key)
{
    const auto found = map.find(key);
    return found != map.end() ? found->second : 0;
}

/// Values in a vector indexed by label: nothing can be found faster.
struct Indexed
{
    std::vector<unsigned int> values;
};
void Put(Indexed& map, unsigned int key)
{
    map.values.resize(key + 1);
    map.values[key] = key;
}
unsigned int Look(const Indexed& map, unsigned int key)
{
    return key < map.values.size() ? map.values[key] : 0;
}

/// Bytes that the general allocator has given out, with those that it keeps for the next small requests: means little
/// for small containers.
double BytesInUse()
{
    const auto info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

template <class Map> void Find(benchmark::State& state, const Keys& keys, bool inOrder)
{
    const double before = BytesInUse();
    Map map;
    for (const unsigned int key : keys) {
        Put(map, key);
    }
    if (keys.size() == KEYS) {
        state.counters["bytes_per_key"] = (BytesInUse() - before) / KEYS;
    }
    const Keys wanted = inOrder ? keys : Shuffled(keys);
    for (auto _ : state) {
        std::uint64_t sum = 0;
        for (const unsigned int key : wanted) {
            sum += Look(map, key);
        }
        benchmark::DoNotOptimize(sum);
    }
}

template <class Map> void Append(benchmark::State& state, const Keys& keys)
{
    for (auto _ : state) {
        Map map;
        for (const unsigned int key : keys) {
            Put(map, key);
        }
        benchmark::DoNotOptimize(&map);
    }
}

void IterateUintTable(benchmark::State& state, const Keys& keys)
{
    omi_UintTable<unsigned int> table;
    for (const unsigned int key : keys) {
        Put(table, key);
    }
    for (auto _ : state) {
        std::uint64_t sum = 0;
        omi_UintTableIterator<unsigned int> each(table);
        for (each.First(); !each.IsDone(); each.Next()) {
            sum += each.CurrentKey() + each.CurrentValue();
        }
        benchmark::DoNotOptimize(sum);
    }
}

template <class Map> void Iterate(benchmark::State& state, const Keys& keys)
{
    Map map;
    for (const unsigned int key : keys) {
        Put(map, key);
    }
    for (auto _ : state) {
        std::uint64_t sum = 0;
        for (const auto& [key, value] : map) {
            sum += key + value;
        }
        benchmark::DoNotOptimize(sum);
    }
}

std::vector<cow_String> Names(int count)
{
    std::vector<cow_String> names;
    for (int i = 0; i < count; ++i) {
        names.push_back("field_" + cow_String(static_cast<int>(i * std::int64_t{7919} % 10000019)));
    }
    return names;
}

using NameMap = std::map<cow_String, int>;
using NameTree = omi_Btree<cow_String, int>;

bool AddName(NameMap& map, const cow_String& name)
{
    return map.try_emplace(name, 1).second;
}
bool AddName(NameTree& tree, const cow_String& name)
{
    return tree.Insert(name, 1);
}
bool HasName(const NameMap& map, const cow_String& name)
{
    return map.find(name) != map.end();
}
bool HasName(const NameTree& tree, const cow_String& name)
{
    return tree.Find(name) != nullptr;
}

template <class Map> void FindNames(benchmark::State& state, int count)
{
    const std::vector<cow_String> names = Names(count);
    Map map;
    for (const cow_String& name : names) {
        AddName(map, name);
    }
    for (auto _ : state) {
        int found = 0;
        for (const cow_String& name : names) {
            found += HasName(map, name);
        }
        benchmark::DoNotOptimize(found);
    }
}

template <class Map> void InsertNames(benchmark::State& state, int count)
{
    const std::vector<cow_String> names = Names(count);
    for (auto _ : state) {
        Map map;
        for (const cow_String& name : names) {
            AddName(map, name);
        }
        benchmark::DoNotOptimize(&map);
    }
}

omu_ListArrayInt RunsOf(const Keys& keys)
{
    omu_ListArrayInt list;
    int instance = 0;
    for (const unsigned int key : keys) {
        instance = (instance + 1) % 100;
        list.AppendOrMerge(omu_IntAndArrayInt(instance / 10, {static_cast<int>(key)}));
    }
    return list;
}

void Compress(benchmark::State& state, const Keys& keys)
{
    const omu_ListArrayInt list = RunsOf(Shuffled(keys));
    for (auto _ : state) {
        benchmark::DoNotOptimize(list.Compress().ConstRuns().data());
    }
    state.SetItemsProcessed(state.iterations() * std::ssize(keys));
}

class Ids final : public omu_IdSeqIntObj
{
public:
    explicit Ids(const cow_1DArray<int>& ids)
    {
        m_ids = ids;
        m_length = ids.Length();
    }
    omu_Primitive* Copy() const override { return new Ids(*this); }
};

/// Of ids of which every second one is there twice.
void RemoveDuplicates(benchmark::State& state, const Keys& keys)
{
    Keys twice = keys;
    twice.resize(keys.size() / 3 * 2);
    for (std::size_t i = 0; twice.size() < keys.size(); ++i) {
        twice.push_back(keys[2 * i]);
    }
    const Keys shuffled = Shuffled(twice);
    const cow_1DArray<int> ids(shuffled.begin(), shuffled.end());
    for (auto _ : state) {
        Ids sequence(ids);
        sequence.omu_SeqIntObj::RemoveDuplicates();
        benchmark::DoNotOptimize(sequence.Length());
    }
    state.SetItemsProcessed(state.iterations() * std::ssize(keys));
}

void CompressByMap(benchmark::State& state, const Keys& keys)
{
    const omu_ListArrayInt list = RunsOf(Shuffled(keys));
    for (auto _ : state) {
        std::map<int, std::vector<int>> runs;
        for (const omu_IntAndArrayInt& run : list.ConstRuns()) {
            std::vector<int>& ids = runs[run.InstanceId()];
            ids.insert(ids.end(), run.ConstIds().begin(), run.ConstIds().end());
        }
        for (auto& [instance, ids] : runs) {
            std::sort(ids.begin(), ids.end());
            ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
        }
        benchmark::DoNotOptimize(&runs);
    }
}

template <class Map>
void RegisterFinds(const std::string& family, const char* map, const char* keysName, Keys (*keys)())
{
    for (const bool inOrder : {true, false}) {
        const std::string name = family + "_find/" + keysName + (inOrder ? "/in_order/" : "/random/") + map;
        benchmark::RegisterBenchmark(name.c_str(), [=](auto& state) { Find<Map>(state, keys(), inOrder); });
    }
}

template <class Map> void RegisterNames(const char* map)
{
    for (const int count : {8, 64, 10000, 1000000}) {
        const std::string end = std::to_string(count) + "/" + map;
        benchmark::RegisterBenchmark(("tree_find/" + end).c_str(), [=](auto& state) { FindNames<Map>(state, count); });
        benchmark::RegisterBenchmark(("tree_insert/" + end).c_str(),
                                     [=](auto& state) { InsertNames<Map>(state, count); });
    }
}

const bool registered = [] {
    const std::pair<const char*, Keys (*)()> labels[] = {
        {"consecutive", Consecutive}, {"gaps", Gaps}, {"sparse", Sparse}};
    for (const auto& [name, keys] : labels) {
        RegisterFinds<omu_Table<unsigned int>>("table", "kernel", name, keys);
        RegisterFinds<Hash>("table", "flat_hash_map", name, keys);
        RegisterFinds<FlatMap>("table", "flat_map", name, keys);
        RegisterFinds<Pairs>("table", "map", name, keys);
        if (keys != Sparse) {
            RegisterFinds<Indexed>("table", "vector", name, keys);
        }
    }
    benchmark::RegisterBenchmark("table_append/kernel",
                                 [](auto& state) { Append<omu_Table<unsigned int>>(state, Gaps()); });
    benchmark::RegisterBenchmark("table_append/flat_map", [](auto& state) { Append<FlatMap>(state, Gaps()); });

    using StdHash = std::unordered_map<unsigned int, unsigned int>;
    const std::pair<const char*, Keys (*)()> ids[] = {
        {"class_ids", ClassIds}, {"consecutive", Consecutive}, {"one_in_16", Random}};
    for (const auto& [name, keys] : ids) {
        RegisterFinds<omi_UintTable<unsigned int>>("uint", "kernel", name, keys);
        RegisterFinds<Hash>("uint", "flat_hash_map", name, keys);
        RegisterFinds<BtreeMap>("uint", "btree_map", name, keys);
        RegisterFinds<StdHash>("uint", "unordered_map", name, keys);
        benchmark::RegisterBenchmark((std::string("uint_iterate/") + name + "/kernel").c_str(),
                                     [keys = keys](auto& state) { IterateUintTable(state, keys()); });
        benchmark::RegisterBenchmark((std::string("uint_iterate/") + name + "/btree_map").c_str(),
                                     [keys = keys](auto& state) { Iterate<BtreeMap>(state, keys()); });
    }
    for (const std::size_t count : {62500, 250000, 1000000}) {
        Keys few = Gaps();
        few.resize(count);
        const std::string end = "_growth/" + std::to_string(count);
        benchmark::RegisterBenchmark(("compress" + end).c_str(), [=](auto& state) { Compress(state, few); });
        benchmark::RegisterBenchmark(("remove_duplicates" + end).c_str(),
                                     [=](auto& state) { RemoveDuplicates(state, few); });
    }
    RegisterNames<NameTree>("kernel");
    RegisterNames<NameMap>("map");
    for (const auto& [name, keys] : labels) {
        const std::string start = std::string("compress/") + name;
        benchmark::RegisterBenchmark((start + "/kernel").c_str(),
                                     [keys = keys](auto& state) { Compress(state, keys()); });
        benchmark::RegisterBenchmark((start + "/map").c_str(),
                                     [keys = keys](auto& state) { CompressByMap(state, keys()); });
    }
    return true;
}();

} // namespace
