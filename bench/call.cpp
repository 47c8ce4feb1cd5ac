// A call with three positional and two keyword values from C++: values made, checked, dispatched by name, answered.

#include "python/cpython_peer.h"

#include "measured_object.h"
#include "omu_Module.h"
#include "omu_PrimList.h"

#include <benchmark/benchmark.h>

#include <array>
#include <memory>

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

PyObject* ListOfThree()
{
    PyObject* const list = PyList_New(3);
    for (Py_ssize_t i = 0; i < 3; ++i) {
        PyList_SET_ITEM(list, i, PyLong_FromLong(static_cast<long>(i) + 1));
    }
    return list;
}

void call_kernel(benchmark::State& state)
{
    Start();
    Measured object;
    for (auto _ : state) {
        omu_Arguments arguments(3);
        arguments.Put(7);
        arguments.Put(2.5);
        arguments.Put("a short name");
        auto list = std::make_unique<omu_PrimList>(3);
        list->Put(1);
        list->Put(2);
        list->Put(3);
        arguments.Put(list.release(), "labels");
        arguments.Put(1, "flag");
        bool deprecated = false;
        const std::unique_ptr<omu_Primitive> answer(object.CallMethod("part", "measure", arguments, deprecated));
        benchmark::DoNotOptimize(static_cast<const omu_PrimNumber&>(*answer).GetValue());
    }
}

void call_cpython_format(benchmark::State& state)
{
    Start();
    PyObject* const peer = cpython_peer::NewPeer();
    PyObject* const method = PyUnicode_InternFromString("measure_by_format");
    for (auto _ : state) {
        PyObject* const name = PyUnicode_FromString("a short name");
        PyObject* const list = ListOfThree();
        PyObject* const arguments = PyTuple_New(3);
        PyTuple_SET_ITEM(arguments, 0, PyLong_FromLong(7));
        PyTuple_SET_ITEM(arguments, 1, PyFloat_FromDouble(2.5));
        PyTuple_SET_ITEM(arguments, 2, name);
        PyObject* const keywords = PyDict_New();
        PyDict_SetItem(keywords, cpython_peer::Keywords()[3], list);
        PyDict_SetItem(keywords, cpython_peer::Keywords()[4], Py_True);
        PyObject* const bound = PyObject_GetAttr(peer, method);
        PyObject* const answer = PyObject_Call(bound, arguments, keywords);
        benchmark::DoNotOptimize(PyFloat_AS_DOUBLE(answer));
        Py_DECREF(answer);
        Py_DECREF(bound);
        Py_DECREF(keywords);
        Py_DECREF(list);
        Py_DECREF(arguments);
    }
}

void call_cpython_fast_call(benchmark::State& state)
{
    Start();
    PyObject* const peer = cpython_peer::NewPeer();
    PyObject* const method = PyUnicode_InternFromString("measure_by_fast_call");
    // The names of the keywords are a constant of the calling code, as they are in compiled Python.
    PyObject* const names = PyTuple_Pack(2, cpython_peer::Keywords()[3], cpython_peer::Keywords()[4]);
    for (auto _ : state) {
        const std::array<PyObject*, 6> values{
            peer,          PyLong_FromLong(7), PyFloat_FromDouble(2.5), PyUnicode_FromString("a short name"),
            ListOfThree(), Py_NewRef(Py_True)};
        PyObject* const answer =
            PyObject_VectorcallMethod(method, values.data(), 4 | PY_VECTORCALL_ARGUMENTS_OFFSET, names);
        benchmark::DoNotOptimize(PyFloat_AS_DOUBLE(answer));
        Py_DECREF(answer);
        for (std::size_t i = 1; i < values.size(); ++i) {
            Py_DECREF(values[i]);
        }
    }
}

BENCHMARK(call_kernel);
BENCHMARK(call_cpython_format);
BENCHMARK(call_cpython_fast_call);

} // namespace
