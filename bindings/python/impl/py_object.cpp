#include "py_object.h"

#include "py_containers.h"
#include "py_errors.h"
#include "py_journal.h"
#include "py_operators.h"
#include "py_values.h"

#include "omu_Arguments.h"
#include "omu_AttributeErrorException.h"
#include "omu_ObjectRef.h"

#include <structmember.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <new>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

namespace
{

/// A kernel object in Python's hands.
struct Handle
{
    PyObject ob_base;
    PyObject* weakReferences;
    omu_InterfaceObj* owned;    // deleted with the handle; null: the kernel owns the object
    PyJournalName* journalName; // owned; what the journal calls an object that only scripts have, or null
    alignas(omu_ObjectRef) std::byte reference[sizeof(omu_ObjectRef)];
};

/// What a row of a kernel class's tables says about a name; the texts are the table's.
struct NameInfo
{
    const char* name;
    const char* description = nullptr;  // may be null
    const char* replacement = nullptr;  // deprecated names: what to use instead; may be null
    const char* sinceVersion = nullptr; // deprecated names: since when; may be null
    bool deprecated = false;
    bool readOnly = false; // members without setter
};

/// A name of a kernel class as it stands in the dictionary of its Python class.
struct Descriptor
{
    PyObject ob_base;
    vectorcallfunc vectorcall; // methods only
    PyObject* name;            // interned
    PyTypeObject* owner;       // the class it stands in, which lives as long as the process
    NameInfo info;
};

PyTypeObject* objectType = nullptr;
PyTypeObject* methodType = nullptr;
PyTypeObject* memberType = nullptr;

omu_ObjectRef& ReferenceOf(PyObject* handle)
{
    return *std::launder(reinterpret_cast<omu_ObjectRef*>(reinterpret_cast<Handle*>(handle)->reference));
}

PyJournalName* JournalNameOf(PyObject* handle)
{
    return reinterpret_cast<Handle*>(handle)->journalName;
}

bool WarnDeprecated(const Descriptor& descriptor)
{
    const bool hasReplacement = descriptor.info.replacement != nullptr;
    return PyErr_WarnFormat(PyExc_DeprecationWarning, 1, "%s is deprecated%s%s%s%s", descriptor.info.name,
                            descriptor.info.sinceVersion != nullptr ? " since " : "",
                            descriptor.info.sinceVersion != nullptr ? descriptor.info.sinceVersion : "",
                            hasReplacement ? "; use " : "", hasReplacement ? descriptor.info.replacement : "") == 0;
}

bool WarnDeprecatedKeywords(const omu_Arguments& arguments)
{
    for (const cow_String& keyword : arguments.DeprecatedArgumentsUsed()) {
        if (PyErr_WarnFormat(PyExc_DeprecationWarning, 1, "keyword %s is deprecated", keyword.AsCharPtr()) != 0) {
            return false;
        }
    }
    return true;
}

void SetAttributeError(PyObject* object, const Descriptor& descriptor, const cow_String& message)
{
    pySetErrorAbout(PyExc_AttributeError, object, descriptor.name, PyRef(pyText(message.view())));
}

void SetNoAttribute(PyObject* object, const Descriptor& descriptor)
{
    SetAttributeError(object, descriptor,
                      "'" + cow_String(Py_TYPE(object)->tp_name) + "' object has no attribute '" +
                          descriptor.info.name + "'");
}

/// Names of keywords as kernel texts. A name is part of the code that calls and the same object each time, so that most are
/// found by their addresses. Guarded by the interpreter's lock.
class KeywordNames
{
public:
    /// The text; null with a Python error set. It is gone with the next call.
    static const cow_String* Find(PyObject* name)
    {
        const Known& known = table[IndexOf(name)];
        return known.name == name ? &known.text : FindNew(name);
    }

private:
    struct Known
    {
        PyObject* name = nullptr; // a share, for as long as it stands here: no other string gets the address
        cow_String text;
    };

