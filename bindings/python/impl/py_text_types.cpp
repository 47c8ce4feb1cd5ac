#include "py_text_types.h"

#include <array>

namespace
{

std::array<PyObject*, 3> types{}; // by PyTextKind; they live as long as the module's process

PyObject* BareRepr(PyObject* self)
{
    return PyObject_Str(self);
}

PyObject* MakeType(const char* name, const char* description, reprfunc repr)
{
    std::array<PyType_Slot, 4> slots{{{Py_tp_doc, const_cast<char*>(description)}, {0, nullptr}}};
    if (repr != nullptr) {
        slots[1] = {Py_tp_repr, reinterpret_cast<void*>(repr)};
    }
    PyType_Spec spec{name, 0, 0, Py_TPFLAGS_DEFAULT, slots.data()};
    const PyRef bases(PyTuple_Pack(1, &PyUnicode_Type));
    return bases ? PyType_FromSpecWithBases(&spec, bases.Get()) : nullptr;
}

bool AddConstant(PyObject* module, const char* name)
{
    const PyRef text(PyUnicode_FromString(name));
    const PyRef constant(text ? pyNewText(PyTextKind::CONSTANT, text.Get()) : nullptr);
    return constant && PyModule_AddObjectRef(module, name, constant.Get()) == 0;
}

} // namespace

bool pyAddTextTypes(PyObject* module)
{
    types[0] = MakeType("vexomu.Path", "The dotted address of a kernel object.", nullptr);
    types[1] = MakeType("vexomu.Constant", "A symbolic constant, such as ON; it equals its name.", BareRepr);
    types[2] = MakeType("vexomu.TypeName", "The type of a kernel object, by name.", nullptr);
    const std::array<const char*, 3> names{"Path", "Constant", "TypeName"};
    for (std::size_t i = 0; i < types.size(); ++i) {
        if (types[i] == nullptr || PyModule_AddObjectRef(module, names[i], types[i]) < 0) {
            return false;
        }
    }
    return AddConstant(module, "ON") && AddConstant(module, "OFF") && AddConstant(module, "TRUE") &&
           AddConstant(module, "FALSE");
}

PyObject* pyNewText(PyTextKind kind, PyObject* string)
{
    return PyObject_CallOneArg(types[static_cast<std::size_t>(kind)], string);
}

PyTextKind pyTextKindOf(PyObject* string)
{
    for (std::size_t i = 0; i < types.size(); ++i) {
        if (PyObject_TypeCheck(string, reinterpret_cast<PyTypeObject*>(types[i]))) {
            return static_cast<PyTextKind>(i);
        }
    }
    return PyTextKind::NONE;
}
