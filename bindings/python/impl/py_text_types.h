#pragma once

#include "py_ref.h"

/// The types of values that Python has no kind of its own for but that read as a text: each is a subclass of str.
enum class PyTextKind
{
    PATH,      // vexomu.Path: the dotted address of a kernel object
    CONSTANT,  // vexomu.Constant: a symbolic constant; repr is its bare name
    TYPE_NAME, // vexomu.TypeName: the type of a kernel object
    NONE
};

/// Adds Path, Constant, TypeName and the constants ON, OFF, TRUE, FALSE to the module. False with a Python error set.
bool pyAddTextTypes(PyObject* module);

/// A new text of the kind, made from a Python string; null with a Python error set.
PyObject* pyNewText(PyTextKind kind, PyObject* string);

/// Which kind a Python string is; NONE for a plain one.
PyTextKind pyTextKindOf(PyObject* string);