    static std::size_t IndexOf(PyObject* name) noexcept { return reinterpret_cast<std::uintptr_t>(name) / 16 % COUNT; }
    [[gnu::noinline]] static const cow_String* FindNew(PyObject* name)
    {
        // A copy of what is of a derived class, of which the end may run code.
        PyRef plain(PyUnicode_FromObject(name));
        if (!plain) {
            return nullptr;
        }
        const PyUtf8 utf8(plain.Get());
        if (!utf8.IsValid()) {
            return nullptr;
        }
        Known& known = table[IndexOf(name)];
        known.text = utf8.view();
        Py_XDECREF(std::exchange(known.name, plain.Release()));
        return &known.text;
    }

    static constexpr std::size_t COUNT = 256;
    static Known* const table; // lives as long as the process
};

KeywordNames::Known* const KeywordNames::table = new Known[COUNT];

/// Fills the argument list with what a call hands over; false with a Python error set.
bool FillArguments(omu_Arguments& arguments, PyObject* const* values, Py_ssize_t positional, PyObject* keywordNames)
{
    for (Py_ssize_t i = 0; i < positional; ++i) {
        if (!pyPutFromPython(arguments, values[i])) {
            return false;
        }
    }
    const Py_ssize_t keywords = keywordNames != nullptr ? PyTuple_GET_SIZE(keywordNames) : 0;
    for (Py_ssize_t i = 0; i < keywords; ++i) {
        omu_PrimHolder value = pyFromPython(values[positional + i]);
        const cow_String* const keyword = value ? KeywordNames::Find(PyTuple_GET_ITEM(keywordNames, i)) : nullptr;
        if (keyword == nullptr) {
            return false;
        }
        arguments.Put(std::move(value), *keyword);
    }
    return true;
}

/// Writes what is done into the journal; false with a Python error set.
bool CommitEntry(PyJournalEntry& entry, PyObject* result)
{
    if (!entry.IsDescribed()) {
        return true;
    }
    if (!PyObject_TypeCheck(result, objectType)) {
        return entry.Commit(nullptr, nullptr);
    }
    auto& handle = *reinterpret_cast<Handle*>(result);
    return entry.Commit(handle.owned, handle.owned != nullptr ? &handle.journalName : nullptr);
}

/// The one place through which every method call from Python goes.
PyObject* CallMethod(PyObject* handle, const Descriptor& method, PyObject* const* values, Py_ssize_t positional,
                     PyObject* keywordNames)
{
    // Its target is asked for each time: converting values and warning may run Python code that deletes it.
    omu_ObjectRef& object = ReferenceOf(handle);
    omu_Arguments arguments(static_cast<int>(positional));
    if (!FillArguments(arguments, values, positional, keywordNames)) {
        return nullptr;
    }
    PyJournalEntry entry;
    if (entry.IsWanted(object.Target(), method.info.name)) {
        // Before the call: it may change what paths lead to.
        const PyJournalRendering rendering;
        omu_Arguments shown(static_cast<int>(positional));
        if (!FillArguments(shown, values, positional, keywordNames)) {
            return nullptr;
        }
        entry.DescribeCall(object.Target(), JournalNameOf(handle), method.info.name, shown);
    }
    bool deprecated = false;
    if (method.info.deprecated && !object.Target().IsMethod(method.info.name, deprecated)) {
        SetNoAttribute(handle, method);
        return nullptr;
    }
    if (deprecated && !WarnDeprecated(method)) {
        return nullptr;
    }
    PyRef result(pyTakeResult(object.Target().CallMethod("", method.info.name, arguments, deprecated)));
    if (!result || !CommitEntry(entry, result.Get()) || !WarnDeprecatedKeywords(arguments)) {
        return nullptr;
    }
    return result.Release();
}

PyObject* MethodVectorcall(PyObject* callable, PyObject* const* values, std::size_t flaggedCount,
                           PyObject* keywordNames)
{
    const auto& method = *reinterpret_cast<Descriptor*>(callable);
    const Py_ssize_t count = PyVectorcall_NARGS(flaggedCount);
    if (count < 1 || !PyObject_TypeCheck(values[0], method.owner)) {
        PyErr_Format(PyExc_TypeError, "method '%s' needs a '%s' object as its first argument", method.info.name,
                     method.owner->tp_name);
        return nullptr;
    }
    return pyGuard(
        static_cast<PyObject*>(nullptr),
        [&] { return CallMethod(values[0], method, values + 1, count - 1, keywordNames); }, values[0]);
}

PyObject* MethodGet(PyObject* self, PyObject* object, PyObject*)
{
    if (object == nullptr || object == Py_None) {
        return Py_NewRef(self);
    }
    const auto& method = *reinterpret_cast<Descriptor*>(self);
    if (method.info.deprecated && PyObject_TypeCheck(object, method.owner)) {
        const int found = pyGuard(-1, [&] {
            bool deprecated = false;
            return ReferenceOf(object).Target().IsMethod(method.info.name, deprecated) ? 1 : 0;
        });
        if (found == 0) {
            SetNoAttribute(object, method);
        }
        if (found != 1) {
            return nullptr;
        }
    }
    return PyMethod_New(self, object);
}

PyObject* GetMember(PyObject* handle, const Descriptor& member)
{
    bool deprecated = false;
    PyRef value(nullptr);
    omu_Primitive* const result = ReferenceOf(handle).Target().GetMember(member.info.name, deprecated);
    if (member.info.deprecated && !deprecated) {
        delete result;
        SetNoAttribute(handle, member);
        return nullptr;
    }
    value = PyRef(pyTakeResult(result));
    return !value || (deprecated && !WarnDeprecated(member)) ? nullptr : value.Release();
}

int SetMember(PyObject* handle, const Descriptor& member, PyObject* value)
{
    omu_ObjectRef& object = ReferenceOf(handle); // as in a call
    if (value == nullptr) {
        PyJournalEntry entry;
        if (entry.IsWanted(object.Target(), member.info.name)) {
            entry.DescribeDeletion(object.Target(), JournalNameOf(handle), member.info.name);
        }
        if (object.Target().DeleteMember(cow_String(member.info.name))) {
            return entry.Commit(nullptr, nullptr) ? 0 : -1;
        }
        SetAttributeError(handle, member, cow_String(member.info.name) + " cannot be deleted");
        return -1;
    }
    omu_PrimHolder converted = pyFromPython(value);
    if (!converted) {
        return -1;
    }
    PyJournalEntry entry;
    if (entry.IsWanted(object.Target(), member.info.name)) {
        const PyJournalRendering rendering;
        omu_PrimHolder shown = pyFromPython(value);
        if (!shown) {
            return -1;
        }
        entry.DescribeAssignment(object.Target(), JournalNameOf(handle), member.info.name, std::move(shown));
    }
    omu_Arguments arguments(1);
    arguments.Put(std::move(converted));
    bool deprecated = false;
    const std::unique_ptr<omu_Primitive> done(object.Target().SetMember(member.info.name, arguments, deprecated));
    if (done == nullptr && member.info.deprecated && !deprecated) {
        SetNoAttribute(handle, member);
        return -1;
    }
    if (done == nullptr && member.info.readOnly) {
        SetAttributeError(
            handle, member,
            omu_AttributeErrorException(omu_AttributeErrorException::READ_ONLY, member.info.name).JournalMessage());
        return -1;
    }
    return !entry.Commit(nullptr, nullptr) || (deprecated && !WarnDeprecated(member)) ? -1 : 0;
}

PyObject* MemberGet(PyObject* self, PyObject* object, PyObject*)
{
    const auto& member = *reinterpret_cast<Descriptor*>(self);
    if (object == nullptr || !PyObject_TypeCheck(object, member.owner)) {
        return Py_NewRef(self);
    }
    return pyGuard(
        static_cast<PyObject*>(nullptr), [&] { return GetMember(object, member); }, object);
}

int MemberSet(PyObject* self, PyObject* object, PyObject* value)
{
    const auto& member = *reinterpret_cast<Descriptor*>(self);
    if (!PyObject_TypeCheck(object, member.owner)) {
        PyErr_Format(PyExc_TypeError, "member '%s' needs a '%s' object", member.info.name, member.owner->tp_name);
        return -1;
    }
    return pyGuard(
        -1, [&] { return SetMember(object, member, value); }, object);
}

void DescriptorDealloc(PyObject* self)
{
    PyTypeObject* const type = Py_TYPE(self);
    Py_XDECREF(reinterpret_cast<Descriptor*>(self)->name);
    PyObject_Free(self);
    Py_DECREF(type);
}

std::string_view DescriptionOf(PyObject* self)
{
    const char* const description = reinterpret_cast<Descriptor*>(self)->info.description;
    return description != nullptr ? description : "";
}

/// Length of the parameters with which the description of a method may begin, "name(a, b=0) -> int: What it does.",
/// from the opening parenthesis to behind the closing one; 0 for a description that is text alone.
std::size_t ParametersLength(std::string_view description, std::string_view name)
{
    if (!description.starts_with(name) || description.substr(name.size(), 1) != "(") {
        return 0;
    }
    int open = 0;
    for (std::size_t i = name.size(); i < description.size(); ++i) {
        const char character = description[i];
        open += character == '(' ? 1 : character == ')' ? -1 : 0;
        if (open == 0) {
            return i + 1 - name.size();
        }
    }
    return 0;
}

/// The words of a description, behind the signature or the "-> type" that may stand before them; a sentence of their own.
PyObject* DescriptorDoc(PyObject* self, void*)
{
    const std::string_view description = DescriptionOf(self);
    const std::string_view name = reinterpret_cast<Descriptor*>(self)->info.name;
    const std::size_t parameters = ParametersLength(description, name);
    if (parameters == 0 && !description.starts_with("-> ")) {
        return pyText(description);
    }
    const std::size_t colon = description.find(": ", parameters != 0 ? name.size() + parameters : 0);
    std::string words(colon != std::string_view::npos ? description.substr(colon + 2) : std::string_view());
    if (!words.empty() && words[0] >= 'a' && words[0] <= 'z') {
        words[0] = static_cast<char>(words[0] - 'a' + 'A');
    }
    return pyText(words);
}

PyObject* DescriptorDescription(PyObject* self, void*)
{
    return pyText(DescriptionOf(self));
}

PyObject* DescriptorName(PyObject* self, void*)
{
    return Py_NewRef(reinterpret_cast<Descriptor*>(self)->name);
}

/// Parameters without their types, which the interpreter does not read in a signature that is text.
std::string WithoutTypes(std::string_view parameters)
{
    std::string names;
    int open = 0;
    bool isName = true; // between a comma and the type or the default
    bool isType = false;
    for (const char character : parameters) {
        open += std::string_view("([{").find(character) != std::string_view::npos ? 1 : 0;
        open -= std::string_view(")]}").find(character) != std::string_view::npos ? 1 : 0;
        if (open == 0 && (character == ',' || character == '=')) {
            isName = character == ',';
            isType = false;
        } else if (open == 0 && character == ':' && isName) {
            isName = false;
            isType = true;
        }
        if (!isType) {
            names += character;
        }
    }
    return names;
}

PyObject* MethodSignature(PyObject* self, void*)
{
    const std::string_view description = DescriptionOf(self);
    const std::string_view name = reinterpret_cast<Descriptor*>(self)->info.name;
    const std::size_t length = ParametersLength(description, name);
    const std::string_view parameters =
        length != 0 ? description.substr(name.size() + 1, length - 2) : std::string_view("*args, **kwargs");
    std::string signature("($self");
    signature += parameters.empty() ? "" : ", ";
    signature += WithoutTypes(parameters);
    signature += ")";
    return pyText(signature);
}

PyObject* DescriptorDeprecated(PyObject* self, void*)
{
    return PyBool_FromLong(reinterpret_cast<Descriptor*>(self)->info.deprecated ? 1 : 0);
}

PyObject* MemberReadOnly(PyObject* self, void*)
{
    return PyBool_FromLong(reinterpret_cast<Descriptor*>(self)->info.readOnly ? 1 : 0);
}

PyObject* DescriptorRepr(PyObject* self)
{
    return PyUnicode_FromFormat("<%s '%s'>", Py_TYPE(self)->tp_name, reinterpret_cast<Descriptor*>(self)->info.name);
}

PyMemberDef methodMembers[] = {
    {"__vectorcalloffset__", T_PYSSIZET, offsetof(Descriptor, vectorcall), READONLY, nullptr},
    {},
};

PyGetSetDef methodAttributes[] = {
    {"__doc__", DescriptorDoc, nullptr, nullptr, nullptr},
    {"__name__", DescriptorName, nullptr, nullptr, nullptr},
    {"__qualname__", DescriptorName, nullptr, nullptr, nullptr},
    {"__text_signature__", MethodSignature, nullptr, nullptr, nullptr},
    {"description", DescriptorDescription, nullptr, "The line of the kernel's table.", nullptr},
    {"deprecated", DescriptorDeprecated, nullptr, "Whether something else replaces it.", nullptr},
    {},
};

PyGetSetDef memberAttributes[] = {
    {"__doc__", DescriptorDoc, nullptr, nullptr, nullptr},
    {"__name__", DescriptorName, nullptr, nullptr, nullptr},
    {"description", DescriptorDescription, nullptr, "The line of the kernel's table.", nullptr},
    {"deprecated", DescriptorDeprecated, nullptr, "Whether something else replaces it.", nullptr},
    {"readOnly", MemberReadOnly, nullptr, "Whether it cannot be set.", nullptr},
    {},
};

template <class Function> PyType_Slot Slot(int id, Function* function)
{
    return {id, reinterpret_cast<void*>(function)};
}

bool MakeDescriptorTypes()
{
    PyType_Slot methodSlots[] = {
        Slot(Py_tp_dealloc, DescriptorDealloc),
        Slot(Py_tp_descr_get, MethodGet),
        Slot(Py_tp_call, PyVectorcall_Call),
        Slot(Py_tp_repr, DescriptorRepr),
        {Py_tp_members, methodMembers},
        {Py_tp_getset, methodAttributes},
        {0, nullptr},
    };
    // Immutable: only then does the interpreter remember a method where it is called, instead of looking for it each time.
    PyType_Spec methodSpec{"vexomu.Method", sizeof(Descriptor), 0,
                           Py_TPFLAGS_DEFAULT | Py_TPFLAGS_METHOD_DESCRIPTOR | Py_TPFLAGS_HAVE_VECTORCALL |
                               Py_TPFLAGS_DISALLOW_INSTANTIATION | Py_TPFLAGS_IMMUTABLETYPE,
                           methodSlots};
    PyType_Slot memberSlots[] = {
        Slot(Py_tp_dealloc, DescriptorDealloc), Slot(Py_tp_descr_get, MemberGet), Slot(Py_tp_descr_set, MemberSet),
        Slot(Py_tp_repr, DescriptorRepr),       {Py_tp_getset, memberAttributes}, {0, nullptr},
    };
    PyType_Spec memberSpec{"vexomu.Member", sizeof(Descriptor), 0,
                           Py_TPFLAGS_DEFAULT | Py_TPFLAGS_DISALLOW_INSTANTIATION | Py_TPFLAGS_IMMUTABLETYPE,
                           memberSlots};
    methodType = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&methodSpec));
    memberType = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&memberSpec));
    return methodType != nullptr && memberType != nullptr;
}

