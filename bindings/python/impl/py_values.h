#pragma once

#include "py_ref.h"

#include "omu_PrimHolder.h"

#include <string_view>

class omu_PrimTuple;

// Values cross like this:
//
//     Python                                  VEXomu
//     None                                    omu_PrimNone
//     bool                                    INT32 1 or 0
//     int, anything with __index__            INT32 up to 2147483647, uint32 up to 4294967295, else OverflowError
//     float; numpy scalars                    REAL64; numbers of their own kind
//     complex                                 omu_PrimComplex
//     str; os.PathLike                        omu_PrimString, as UTF-8 (bytes that are not come and go as surrogates)
//     Path, Constant, TypeName                omu_PrimPath, omu_PrimEnumBase, omu_PrimType
//     tuple, list                             omu_PrimTuple, omu_PrimList
//     dict with str keys or int keys          omu_PrimDictionary<cow_String> or <int>; an empty one has str keys
//     a buffer such as a numpy array          omu_PrimArray
//     a kernel object                         omu_ObjectRef
//
// Everything else is a TypeError, and so is a dict whose keys are mixed; nesting deeper than the streams allow, cyclic
// lists among it, is a ValueError.

/// Adds the types Path, Constant, TypeName and Array and the constants ON, OFF, TRUE, FALSE to the module. False with a
/// Python error set.
bool pyAddValueTypes(PyObject* module);

/// A value made from a Python one; null with a Python error set. `depth` counts the containers around it.
omu_PrimHolder pyFromPython(PyObject* value, int depth = 0);

/// Puts the same into a tuple; false with a Python error set.
bool pyPutFromPython(omu_PrimTuple& tuple, PyObject* value, int depth = 0);

/// A new reference to the Python value of `value` (null: None), or null with a Python error set.
PyObject* pyToPython(const omu_Primitive* value);

/// Kernel text as a Python string, a new reference; null with a Python error set.
PyObject* pyText(std::string_view text);

/// The UTF-8 bytes of a Python string. Invalid with a Python error set when IsValid() is false; the bytes live as long as
/// this object and the string.
class PyUtf8
{
public:
    explicit PyUtf8(PyObject* string)
    {
        if (PyUnicode_IS_COMPACT_ASCII(string)) {
            m_length = PyUnicode_GET_LENGTH(string);
            m_bytes = reinterpret_cast<const char*>(PyUnicode_1BYTE_DATA(string));
        } else {
            Encode(string);
        }
    }
    bool IsValid() const noexcept { return m_bytes != nullptr; }
    std::string_view view() const noexcept { return {m_bytes, static_cast<std::size_t>(m_length)}; }

private:
    void Encode(PyObject* string);

    PyRef m_encoded; // for strings that the interpreter does not keep as UTF-8 itself
    Py_ssize_t m_length = 0;
    const char* m_bytes = nullptr;
};
