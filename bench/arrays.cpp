// A persistent array in memory beside std::vector, and uids in batches beside other small things that are counted or pooled.

#include "cls_ArrayPrim.h"
#include "cls_Uid.h"

#include <benchmark/benchmark.h>
#include <boost/pool/pool.hpp>

#include <cstdlib>
#include <memory>
#include <random>
#include <vector>

namespace
{
constexpr int LENGTH = 1'000'000;

struct KernelArray
{
    int Size() const { return array.Size(); }
    double Read(int index) const { return array.ConstGet(index); }
    double& At(int index) { return array.Get(index); }
    void Append(double value) { array.Append(value); }

    cls_ArrayPrim<double> array;
};

struct VectorArray
{
    int Size() const { return static_cast<int>(array.size()); }
    double Read(int index) const { return array[static_cast<std::size_t>(index)]; }
    double& At(int index) { return array[static_cast<std::size_t>(index)]; }
    void Append(double value) { array.push_back(value); }

    std::vector<double> array;
};

template <class Array> void Fill(Array& array)
{
    for (int i = 0; i < LENGTH; ++i) {
        array.Append(i);
    }
}

template <class Array> void Append(benchmark::State& state)
{
    for (auto _ : state) {
        Array array;
        Fill(array);
        benchmark::DoNotOptimize(array.Size());
    }
}

template <class Array> void Read(benchmark::State& state)
{
    Array array;
    Fill(array);
    for (auto _ : state) {
        double sum = 0;
        for (int i = 0; i < array.Size(); ++i) {
            sum += array.Read(i);
        }
        benchmark::DoNotOptimize(sum);
    }
}

/// Apart from the array's owner: next to what must be destroyed, GCC keeps no sum of doubles in their registers.
template <class Array> [[gnu::noinline]] double Sum(const Array& array)
{
    double sum = 0;
    for (int i = 0; i < array.Size(); ++i) {
        sum += array.Read(i);
    }
    return sum;
}

template <class Array> void ReadElsewhere(benchmark::State& state)
{
    Array array;
    Fill(array);
    for (auto _ : state) {
        benchmark::DoNotOptimize(Sum(array));
    }
}

template <class Array> void Write(benchmark::State& state)
{
    Array array;
    Fill(array);
    for (auto _ : state) {
        for (int i = 0; i < array.Size(); ++i) {
            array.At(i) += 1.0;
        }
        benchmark::ClobberMemory();
    }
}

template <class Array> void ReadAnywhere(benchmark::State& state)
{
    Array array;
    Fill(array);
    std::mt19937 random(1);
    std::vector<int> places(100'000);
    for (int& place : places) {
        place = static_cast<int>(random() % LENGTH);
    }
    for (auto _ : state) {
        double sum = 0;
        for (const int place : places) {
            sum += array.Read(place);
        }
        benchmark::DoNotOptimize(sum);
    }
}

BENCHMARK(Append<KernelArray>)->Name("array_append_kernel")->Unit(benchmark::kMicrosecond);
BENCHMARK(Append<VectorArray>)->Name("array_append_vector")->Unit(benchmark::kMicrosecond);
BENCHMARK(Read<KernelArray>)->Name("array_read_kernel")->Unit(benchmark::kMicrosecond);
BENCHMARK(Read<VectorArray>)->Name("array_read_vector")->Unit(benchmark::kMicrosecond);
BENCHMARK(ReadElsewhere<KernelArray>)->Name("array_read_elsewhere_kernel")->Unit(benchmark::kMicrosecond);
BENCHMARK(ReadElsewhere<VectorArray>)->Name("array_read_elsewhere_vector")->Unit(benchmark::kMicrosecond);
BENCHMARK(Write<KernelArray>)->Name("array_write_kernel")->Unit(benchmark::kMicrosecond);
BENCHMARK(Write<VectorArray>)->Name("array_write_vector")->Unit(benchmark::kMicrosecond);
BENCHMARK(ReadAnywhere<KernelArray>)->Name("array_anywhere_kernel")->Unit(benchmark::kMicrosecond);
BENCHMARK(ReadAnywhere<VectorArray>)->Name("array_anywhere_vector")->Unit(benchmark::kMicrosecond);

/// Takes as many things as the benchmark's argument says with `allocate`, keeps them, and lets them all go.
template <class Thing, class Allocate, class Release>
void RunBatches(benchmark::State& state, Allocate allocate, Release release)
{
    const std::int64_t batch = state.range(0);
    std::allocator<Thing> memory;
    Thing* const things = memory.allocate(static_cast<std::size_t>(batch));
    for (auto _ : state) {
        for (std::int64_t i = 0; i < batch; ++i) {
            ::new (static_cast<void*>(things + i)) Thing(allocate()); // where it stands: a uid has no cheap move
        }
        benchmark::ClobberMemory();
        for (std::int64_t i = 0; i < batch; ++i) {
            release(things[i]);
            std::destroy_at(things + i);
        }
        benchmark::ClobberMemory();
    }
    memory.deallocate(things, static_cast<std::size_t>(batch));
    state.SetItemsProcessed(state.iterations() * batch);
}

const auto BY_DESTRUCTOR = [](auto&) {};

void Uids(benchmark::State& state)
{
    RunBatches<cls_Uid>(
        state, [] { return cls_Uid::AllocateUid(); }, BY_DESTRUCTOR);
}

void SharedPointers(benchmark::State& state)
{
    RunBatches<std::shared_ptr<int>>(
        state, [] { return std::make_shared<int>(); }, BY_DESTRUCTOR);
}

void Malloc(benchmark::State& state)
{
    RunBatches<void*>(
        state, [] { return std::malloc(sizeof(cls_UidCatalogEntry)); }, [](void* block) { std::free(block); });
}

void BoostPool(benchmark::State& state)
{
    boost::pool<> pool(sizeof(cls_UidCatalogEntry));
    RunBatches<void*>(
        state, [&] { return pool.malloc(); }, [&](void* block) { pool.free(block); });
}

BENCHMARK(Uids)->Name("uid_kernel")->Arg(100)->Arg(500)->Arg(1000);
BENCHMARK(SharedPointers)->Name("uid_make_shared")->Arg(100)->Arg(500)->Arg(1000);
BENCHMARK(Malloc)->Name("uid_malloc")->Arg(100)->Arg(500)->Arg(1000);
BENCHMARK(BoostPool)->Name("uid_boost_pool")->Arg(100)->Arg(500)->Arg(1000);
} // namespace
