#pragma once

#include "py_ref.h"

/// Adds the exception classes to the module: RangeError, ColorError, FontError, BrenowNameError, KeyError (whose text is
/// the message as it stands), AccessError, XypError. False with a Python error set.
bool pyAddErrors(PyObject* module);

/// Turns the C++ exception being handled into the Python error of its kind with its exact text; call it in a catch
/// clause. A Python error that is already set becomes the new one's context. An AttributeError or KeyError carries
/// `object`, whose use it is unless that is null; both and a NameError carry the name or key that they are about.
void pySetErrorFromCurrentException(PyObject* object = nullptr) noexcept;

/// Sets an error that carries the object and the name or key of it that was asked for, from which the interpreter makes
/// its suggestions. A `text` that is null has set an error already.
void pySetErrorAbout(PyObject* type, PyObject* object, PyObject* name, PyRef text);

/// KeyError for a key that `object` does not have.
void pySetKeyError(PyObject* object, PyObject* key);

/// Holds this thread for what is left of the process: the interpreter, at its end, unwinds every other thread that comes
/// back to it, which no C++ function between here and the thread's start is made for.
[[noreturn]] void pyHoldThread() noexcept;

/// Runs `body` and returns its result; when it throws, sets the Python error and returns `failed`. Every entry from
/// Python goes through it: no C++ exception may reach the interpreter. `object` is what the entry is about, or null.
template <class Body, class Result> Result pyGuard(Result failed, Body body, PyObject* object = nullptr) noexcept
{
    try {
        return body();
    } catch (...) {
        pySetErrorFromCurrentException(object);
        return failed;
    }
}
