#include "py_errors.h"

#include "nex_CommandException.h"
#include "nex_TextException.h"
#include "omu_AttributeErrorException.h"
#include "omu_MessageException.h"
#include "uti_SystemException.h"

#include <array>
#include <chrono>
#include <exception>
#include <new>
#include <string_view>
#include <thread>

namespace
{

struct ErrorClass
{
    const char* category; // what nex_CommandException::PythonType() says
    PyObject** base;
    const char* description;
    PyObject* type = nullptr; // owned by the module and by this table
};

// The categories that the script language does not have itself, and KeyError, whose own text would stand in quotes.
std::array<ErrorClass, 7> ownErrors{{
    {"RangeError", &PyExc_ValueError, "A number outside its permitted range."},
    {"ColorError", &PyExc_ValueError, "A text that names no color."},
    {"FontError", &PyExc_ValueError, "A text that names no font."},
    {"BrenowNameError", &PyExc_ValueError, "A name that breaks the naming rules."},
    {"KeyError", &PyExc_KeyError, "A key that a repository does not have."},
    {"AccessError", &PyExc_ReferenceError, "A use of a kernel object that no longer exists."},
    {"XypError", &PyExc_RuntimeError, "A failed operation on X-Y data."},
}};

struct BuiltinError
{
    const char* category;
    PyObject** type;
};

const std::array<BuiltinError, 8> builtinErrors{{
    {"TypeError", &PyExc_TypeError},
    {"ValueError", &PyExc_ValueError},
    {"IndexError", &PyExc_IndexError},
    {"AttributeError", &PyExc_AttributeError},
    {"NameError", &PyExc_NameError},
    {"ZeroDivisionError", &PyExc_ZeroDivisionError},
    {"OverflowError", &PyExc_OverflowError},
    {"ReferenceError", &PyExc_ReferenceError},
}};

PyObject* TypeOfCategory(std::string_view category)
{
    for (const ErrorClass& error : ownErrors) {
        if (category == error.category && error.type != nullptr) {
            return error.type;
        }
    }
    for (const BuiltinError& error : builtinErrors) {
        if (category == error.category) {
            return *error.type;
        }
    }
    return PyExc_RuntimeError;
}

/// A text of the kernel as Python text; bytes that are not UTF-8 survive as surrogates.
PyRef Text(const cow_String& text)
{
    return PyRef(PyUnicode_DecodeUTF8(text.AsCharPtr(), text.Length(), "surrogateescape"));
}

void SetError(PyObject* type, const cow_String& message)
{
    const PyRef text = Text(message);
    if (text) {
        PyErr_SetObject(type, text.Get());
    }
}

void SetSystemError(const uti_SystemException& error)
{
    const PyRef message = Text(error.AsString());
    const PyRef fileName = error.FileName().IsEmpty() ? PyRef(Py_NewRef(Py_None)) : Text(error.FileName());
    const PyRef arguments(
        message && fileName ? Py_BuildValue("(iOO)", error.ErrorNumber(), message.Get(), fileName.Get()) : nullptr);
    if (arguments) {
        PyErr_SetObject(PyExc_OSError, arguments.Get());
    }
}

/// The name or key that the error is about; empty when it does not say.
cow_String SubjectOf(const nex_CommandException& error)
{
    if (const auto* const message = dynamic_cast<const omu_MessageException*>(&error)) {
        return message->Subject();
    }
    const auto* const attribute = dynamic_cast<const omu_AttributeErrorException*>(&error);
    return attribute != nullptr && attribute->Kind() == omu_AttributeErrorException::READ_ONLY ? attribute->Text()
                                                                                               : cow_String();
}

bool CarriesSubject(PyObject* type)
{
    return PyObject_IsSubclass(type, PyExc_AttributeError) == 1 || PyObject_IsSubclass(type, PyExc_NameError) == 1 ||
           PyObject_IsSubclass(type, PyExc_KeyError) == 1;
}

void SetCommandError(const nex_CommandException& error, PyObject* object)
{
    PyObject* const type = TypeOfCategory(error.PythonType());
    if (object == nullptr || !CarriesSubject(type)) {
        SetError(type, error.JournalMessage());
        return;
    }
    const cow_String subject = SubjectOf(error);
    const PyRef name = subject.IsEmpty() ? PyRef(Py_NewRef(Py_None)) : Text(subject);
    if (name) {
        pySetErrorAbout(type, object, name.Get(), Text(error.JournalMessage()));
    }
}

void Translate(PyObject* object)
{
    try {
        throw;
    } catch (const nex_CommandException& error) {
        SetCommandError(error, object);
    } catch (const uti_SystemException& error) {
        SetSystemError(error);
    } catch (const nex_Exception& error) {
        SetError(PyExc_RuntimeError, error.AsString());
    } catch (const std::bad_alloc&) {
        PyErr_NoMemory();
    } catch (const std::exception& error) {
        SetError(PyExc_RuntimeError, cow_String(error.what()));
    } catch (...) {
        PyErr_SetString(PyExc_RuntimeError, "an exception of unknown type");
    }
}

bool CanBePickled(PyObject* value)
{
    const PyRef pickle(PyImport_ImportModule("pickle"));
    const PyRef bytes(pickle ? PyObject_CallMethod(pickle.Get(), "dumps", "O", value) : nullptr);
    return static_cast<bool>(bytes);
}

/// What pickle and copy make the error of again: class, text, and those attributes that can be pickled, which a kernel
/// object is not. Null with a Python error set.
PyObject* Reduce(PyObject* self, PyObject*)
{
    static thread_local bool isTrying = false; // an attribute, which may be an error whose attributes lead back here
    PyRef whole(PyObject_CallMethod(PyExc_Exception, "__reduce__", "O", self));
    if (!whole || PyTuple_GET_SIZE(whole.Get()) < 3) {
        return whole.Release();
    }
    const PyRef all(isTrying ? PyDict_New() : PyDict_Copy(PyTuple_GET_ITEM(whole.Get(), 2)));
    const PyRef kept(all ? PyDict_New() : nullptr);
    PyObject* name = nullptr;
    PyObject* value = nullptr;
    for (Py_ssize_t place = 0; kept && PyDict_Next(all.Get(), &place, &name, &value) != 0;) {
        isTrying = true;
        const bool isKept = CanBePickled(value);
        isTrying = false;
        if (isKept ? PyDict_SetItem(kept.Get(), name, value) < 0 : PyErr_ExceptionMatches(PyExc_Exception) == 0) {
            return nullptr;
        }
        PyErr_Clear();
    }
    return kept ? PyTuple_Pack(3, PyTuple_GET_ITEM(whole.Get(), 0), PyTuple_GET_ITEM(whole.Get(), 1), kept.Get())
                : nullptr;
}

PyMethodDef reduce = {"__reduce__", Reduce, METH_NOARGS, nullptr};

} // namespace

