#pragma once

#include "py_ref.h"

#include "omu_InterfaceObj.h"

/// Adds the types ObjectMapping and ObjectSequence, which derive from `objectType` and are what repositories and
/// sequences of kernel objects are in Python. False with a Python error set.
bool pyAddContainerTypes(PyObject* module, PyTypeObject* objectType);

/// The type from which the classes of `object` derive, borrowed; null when it is no container.
PyTypeObject* pyContainerTypeOf(const omu_InterfaceObj& object);