/// Puts a name into a class; false with a Python error set. A deprecated name never hides another one.
bool AddDescriptor(PyObject* pythonClass, PyTypeObject* type, const NameInfo& info)
{
    PyRef name(PyUnicode_InternFromString(info.name));
    if (!name) {
        return false;
    }
    if (info.deprecated && PyObject_HasAttr(pythonClass, name.Get()) != 0) {
        return true;
    }
    auto* const descriptor = PyObject_New(Descriptor, type);
    if (descriptor == nullptr) {
        return false;
    }
    const PyRef owner(reinterpret_cast<PyObject*>(descriptor));
    descriptor->vectorcall = MethodVectorcall;
    descriptor->name = Py_NewRef(name.Get());
    descriptor->owner = reinterpret_cast<PyTypeObject*>(pythonClass);
    descriptor->info = info;
    return PyObject_SetAttr(pythonClass, name.Get(), owner.Get()) == 0;
}

NameInfo InfoOf(const omu_MethodEntry& row)
{
    return {.name = row.name, .description = row.description};
}

NameInfo InfoOf(const omu_MemberEntry& row)
{
    return {.name = row.name, .description = row.description, .readOnly = row.setter == nullptr};
}

NameInfo InfoOf(const omu_DeprecatedMethodEntry& row)
{
    return {.name = row.name,
            .description = row.description,
            .replacement = row.replacement,
            .sinceVersion = row.sinceVersion,
            .deprecated = true};
}