bool pyAddErrors(PyObject* module)
{
    for (ErrorClass& error : ownErrors) {
        const PyRef members(PyDict_New());
        const PyRef text(PyObject_GetAttrString(PyExc_Exception, "__str__"));
        if (!members || !text || PyDict_SetItemString(members.Get(), "__str__", text.Get()) < 0) {
            return false;
        }
        const PyRef name(PyUnicode_FromFormat("vexomu.%s", error.category));
        if (!name) {
            return false;
        }
        error.type =
            PyErr_NewExceptionWithDoc(PyUnicode_AsUTF8(name.Get()), error.description, *error.base, members.Get());
        if (error.type == nullptr || PyModule_AddObjectRef(module, error.category, error.type) < 0) {
            return false;
        }
        const PyRef method(PyDescr_NewMethod(reinterpret_cast<PyTypeObject*>(error.type), &reduce));
        if (!method || PyObject_SetAttrString(error.type, reduce.ml_name, method.Get()) < 0) {
            return false;
        }
    }
    return true;
}

void pySetErrorFromCurrentException(PyObject* object) noexcept
{
    if (std::current_exception() == nullptr) {
        pyHoldThread(); // no exception that anybody threw
    }
    PyObject* type = nullptr;
    PyObject* earlier = nullptr;
    PyObject* traceback = nullptr;
    PyErr_Fetch(&type, &earlier, &traceback);
    if (type == nullptr) {
        Translate(object);
        return;
    }
    PyErr_NormalizeException(&type, &earlier, &traceback);
    if (traceback != nullptr) {
        PyException_SetTraceback(earlier, traceback);
    }
    Py_XDECREF(type);
    Py_XDECREF(traceback);
    Translate(object);
    PyObject* newType = nullptr;
    PyObject* value = nullptr;
    PyObject* newTraceback = nullptr;
    PyErr_Fetch(&newType, &value, &newTraceback);
    PyErr_NormalizeException(&newType, &value, &newTraceback);
    PyException_SetContext(value, earlier); // takes over the reference
    PyErr_Restore(newType, value, newTraceback);
}

void pyHoldThread() noexcept
{
    for (;;) {
        std::this_thread::sleep_for(std::chrono::hours(1));
    }
}

void pySetErrorAbout(PyObject* type, PyObject* object, PyObject* name, PyRef text)
{
    const PyRef error(text ? PyObject_CallOneArg(type, text.Get()) : nullptr);
    // A NameError has no place for an object: it would be a plain attribute, and one that cannot be pickled.
    const bool hasObject = PyObject_IsSubclass(type, PyExc_NameError) == 0;
    if (error && PyObject_SetAttrString(error.Get(), "name", name) == 0 &&
        (!hasObject || PyObject_SetAttrString(error.Get(), "obj", object) == 0)) {
        PyErr_SetObject(type, error.Get());
    }
}

void pySetKeyError(PyObject* object, PyObject* key)
{
    pySetErrorAbout(TypeOfCategory("KeyError"), object, key, PyRef(PyUnicode_FromFormat("no key %R", key)));
}
