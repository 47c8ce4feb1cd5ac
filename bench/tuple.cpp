// Copy, comparison and text of a tuple of ten mixed values, beside a tree of variants and Python's tuple.

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include "omu_Module.h"
#include "ten_values.h"
#include "variant_tree.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <memory>
#include <string>

namespace
{

void Start()
{
    static const bool started = [] {
        Py_Initialize();
        int count = 0;
        omu_initialize(count);
        return true;
    }();
    benchmark::DoNotOptimize(started);
}

template <class Number> void AppendNumber(std::string& text, Number number)
{
    char buffer[32];
    text.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr);
}

struct AppendText
{
    std::string& text;

    void operator()(std::monostate) const { text += "None"; }
    void operator()(bool flag) const { text += flag ? "True" : "False"; }
    void operator()(std::int32_t number) const { AppendNumber(text, number); }
    void operator()(double number) const { AppendNumber(text, number); }
    void operator()(const std::string& string) const
    {
        text += '\'';
        for (const char character : string) {
            if (character == '\\' || character == '\'') {
                text += '\\';
            }
            text += character;
        }
        text += '\'';
    }
    void operator()(const VariantNode::Items& items) const
    {
        text += '(';
        for (std::size_t i = 0; i < items.size(); ++i) {
            text += i > 0 ? ", " : "";
            std::visit(*this, items[i]->value);
        }
        text += ')';
    }
};

/// The ten values as Python makes them; every item is a new object where Python has no single one for it.
PyObject* TenObjects(long seed)
{
    return Py_BuildValue("(ldssOOl(ll)[ddd]d)", seed, 0.5 + static_cast<double>(seed), "short",
                         "a text that is too long to be kept in place", Py_None, Py_True, seed + 1000, seed, seed + 1,
                         0.1, 0.2, 0.3, 1e-3 * static_cast<double>(seed));
}

void copy_kernel(benchmark::State& state)
{
    Start();
    const omu_PrimTuple tuple = TenValues(5000);
    for (auto _ : state) {
        const std::unique_ptr<omu_Primitive> copy(tuple.Copy());
        benchmark::DoNotOptimize(copy.get());
    }
}

void copy_variant(benchmark::State& state)
{
    const VariantNode tuple = TenVariants(5000);
    for (auto _ : state) {
        const auto copy = std::make_unique<VariantNode>(tuple);
        benchmark::DoNotOptimize(copy.get());
    }
}

void copy_python(benchmark::State& state)
{
    Start();
    PyObject* const tuple = TenObjects(5000);
    for (auto _ : state) {
        // A tuple of the same items; a plain copy gives the same object.
        PyObject* const copy = PyTuple_New(10);
        for (Py_ssize_t i = 0; i < 10; ++i) {
            PyTuple_SET_ITEM(copy, i, Py_NewRef(PyTuple_GET_ITEM(tuple, i)));
        }
        benchmark::DoNotOptimize(copy);
        Py_DECREF(copy);
    }
}

void compare_kernel(benchmark::State& state)
{
    Start();
    const omu_PrimTuple left = TenValues(5000);
    const omu_PrimTuple right = TenValues(5000);
    for (auto _ : state) {
        benchmark::DoNotOptimize(left == right);
    }
}

void compare_variant(benchmark::State& state)
{
    const VariantNode left = TenVariants(5000);
    const VariantNode right = TenVariants(5000);
    for (auto _ : state) {
        benchmark::DoNotOptimize(left == right);
    }
}

void compare_python(benchmark::State& state)
{
    Start();
    PyObject* const left = TenObjects(5000);
    PyObject* const right = TenObjects(5000);
    for (auto _ : state) {
        benchmark::DoNotOptimize(PyObject_RichCompareBool(left, right, Py_EQ));
    }
}

void text_kernel(benchmark::State& state)
{
    Start();
    const omu_PrimTuple tuple = TenValues(5000);
    for (auto _ : state) {
        const cow_String text = tuple.AsString(0);
        benchmark::DoNotOptimize(text.AsCharPtr());
    }
}

void text_variant(benchmark::State& state)
{
    const VariantNode tuple = TenVariants(5000);
    for (auto _ : state) {
        std::string text;
        std::visit(AppendText{text}, tuple.value);
        benchmark::DoNotOptimize(text.data());
    }
}

void text_python(benchmark::State& state)
{
    Start();
    PyObject* const tuple = TenObjects(5000);
    for (auto _ : state) {
        PyObject* const text = PyObject_Repr(tuple);
        benchmark::DoNotOptimize(text);
        Py_DECREF(text);
    }
}

BENCHMARK(copy_kernel);
BENCHMARK(copy_variant);
BENCHMARK(copy_python);
BENCHMARK(compare_kernel);
BENCHMARK(compare_variant);
BENCHMARK(compare_python);
BENCHMARK(text_kernel);
BENCHMARK(text_variant);
BENCHMARK(text_python);

} // namespace