NameInfo InfoOf(const omu_DeprecatedMemberEntry& row)
{
    return {.name = row.name,
            .description = row.description,
            .replacement = row.replacement,
            .sinceVersion = row.sinceVersion,
            .deprecated = true,
            .readOnly = row.setter == nullptr};
}

template <class Entry> bool AddTable(PyObject* pythonClass, PyTypeObject* type, const Entry* table)
{
    for (const Entry* row = table; row->name != nullptr; ++row) {
        if (!AddDescriptor(pythonClass, type, InfoOf(*row))) {
            return false;
        }
    }
    return true;
}

bool AddNames(PyObject* pythonClass, const omu_InterfaceObj::TypeDesc& level)
{
    return AddTable(pythonClass, methodType, level.methods) && AddTable(pythonClass, memberType, level.members) &&
           AddTable(pythonClass, methodType, level.deprecatedMethods) &&
           AddTable(pythonClass, memberType, level.deprecatedMembers);
}

/// The class for one described level below the class of the level before it, borrowed; null with a Python error set.
PyTypeObject* ClassOfLevel(const omu_InterfaceObj::TypeDesc& level, PyTypeObject* base)
{
    // Objects whose chains start alike share the classes of those levels. The interpreter keeps a pointer to the name.
    using Key = std::tuple<PyTypeObject*, std::string, const void*, const void*, const void*, const void*>;
    static auto* const classes = new std::map<Key, PyTypeObject*>;
    const auto entry = classes
                           ->try_emplace(Key(base, "vexomu." + std::string(level.typeName.view()), level.methods,
                                             level.members, level.deprecatedMethods, level.deprecatedMembers))
                           .first;
    if (entry->second != nullptr) {
        return entry->second;
    }
    PyType_Slot slots[] = {{0, nullptr}};
    PyType_Spec spec{std::get<std::string>(entry->first).c_str(), 0, 0,
                     Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE | Py_TPFLAGS_DISALLOW_INSTANTIATION, slots};
    const PyRef bases(PyTuple_Pack(1, base));
    PyRef pythonClass(bases ? PyType_FromSpecWithBases(&spec, bases.Get()) : nullptr);
    if (!pythonClass || !AddNames(pythonClass.Get(), level)) {
        return nullptr;
    }
    entry->second = reinterpret_cast<PyTypeObject*>(pythonClass.Release());
    // The class says which names the kernel's object has: neither it nor an object's __class__ can be set.
    entry->second->tp_flags |= Py_TPFLAGS_IMMUTABLETYPE;
    return entry->second;
}

