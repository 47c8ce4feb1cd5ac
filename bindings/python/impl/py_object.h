#pragma once

#include "py_ref.h"

#include "omu_InterfaceObj.h"

struct PyJournalName;

/// Adds the type Object, root of the classes of kernel objects, to the module. False with a Python error set.
bool pyAddObjectType(PyObject* module);

/// A Python object for `object`, whose class is made from the object's tables on first use; null with a Python error
/// set. With `owned` the Python object deletes `object` at its own end (and `object` is deleted when this fails);
/// without, it refers to it and raises AccessError once it is gone.
PyObject* pyWrapObject(omu_InterfaceObj& object, bool owned);

/// The kernel object behind a Python object: null without a Python error when `value` is none of ours. Throws
/// omu_AccessErrorException when the kernel object is gone.
omu_InterfaceObj* pyUnwrapObject(PyObject* value);

/// Whether `value` stands for a kernel object, be it gone.
bool pyUnwrapsToObject(PyObject* value);

/// The journal's variable for a Python object that pyUnwrapObject has an object of; null when it has none.
PyJournalName* pyJournalNameOf(PyObject* handle);

/// The Python value of a result that the caller owns (null: None); null with a Python error set.
PyObject* pyTakeResult(omu_Primitive* result);
