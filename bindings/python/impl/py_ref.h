#pragma once

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include <utility>

/// An owned reference to a Python object, or null.
class PyRef
{
public:
    PyRef() noexcept = default;
    /// Takes over the reference.
    explicit PyRef(PyObject* object) noexcept : m_object(object) {}
    PyRef(PyRef&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    PyRef& operator=(PyRef&& other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }
    PyRef(const PyRef&) = delete;
    PyRef& operator=(const PyRef&) = delete;
    ~PyRef() { Py_XDECREF(m_object); }

    PyObject* Get() const noexcept { return m_object; }
    PyObject* Release() noexcept { return std::exchange(m_object, nullptr); }
    explicit operator bool() const noexcept { return m_object != nullptr; }

private:
    PyObject* m_object = nullptr;
};