/// The class of an object, borrowed; null with a Python error set.
PyTypeObject* ClassOf(const omu_InterfaceObj& object)
{
    // Owns nothing: the classes live as long as the process, like the descriptions.
    static auto* const classes = new std::unordered_map<const omu_TypeLevels*, PyTypeObject*>;
    PyTypeObject*& known = (*classes)[object.Levels()];
    if (known != nullptr) {
        return known;
    }
    PyTypeObject* const container = pyContainerTypeOf(object);
    PyTypeObject* pythonClass = container != nullptr ? container : objectType;
    for (int level = 0; level < object.HierarchyDepth() && pythonClass != nullptr; ++level) {
        pythonClass = ClassOfLevel(object.Level(level), pythonClass);
    }
    known = pythonClass;
    return known;
}

void HandleDealloc(PyObject* self)
{
    PyTypeObject* const type = Py_TYPE(self);
    auto* const handle = reinterpret_cast<Handle*>(self);
    if (handle->weakReferences != nullptr) {
        PyObject_ClearWeakRefs(self);
    }
    delete handle->owned;
    pyDropJournalName(handle->journalName);
    ReferenceOf(self).~omu_ObjectRef();
    type->tp_free(self);
    Py_DECREF(type);
}

PyObject* HandleRepr(PyObject* self)
{
    return pyGuard(static_cast<PyObject*>(nullptr), [&] { return pyText(ReferenceOf(self).Repr().view()); });
}

