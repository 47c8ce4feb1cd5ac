#pragma once

#include "py_ref.h"

#include <memory>

class omu_PrimArray;
class omu_Primitive;

/// Adds the type Array, a numeric array with the buffer protocol, to the module. False with a Python error set.
bool pyAddArrayType(PyObject* module);

/// A number from a buffer without dimensions (a numpy scalar), of its own kind, or a numeric array from one with
/// dimensions, copied without a Python loop; null with a Python error set.
std::unique_ptr<omu_Primitive> pyFromBuffer(PyObject* value);

/// The array as a numpy array where numpy can be imported, else as a vexomu.Array; both share the elements and keep
/// them alive. A new reference; null with a Python error set.
PyObject* pyToArray(const omu_PrimArray& array);
