#pragma once

#include "py_ref.h"

/// Adds the exception classes to the module: RangeError, ColorError, FontError, BrenowNameError, KeyError (whose text is
/// the message as it stands), AccessError, XypError. False with a Python error set.
bool pyAddErrors(PyObject* module);

/// Turns the C++ exception being handled into the Python error of its kind with its exact text; call it in a catch
/// clause. A Python error that is already set becomes the new one's context.
void pySetErrorFromCurrentException() noexcept;

/// KeyError for a key that `object` does not have; it carries both.
void pySetKeyError(PyObject* object, PyObject* key);

/// Runs `body` and returns its result; when it throws, sets the Python error and returns `failed`. Every entry from
/// Python goes through it: no C++ exception may reach the interpreter.
template <class Body, class Result> Result pyGuard(Result failed, Body body) noexcept
{
    try {
        return body();
    } catch (...) {
        pySetErrorFromCurrentException();
        return failed;
    }
}