Py_hash_t HandleHash(PyObject* self)
{
    return static_cast<Py_hash_t>(reinterpret_cast<std::uintptr_t>(ReferenceOf(self).Identity()) >> 4);
}

PyObject* HandleCompare(PyObject* self, PyObject* other, int operation)
{
    if ((operation != Py_EQ && operation != Py_NE) || !PyObject_TypeCheck(other, objectType)) {
        Py_RETURN_NOTIMPLEMENTED;
    }
    const bool same = ReferenceOf(self).Identity() == ReferenceOf(other).Identity();
    return PyBool_FromLong(same == (operation == Py_EQ));
}

PyMemberDef handleMembers[] = {
    {"__weaklistoffset__", T_PYSSIZET, offsetof(Handle, weakReferences), READONLY, nullptr},
    {},
};

} // namespace

PyJournalName* pyJournalNameOf(PyObject* handle)
{
    return JournalNameOf(handle);
}

bool pyAddObjectType(PyObject* module)
{
    std::vector<PyType_Slot> slots = pyOperatorSlots();
    slots.insert(slots.end(), {
                                  Slot(Py_tp_dealloc, HandleDealloc),
                                  Slot(Py_tp_repr, HandleRepr),
                                  Slot(Py_tp_hash, HandleHash),
                                  Slot(Py_tp_richcompare, HandleCompare),
                                  {Py_tp_members, handleMembers},
                                  {Py_tp_doc, const_cast<char*>("An object of the kernel. Equality is identity.")},
                                  {0, nullptr},
                              });
    PyType_Spec spec{"vexomu.Object", sizeof(Handle), 0,
                     Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE | Py_TPFLAGS_DISALLOW_INSTANTIATION, slots.data()};
    objectType = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&spec));
    return objectType != nullptr && MakeDescriptorTypes() && pyAddContainerTypes(module, objectType) &&
           PyModule_AddObjectRef(module, "Object", reinterpret_cast<PyObject*>(objectType)) == 0;
}

