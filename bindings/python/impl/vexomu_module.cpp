#include "py_array.h"
#include "py_errors.h"
#include "py_journal.h"
#include "py_object.h"
#include "py_text_types.h"
#include "py_utilities.h"
#include "py_values.h"
#include "vexomu_python.h"

#include "omu_Module.h"

#include <memory>

namespace
{

PyObject* Wrap(omu_InterfaceObj* object)
{
    return pyGuard(static_cast<PyObject*>(nullptr), [&] { return pyWrapObject(*object, /*owned=*/true); });
}

PyObject* ToPython(const omu_Primitive* value)
{
    return pyGuard(static_cast<PyObject*>(nullptr), [&] { return pyToPython(value); });
}

omu_Primitive* FromPython(PyObject* value)
{
    return pyGuard(static_cast<omu_Primitive*>(nullptr), [&] { return pyFromPython(value).Release(); });
}

int AnnounceRoot(const char* module, const char* name, PyObject* object)
{
    return pyGuard(-1, [&] { return pyAnnounceRoot(module, name, *pyUnwrapObject(object)) ? 0 : -1; });
}

vexomu_Api api{.wrap = Wrap, .toPython = ToPython, .fromPython = FromPython, .announceRoot = AnnounceRoot};

PyModuleDef definition = {
    PyModuleDef_HEAD_INIT,
    "vexomu",
    "Values, errors and kernel objects of VEXomu.",
    -1, // the library below is one per process
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
};

bool Fill(PyObject* module)
{
    if (!pyAddErrors(module) || !pyAddTextTypes(module) || !pyAddArrayType(module) || !pyAddObjectType(module) ||
        !pyAddJournal(module) || !pyAddUtilities(module)) {
        return false;
    }
    const PyRef capsule(PyCapsule_New(&api, vexomu_Api::CAPSULE, nullptr));
    return capsule && PyModule_AddObjectRef(module, "_api", capsule.Get()) == 0;
}

} // namespace

PyMODINIT_FUNC PyInit_vexomu()
{
    return pyGuard(static_cast<PyObject*>(nullptr), []() -> PyObject* {
        // The classes are one per process, too: the interpreter may ask again once it has forgotten the module.
        static PyObject* only = nullptr;
        if (PyInterpreterState_Get() != PyInterpreterState_Main()) {
            PyErr_SetString(PyExc_ImportError, "vexomu is for the main interpreter of a process");
            return nullptr;
        }
        if (only == nullptr) {
            // Never finalized: kernel objects in Python's hands may outlive every moment at which that could be done.
            static int count = 0;
            omu_initialize(count);
            PyRef module(PyModule_Create(&definition));
            only = module && Fill(module.Get()) ? module.Release() : nullptr;
        }
        return Py_XNewRef(only);
    });
}
