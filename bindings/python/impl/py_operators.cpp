#include "py_operators.h"

#include "py_errors.h"
#include "py_object.h"
#include "py_values.h"

#include "omu_Arguments.h"

#include <memory>

namespace
{

/// The object behind an operand; one that is none of the kernel's is what `other` coerces it to, kept by `keeper`. Null
/// with a Python error set, or without one for what is no value: its own class may know the operator.
omu_InterfaceObj* Operand(PyObject* value, PyObject* other, std::unique_ptr<omu_Primitive>& keeper)
{
    if (omu_InterfaceObj* const object = pyUnwrapObject(value)) {
        return object;
    }
    omu_PrimHolder held = pyFromPython(value);
    if (!held) {
        if (PyErr_ExceptionMatches(PyExc_TypeError)) {
            PyErr_Clear();
        }
        return nullptr;
    }
    omu_Arguments arguments(1);
    arguments.Put(std::move(held));
    keeper.reset(pyUnwrapObject(other)->Coerce(arguments));
    if (keeper == nullptr || !keeper->IsType('<')) {
        PyErr_Format(PyExc_TypeError, "no %s can be made of a %s", Py_TYPE(other)->tp_name, Py_TYPE(value)->tp_name);
        return nullptr;
    }
    return &static_cast<omu_InterfaceObj&>(*keeper).Resolve();
}

/// Whether + and * mean what they mean for the interpreter's own sequences.
bool IsSequence(PyObject* value)
{
    const PySequenceMethods* const methods = Py_TYPE(value)->tp_as_sequence;
    return methods != nullptr && methods->sq_concat != nullptr;
}

template <omu_Primitive* (omu_InterfaceObj::*operation)(omu_InterfaceObj*)>
PyObject* Binary(PyObject* left, PyObject* right)
{
    if (IsSequence(pyUnwrapsToObject(left) ? left : right)) {
        Py_RETURN_NOTIMPLEMENTED;
    }
    return pyGuard(static_cast<PyObject*>(nullptr), [&]() -> PyObject* {
        std::unique_ptr<omu_Primitive> keepers[2];
        // A kernel object last: making a value of the other operand may run Python code that deletes it.
        const bool isRightFirst = pyUnwrapsToObject(left);
        PyObject* const first = isRightFirst ? right : left;
        PyObject* const second = isRightFirst ? left : right;
        omu_InterfaceObj* const a = Operand(first, second, keepers[0]);
        omu_InterfaceObj* const b = a != nullptr ? Operand(second, first, keepers[1]) : nullptr;
        if (b == nullptr) {
            return PyErr_Occurred() != nullptr ? nullptr : Py_NewRef(Py_NotImplemented);
        }
        return pyTakeResult(isRightFirst ? (b->*operation)(a) : (a->*operation)(b));
    });
}

template <omu_Primitive* (omu_InterfaceObj::*operation)()> PyObject* Unary(PyObject* self)
{
    return pyGuard(static_cast<PyObject*>(nullptr), [&] { return pyTakeResult((pyUnwrapObject(self)->*operation)()); });
}

int Truth(PyObject* self)
{
    const PyMappingMethods* const methods = Py_TYPE(self)->tp_as_mapping;
    if (methods != nullptr && methods->mp_length != nullptr) {
        const Py_ssize_t length = methods->mp_length(self);
        return length < 0 ? -1 : length > 0 ? 1 : 0;
    }
    return pyGuard(-1, [&] { return pyUnwrapObject(self)->NonZero() != 0 ? 1 : 0; });
}

/// What Cast makes of the object for the type named; TypeError when it has no such form.
PyObject* Cast(PyObject* self, const char* type)
{
    return pyGuard(static_cast<PyObject*>(nullptr), [&]() -> PyObject* {
        omu_Arguments arguments(1);
        arguments.Put(cow_String(type));
        omu_Primitive* const result = pyUnwrapObject(self)->Cast(arguments);
        if (result == nullptr) {
            PyErr_Format(PyExc_TypeError, "no %s can be made of a %s", type, Py_TYPE(self)->tp_name);
            return nullptr;
        }
        return pyTakeResult(result);
    });
}

PyObject* AsInt(PyObject* self)
{
    return Cast(self, "int");
}

PyObject* AsFloat(PyObject* self)
{
    return Cast(self, "float");
}

template <class Function> PyType_Slot Slot(int id, Function* function)
{
    return {id, reinterpret_cast<void*>(function)};
}

} // namespace

std::vector<PyType_Slot> pyOperatorSlots()
{
    return {Slot(Py_nb_add, Binary<&omu_InterfaceObj::AddOperation>),
            Slot(Py_nb_subtract, Binary<&omu_InterfaceObj::SubOperation>),
            Slot(Py_nb_multiply, Binary<&omu_InterfaceObj::MulOperation>),
            Slot(Py_nb_true_divide, Binary<&omu_InterfaceObj::DivOperation>),
            Slot(Py_nb_negative, Unary<&omu_InterfaceObj::UnaryNegative>),
            Slot(Py_nb_absolute, Unary<&omu_InterfaceObj::Absolute>),
            Slot(Py_nb_bool, Truth),
            Slot(Py_nb_int, AsInt),
            Slot(Py_nb_float, AsFloat)};
}