PyObject* pyWrapObject(omu_InterfaceObj& object, bool owned)
{
    std::unique_ptr<omu_InterfaceObj> owner(owned ? &object : nullptr);
    PyTypeObject* const type = ClassOf(object);
    PyObject* const self = type != nullptr ? type->tp_alloc(type, 0) : nullptr;
    if (self == nullptr) {
        return nullptr;
    }
    auto* const handle = reinterpret_cast<Handle*>(self);
    try {
        ::new (handle->reference) omu_ObjectRef(object);
    } catch (...) {
        type->tp_free(self);
        Py_DECREF(type);
        throw;
    }
    handle->owned = owner.release();
    return self;
}

bool pyUnwrapsToObject(PyObject* value)
{
    return PyObject_TypeCheck(value, objectType);
}

omu_InterfaceObj* pyUnwrapObject(PyObject* value)
{
    return pyUnwrapsToObject(value) ? &ReferenceOf(value).Target() : nullptr;
}

PyObject* pyTakeResult(omu_Primitive* result)
{
    const std::unique_ptr<omu_Primitive> value(result);
    if (value != nullptr && value->IsType('<') && value->DynTypeId() == omu_InterfaceObj::TypeId()) {
        auto& object = static_cast<omu_InterfaceObj&>(*value);
        if (&object.Resolve() == &object) {
            // A fresh object, not a reference to one of the kernel's: Python keeps it.
            static_cast<void>(const_cast<std::unique_ptr<omu_Primitive>&>(value).release());
            return pyWrapObject(object, /*owned=*/true);
        }
    }
    return pyToPython(value.get());
}
