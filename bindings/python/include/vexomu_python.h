#pragma once

// For extension modules that hand kernel objects to Python: what module `vexomu` offers to C++.
//
//     PyMODINIT_FUNC PyInit_counter()
//     {
//         return vexomu_NewModule("counter", "Counts.", {{"counter", new Counter}});
//     }

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include "omu_InterfaceObj.h"

#include <initializer_list>
#include <memory>

/// The functions of module `vexomu`, reached through the capsule "vexomu._api" so that no library needs to be linked.
struct vexomu_Api
{
    static constexpr const char* CAPSULE = "vexomu._api";
    static constexpr int VERSION = 2;

    int version = VERSION;
    /// A Python object that owns `object`; null with a Python error set. Takes ownership in every case.
    PyObject* (*wrap)(omu_InterfaceObj* object) = nullptr;
    /// The Python value of `value`, which is not kept; null with a Python error set. A null value is None.
    PyObject* (*toPython)(const omu_Primitive* value) = nullptr;
    /// A value that the caller owns; null with a Python error set.
    omu_Primitive* (*fromPython)(PyObject* value) = nullptr;
    /// Tells the journal that scripts find `object`, which wrap gave, by importing `name` from `module`; -1 with a Python
    /// error set.
    int (*announceRoot)(const char* module, const char* name, PyObject* object) = nullptr;
};

/// The functions of module `vexomu`, which is imported by the first call; null with a Python error set.
inline const vexomu_Api* vexomu_ImportApi()
{
    static const vexomu_Api* api = nullptr;
    if (api == nullptr) {
        PyObject* const module = PyImport_ImportModule("vexomu"); // which says what was wrong, unlike PyCapsule_Import
        Py_XDECREF(module);
        const auto* const found =
            static_cast<const vexomu_Api*>(module != nullptr ? PyCapsule_Import(vexomu_Api::CAPSULE, 0) : nullptr);
        if (found != nullptr && found->version != vexomu_Api::VERSION) {
            PyErr_Format(PyExc_ImportError, "vexomu offers interface %d, this module needs %d", found->version,
                         vexomu_Api::VERSION);
            return nullptr;
        }
        api = found;
    }
    return api;
}

/// A kernel object under the name that a module's users see; the module owns it.
struct vexomu_NamedObject
{
    const char* name;
    omu_InterfaceObj* object;
};

/// A new module that owns `objects`; null with a Python error set, and then the objects are deleted too.
inline PyObject* vexomu_NewModule(const char* name, const char* description,
                                  std::initializer_list<vexomu_NamedObject> objects)
{
    // The interpreter keeps the definition of a module for as long as the process lives.
    auto* const definition =
        new PyModuleDef{PyModuleDef_HEAD_INIT, name, description, -1, nullptr, nullptr, nullptr, nullptr, nullptr};
    PyObject* module = PyModule_Create(definition);
    const vexomu_Api* const api = module != nullptr ? vexomu_ImportApi() : nullptr;
    bool failed = api == nullptr;
    for (const vexomu_NamedObject& named : objects) {
        std::unique_ptr<omu_InterfaceObj> object(named.object);
        if (failed) {
            continue;
        }
        PyObject* const wrapped = api->wrap(object.release());
        failed = wrapped == nullptr || PyModule_AddObjectRef(module, named.name, wrapped) < 0 ||
                 api->announceRoot(name, named.name, wrapped) < 0;
        Py_XDECREF(wrapped);
    }
    if (failed) {
        Py_CLEAR(module);
    }
    return module;
}
