#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <array>
#include <string_view>
#include <vector>

// The measured method as a careful C programmer writes it by hand, in both calling conventions, on a type with 20
// methods like the kernel object's.

namespace cpython_peer
{

inline bool ToInts(PyObject* list, std::vector<int>& ints)
{
    if (!PyList_Check(list)) {
        PyErr_SetString(PyExc_TypeError, "labels must be a list");
        return false;
    }
    ints.reserve(static_cast<std::size_t>(PyList_GET_SIZE(list)));
    for (Py_ssize_t i = 0; i < PyList_GET_SIZE(list); ++i) {
        const long value = PyLong_AsLong(PyList_GET_ITEM(list, i));
        if (value == -1 && PyErr_Occurred() != nullptr) {
            return false;
        }
        ints.push_back(static_cast<int>(value));
    }
    return true;
}

inline PyObject* Answer(long count, double width, std::string_view name, const std::vector<int>& labels, bool flag)
{
    int sum = static_cast<int>(count) + static_cast<int>(name.size()) + (flag ? 1 : 0);
    for (const int label : labels) {
        sum += label;
    }
    return PyFloat_FromDouble(width + sum);
}

inline PyObject* MeasureByFormat(PyObject*, PyObject* arguments, PyObject* keywords)
{
    static const char* names[] = {"count", "width", "name", "labels", "flag", nullptr};
    int count = 0;
    double width = 0.0;
    const char* name = nullptr;
    Py_ssize_t nameLength = 0;
    PyObject* list = nullptr;
    int flag = 0;
    if (PyArg_ParseTupleAndKeywords(arguments, keywords, "ids#|Op:measure", const_cast<char**>(names), &count, &width,
                                    &name, &nameLength, &list, &flag) == 0) {
        return nullptr;
    }
    std::vector<int> labels;
    if (list != nullptr && !ToInts(list, labels)) {
        return nullptr;
    }
    return Answer(count, width, {name, static_cast<std::size_t>(nameLength)}, labels, flag != 0);
}

/// The keywords of the method, interned once.
inline const std::array<PyObject*, 5>& Keywords()
{
    static const std::array<PyObject*, 5> keywords{
        PyUnicode_InternFromString("count"), PyUnicode_InternFromString("width"), PyUnicode_InternFromString("name"),
        PyUnicode_InternFromString("labels"), PyUnicode_InternFromString("flag")};
    return keywords;
}

/// Sorts positional and keyword values into one slot per parameter; false with a Python error set.
inline bool Sort(PyObject* const* values, Py_ssize_t positional, PyObject* names, std::array<PyObject*, 5>& slots)
{
    if (positional > static_cast<Py_ssize_t>(slots.size())) {
        PyErr_SetString(PyExc_TypeError, "too many arguments");
        return false;
    }
    for (Py_ssize_t i = 0; i < positional; ++i) {
        slots[static_cast<std::size_t>(i)] = values[i];
    }
    const Py_ssize_t count = names != nullptr ? PyTuple_GET_SIZE(names) : 0;
    for (Py_ssize_t i = 0; i < count; ++i) {
        PyObject* const name = PyTuple_GET_ITEM(names, i);
        std::size_t slot = 0;
        while (slot < slots.size() && Keywords()[slot] != name) {
            ++slot;
        }
        for (std::size_t other = 0; slot == slots.size() && other < slots.size(); ++other) {
            if (PyUnicode_Compare(Keywords()[other], name) == 0) {
                slot = other;
            }
        }
        if (slot == slots.size() || slots[slot] != nullptr) {
            PyErr_Format(PyExc_TypeError, "unexpected keyword %U", name);
            return false;
        }
        slots[slot] = values[positional + i];
    }
    if (slots[0] == nullptr || slots[1] == nullptr || slots[2] == nullptr) {
        PyErr_SetString(PyExc_TypeError, "missing arguments");
        return false;
    }
    return true;
}

inline PyObject* MeasureByFastCall(PyObject*, PyObject* const* values, Py_ssize_t positional, PyObject* names)
{
    std::array<PyObject*, 5> slots{};
    if (!Sort(values, positional, names, slots)) {
        return nullptr;
    }
    const long count = PyLong_AsLong(slots[0]);
    const double width = PyFloat_AsDouble(slots[1]);
    Py_ssize_t nameLength = 0;
    const char* const name = PyUnicode_AsUTF8AndSize(slots[2], &nameLength);
    if (name == nullptr || PyErr_Occurred() != nullptr) {
        return nullptr;
    }
    std::vector<int> labels;
    if (slots[3] != nullptr && !ToInts(slots[3], labels)) {
        return nullptr;
    }
    const int flag = slots[4] != nullptr ? PyObject_IsTrue(slots[4]) : 0;
    return flag < 0 ? nullptr : Answer(count, width, {name, static_cast<std::size_t>(nameLength)}, labels, flag != 0);
}

inline PyObject* Other(PyObject*, PyObject*)
{
    Py_RETURN_NONE;
}

/// A new instance of the peer's type.
inline PyObject* NewPeer()
{
    static PyMethodDef methods[] = {
        {"area", Other, METH_NOARGS, ""},
        {"copy", Other, METH_NOARGS, ""},
        {"delete", Other, METH_NOARGS, ""},
        {"describe", Other, METH_NOARGS, ""},
        {"edges", Other, METH_NOARGS, ""},
        {"faces", Other, METH_NOARGS, ""},
        {"hide", Other, METH_NOARGS, ""},
        {"nodes", Other, METH_NOARGS, ""},
        {"rename", Other, METH_NOARGS, ""},
        {"show", Other, METH_NOARGS, ""},
        {"assign", Other, METH_NOARGS, ""},
        {"bound", Other, METH_NOARGS, ""},
        {"elements", Other, METH_NOARGS, ""},
        {"loads", Other, METH_NOARGS, ""},
        {"measure_by_format", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(MeasureByFormat)),
         METH_VARARGS | METH_KEYWORDS, ""},
        {"measure_by_fast_call", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(MeasureByFastCall)),
         METH_FASTCALL | METH_KEYWORDS, ""},
        {"mirror", Other, METH_NOARGS, ""},
        {"rotate", Other, METH_NOARGS, ""},
        {"split", Other, METH_NOARGS, ""},
        {"volume", Other, METH_NOARGS, ""},
        {},
    };
    PyType_Slot slots[] = {{Py_tp_methods, methods}, {0, nullptr}};
    PyType_Spec spec{"bench_cpython.Peer", sizeof(PyObject), 0, Py_TPFLAGS_DEFAULT, slots};
    PyObject* const type = PyType_FromSpec(&spec);
    return type != nullptr ? PyObject_CallNoArgs(type) : nullptr;
}

} // namespace cpython_peer
