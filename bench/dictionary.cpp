// Dictionaries of 8, 64 and 10,000 text keys: find and insert, beside the ordered maps of Abseil and the standard library.

#include "omu_Module.h"
#include "omu_PrimDictionary.h"

#include <absl/container/btree_map.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace
{

/// Names as kernels have them, in random order; the same in every program.
std::vector<std::string> Names(std::int64_t count)
{
    std::vector<std::string> names;
    for (std::int64_t i = 0; i < count; ++i) {
        names.push_back("Part-" + std::to_string(i * 7919 % 100003));
    }
    std::shuffle(names.begin(), names.end(), std::mt19937(1));
    return names;
}

std::vector<cow_String> KernelNames(std::int64_t count)
{
    std::vector<cow_String> names;
    for (const std::string& name : Names(count)) {
        names.emplace_back(std::string_view(name));
    }
    return names;
}

omu_PrimDictionary<cow_String> FilledDictionary(const std::vector<cow_String>& names)
{
    omu_PrimDictionary<cow_String> dictionary;
    for (std::size_t i = 0; i < names.size(); ++i) {
        dictionary.Put(static_cast<double>(i), names[i]);
    }
    return dictionary;
}

template <class Map> Map FilledMap(const std::vector<std::string>& names)
{
    Map map;
    for (std::size_t i = 0; i < names.size(); ++i) {
        map.emplace(names[i], static_cast<double>(i));
    }
    return map;
}

void dictionary_find_kernel(benchmark::State& state)
{
    static int count = 0;
    omu_initialize(count);
    const std::vector<cow_String> names = KernelNames(state.range(0));
    const omu_PrimDictionary<cow_String> dictionary = FilledDictionary(names);
    for (auto _ : state) {
        double sum = 0;
        for (const cow_String& name : names) {
            double value = 0;
            dictionary.Get(value, name);
            sum += value;
        }
        benchmark::DoNotOptimize(sum);
    }
}

template <class Map> void Find(benchmark::State& state)
{
    const std::vector<std::string> names = Names(state.range(0));
    const Map map = FilledMap<Map>(names);
    for (auto _ : state) {
        double sum = 0;
        for (const std::string& name : names) {
            sum += map.find(name)->second;
        }
        benchmark::DoNotOptimize(sum);
    }
}

void dictionary_insert_kernel(benchmark::State& state)
{
    const std::vector<cow_String> names = KernelNames(state.range(0));
    for (auto _ : state) {
        const omu_PrimDictionary<cow_String> dictionary = FilledDictionary(names);
        benchmark::DoNotOptimize(dictionary.Length());
    }
}

template <class Map> void Insert(benchmark::State& state)
{
    const std::vector<std::string> names = Names(state.range(0));
    for (auto _ : state) {
        const Map map = FilledMap<Map>(names);
        benchmark::DoNotOptimize(map.size());
    }
}

using StdMap = std::map<std::string, double>;
using AbslMap = absl::btree_map<std::string, double>;

void dictionary_find_absl(benchmark::State& state)
{
    Find<AbslMap>(state);
}

void dictionary_find_std(benchmark::State& state)
{
    Find<StdMap>(state);
}

void dictionary_insert_absl(benchmark::State& state)
{
    Insert<AbslMap>(state);
}

void dictionary_insert_std(benchmark::State& state)
{
    Insert<StdMap>(state);
}

#define SIZES Arg(8)->Arg(64)->Arg(10000)
BENCHMARK(dictionary_find_kernel)->SIZES;
BENCHMARK(dictionary_find_absl)->SIZES;
BENCHMARK(dictionary_find_std)->SIZES;
BENCHMARK(dictionary_insert_kernel)->SIZES;
BENCHMARK(dictionary_insert_absl)->SIZES;
BENCHMARK(dictionary_insert_std)->SIZES;
#undef SIZES

} // namespace
