#pragma once

#include "py_ref.h"

/// Adds what scripts use of the library beside kernel objects to the module: match, split and substitute over regular
/// expressions, number formats by name, and run for programs. False with a Python error set.
bool pyAddUtilities(PyObject* module);
