// 100,000 mixed values through a byte stream, beside cereal's binary archive of the same values as variants.

#include "bio_Ifilter.h"
#include "bio_Ofilter.h"
#include "omu_Module.h"
#include "ten_values.h"
#include "variant_tree.h"

#include <benchmark/benchmark.h>
#include <cereal/archives/binary.hpp>
#include <cereal/types/memory.hpp>
#include <cereal/types/string.hpp>
#include <cereal/types/variant.hpp>
#include <cereal/types/vector.hpp>

#include <memory>
#include <sstream>
#include <string>

// Monostate has no archive function of its own in cereal.
namespace std
{

template <class Archive> void serialize(Archive&, monostate&) {}

} // namespace std

/// cereal reads into what it may write to, so the nodes are not const here.
struct ArchivedNode
{
    using Items = std::vector<std::shared_ptr<ArchivedNode>>;

    std::variant<std::monostate, bool, std::int32_t, double, std::string, Items> value;

    template <class Archive> void serialize(Archive& archive) { archive(value); }
};

namespace
{

constexpr int TUPLES = 10000; // of ten values each

omu_PrimList Values()
{
    static int count = 0;
    omu_initialize(count);
    omu_PrimList list(TUPLES);
    for (int i = 0; i < TUPLES; ++i) {
        list.Put(TenValues(i));
    }
    return list;
}

std::shared_ptr<ArchivedNode> Archived(const VariantNode& node)
{
    auto archived = std::make_shared<ArchivedNode>();
    if (const auto* const items = std::get_if<VariantNode::Items>(&node.value)) {
        ArchivedNode::Items copies;
        for (const auto& item : *items) {
            copies.push_back(Archived(*item));
        }
        archived->value = std::move(copies);
    } else {
        std::visit(
            [&](const auto& value) {
                if constexpr (!std::is_same_v<std::decay_t<decltype(value)>, VariantNode::Items>) {
                    archived->value = value;
                }
            },
            node.value);
    }
    return archived;
}

ArchivedNode Nodes()
{
    ArchivedNode::Items items;
    for (int i = 0; i < TUPLES; ++i) {
        items.push_back(Archived(TenVariants(i)));
    }
    return ArchivedNode{std::move(items)};
}

void write_kernel(benchmark::State& state)
{
    const omu_PrimList values = Values();
    for (auto _ : state) {
        bio_Ofilter out;
        out << values;
        benchmark::DoNotOptimize(out.Data());
    }
}

void write_cereal(benchmark::State& state)
{
    const ArchivedNode values = Nodes();
    for (auto _ : state) {
        std::ostringstream stream;
        cereal::BinaryOutputArchive archive(stream);
        archive(values);
        benchmark::DoNotOptimize(stream.rdbuf());
    }
}

void read_kernel(benchmark::State& state)
{
    bio_Ofilter out;
    out << Values();
    for (auto _ : state) {
        bio_Ifilter in(out.Data(), out.Size());
        omu_PrimList values;
        in >> values;
        benchmark::DoNotOptimize(values.Length());
    }
}

void read_cereal(benchmark::State& state)
{
    std::ostringstream stream;
    cereal::BinaryOutputArchive{stream}(Nodes());
    const std::string bytes = stream.str();
    for (auto _ : state) {
        std::istringstream source(bytes);
        cereal::BinaryInputArchive archive(source);
        ArchivedNode values;
        archive(values);
        benchmark::DoNotOptimize(&values);
    }
}

BENCHMARK(write_kernel)->Unit(benchmark::kMicrosecond);
BENCHMARK(write_cereal)->Unit(benchmark::kMicrosecond);
BENCHMARK(read_kernel)->Unit(benchmark::kMicrosecond);
BENCHMARK(read_cereal)->Unit(benchmark::kMicrosecond);

} // namespace
