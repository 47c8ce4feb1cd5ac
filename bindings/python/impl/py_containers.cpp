#include "py_containers.h"

#include "py_errors.h"
#include "py_journal.h"
#include "py_object.h"
#include "py_values.h"

#include "omu_Arguments.h"
#include "omu_DictIntObjABC.h"
#include "omu_PrimEnumBase.h"
#include "omu_PrimExpr.h"
#include "omu_PrimNumber.h"
#include "omu_SeqIntObj.h"

#include <algorithm>
#include <limits>
#include <type_traits>
#include <utility>

namespace
{

PyTypeObject* mappingType = nullptr;
PyTypeObject* sequenceType = nullptr;

constexpr int MOST = std::numeric_limits<int>::max();

PyObject* NotOffered(PyObject* self, const char* what)
{
    PyErr_Format(PyExc_TypeError, "'%s' object does not support %s", Py_TYPE(self)->tp_name, what);
    return nullptr;
}

/// Throws when the object is gone: Python code ran, as indices and values may have of their own.
void RequireAlive(PyObject* self)
{
    pyUnwrapObject(self);
}

/// What a kernel operation gave; null: it is not offered.
PyObject* TakeOffered(PyObject* self, omu_Primitive* value, const char* what)
{
    return value != nullptr ? pyTakeResult(value) : NotOffered(self, what);
}

/// Does what changes an item, `change()`, which says whether that is offered, and writes it into the journal as a call
/// that does it again. `makeKey()` gives the key as the journal shows it; a null `value` stands for a deletion.
template <class MakeKey, class Change>
int ChangeItem(PyObject* self, MakeKey makeKey, PyObject* value, const char* what, Change change)
{
    const omu_InterfaceObj& object = *pyUnwrapObject(self);
    const char* const method = value != nullptr ? "__setitem__" : "__delitem__";
    PyJournalEntry entry;
    if (entry.IsWanted(object, method)) {
        const PyJournalRendering rendering;
        omu_PrimHolder key = makeKey();
        omu_PrimHolder shown = key && value != nullptr ? pyFromPython(value) : omu_PrimHolder();
        if (!key || (value != nullptr && !shown)) {
            return -1;
        }
        omu_Arguments arguments(value != nullptr ? 2 : 1);
        arguments.Put(std::move(key));
        if (value != nullptr) {
            arguments.Put(std::move(shown));
        }
        RequireAlive(self);
        entry.DescribeCall(object, pyJournalNameOf(self), method, arguments);
    }
    if (!change()) {
        NotOffered(self, what);
        return -1;
    }
    return entry.Commit(nullptr, nullptr) ? 0 : -1;
}

PyObject* ContainerText(PyObject* self)
{
    return pyGuard(static_cast<PyObject*>(nullptr), [&] { return pyText(pyUnwrapObject(self)->AsString(0).view()); });
}

// ---- repositories

template <class Repository> struct KeyTypeOf;
template <class K> struct KeyTypeOf<omu_DictIntObjABC<K>>
{
    using type = K;
};

/// `use(repository)`, with what it is for its kind of keys.
template <class Use> auto WithRepository(PyObject* self, Use use)
{
    omu_InterfaceObj* const object = pyUnwrapObject(self);
    if (auto* const byName = dynamic_cast<omu_DictIntObjABC<cow_String>*>(object)) {
        return use(*byName);
    }
    if (auto* const byNumber = dynamic_cast<omu_DictIntObjABC<int>*>(object)) {
        return use(*byNumber);
    }
    return use(dynamic_cast<omu_DictIntObjABC<omu_PrimEnumBase>&>(*object));
}

enum class KeyKind
{
    FITS,
    OTHER,  // no repository of this kind has such a key
    FAILED, // with a Python error set
};

KeyKind ReadText(PyObject* object, cow_String& text)
{
    if (!PyUnicode_Check(object)) {
        return KeyKind::OTHER;
    }
    const PyUtf8 utf8(object);
    if (!utf8.IsValid()) {
        if (!PyErr_ExceptionMatches(PyExc_UnicodeEncodeError)) {
            return KeyKind::FAILED;
        }
        PyErr_Clear();
        return KeyKind::OTHER;
    }
    text = cow_String(utf8.view());
    return KeyKind::FITS;
}

KeyKind ReadKey(PyObject* object, cow_String& key)
{
    return ReadText(object, key);
}

/// A constant equals its name in Python, so the name is the same key.
KeyKind ReadKey(PyObject* object, omu_PrimEnumBase& key)
{
    cow_String name;
    const KeyKind kind = ReadText(object, name);
    key = omu_PrimEnumBase(name);
    return kind;
}

KeyKind ReadKey(PyObject* object, int& key)
{
    if (!PyIndex_Check(object)) {
        return KeyKind::OTHER;
    }
    const PyRef index(PyNumber_Index(object));
    if (!index) {
        return KeyKind::FAILED;
    }
    int overflow = 0;
    const long long number = PyLong_AsLongLongAndOverflow(index.Get(), &overflow);
    if (overflow != 0 || number < std::numeric_limits<int>::min() || number > MOST) {
        return KeyKind::OTHER;
    }
    key = static_cast<int>(number);
    return KeyKind::FITS;
}

PyObject* ToPythonKey(int key)
{
    return PyLong_FromLong(key);
}

PyObject* ToPythonKey(const cow_String& key)
{
    return pyText(key.view());
}

PyObject* ToPythonKey(const omu_PrimEnumBase& key)
{
    return pyToPython(&key);
}

/// `use(repository, key, kind)` with the key read from `object`, or `failed`.
template <class Result, class Use> Result WithKey(PyObject* self, PyObject* object, Result failed, Use use)
{
    return pyGuard(failed, [&] {
        return WithRepository(self, [&](auto& repository) {
            typename KeyTypeOf<std::remove_cvref_t<decltype(repository)>>::type key{};
            const KeyKind kind = ReadKey(object, key);
            RequireAlive(self);
            return kind == KeyKind::FAILED ? failed : use(repository, key, kind == KeyKind::FITS);
        });
    });
}

/// The value under a key; `ifAbsent()` gives the result when there is none.
template <class IfAbsent> PyObject* Find(PyObject* self, PyObject* object, IfAbsent ifAbsent)
{
    return WithKey(self, object, static_cast<PyObject*>(nullptr), [&](auto& repository, const auto& key, bool fits) {
        omu_Primitive* const value = fits ? repository.Value(key) : nullptr;
        return value != nullptr ? pyTakeResult(value) : ifAbsent();
    });
}

PyObject* SetNoKey(PyObject* self, PyObject* key)
{
    pySetKeyError(self, key);
    return nullptr;
}

PyObject* MappingSubscript(PyObject* self, PyObject* key)
{
    return Find(self, key, [&] { return SetNoKey(self, key); });
}

PyObject* MappingGet(PyObject* self, PyObject* const* arguments, Py_ssize_t count)
{
    if (count < 1 || count > 2) {
        PyErr_Format(PyExc_TypeError, "get expected 1 or 2 arguments, got %zd", count);
        return nullptr;
    }
    return Find(self, arguments[0], [&] { return Py_NewRef(count == 2 ? arguments[1] : Py_None); });
}

int MappingContains(PyObject* self, PyObject* key)
{
    return WithKey(self, key, -1, [](auto& repository, const auto& converted, bool fits) {
        return fits && repository.HasKey(converted) ? 1 : 0;
    });
}

int MappingAssign(PyObject* self, PyObject* key, PyObject* value)
{
    const auto makeKey = [&] { return pyFromPython(key); };
    return WithKey(self, key, -1, [&](auto& repository, const auto& converted, bool fits) {
        if (value == nullptr) {
            if (!fits || !repository.HasKey(converted)) {
                SetNoKey(self, key);
                return -1;
            }
            return ChangeItem(self, makeKey, value, "item deletion", [&] { return repository.Remove(converted); });
        }
        if (!fits) {
            PyErr_Format(PyExc_TypeError, "'%s' object has no keys like %R", Py_TYPE(self)->tp_name, key);
            return -1;
        }
        const omu_PrimHolder held = pyFromPython(value);
        return held ? ChangeItem(self, makeKey, value, "item assignment",
                                 [&] { return repository.SetValue(converted, *held); })
                    : -1;
    });
}

Py_ssize_t MappingLength(PyObject* self)
{
    return pyGuard(Py_ssize_t{-1}, [&] {
        return WithRepository(self, [](auto& repository) -> Py_ssize_t { return std::max(repository.Length(), 0); });
    });
}

/// An iterator over the keys of this moment.
PyObject* MappingIterate(PyObject* self)
{
    return pyGuard(static_cast<PyObject*>(nullptr), [&] {
        return WithRepository(self, [](auto& repository) -> PyObject* {
            cow_List<typename KeyTypeOf<std::remove_cvref_t<decltype(repository)>>::type> keys;
            repository.Keys(keys);
            const PyRef list(PyList_New(keys.Length()));
            for (int i = 0; list && i < keys.Length(); ++i) {
                PyObject* const key = ToPythonKey(keys[i]);
                if (key == nullptr) {
                    return nullptr;
                }
                PyList_SET_ITEM(list.Get(), i, key);
            }
            return list ? PyObject_GetIter(list.Get()) : nullptr;
        });
    });
}

// ---- sequences

omu_SeqIntObj& SequenceOf(PyObject* self)
{
    return dynamic_cast<omu_SeqIntObj&>(*pyUnwrapObject(self));
}

PyObject* Element(PyObject* self, const omu_SeqIntObj& sequence, int index)
{
    return TakeOffered(self, sequence.Index(sequence.ConvertSubscrIndex(index)), "indexing");
}

/// False with an IndexError for what no sequence can have, or the error of an object that is no index.
bool ReadIndex(PyObject* object, int& index)
{
    const Py_ssize_t number = PyNumber_AsSsize_t(object, PyExc_IndexError);
    if (number == -1 && PyErr_Occurred() != nullptr) {
        return false;
    }
    if (number < std::numeric_limits<int>::min() || number > MOST) {
        PyErr_Format(PyExc_IndexError, "sequence index %zd out of range", number);
        return false;
    }
    index = static_cast<int>(number);
    return true;
}

struct Range
{
    Py_ssize_t start;
    Py_ssize_t stop;
    Py_ssize_t step;
    Py_ssize_t count;
};

/// The elements that a slice means; false with a Python error set.
bool ReadSlice(PyObject* slice, PyObject* self, Range& range)
{
    if (PySlice_Unpack(slice, &range.start, &range.stop, &range.step) < 0) {
        return false;
    }
    range.count = PySlice_AdjustIndices(std::max(SequenceOf(self).Length(), 0), &range.start, &range.stop, range.step);
    range.stop = std::max(range.start, range.stop);
    return true;
}

/// Slices with a step are lists: the kernel's sequences have none.
PyObject* Stepped(PyObject* self, const omu_SeqIntObj& sequence, const Range& range)
{
    PyRef list(PyList_New(range.count));
    for (Py_ssize_t i = 0; list && i < range.count; ++i) {
        PyObject* const element = Element(self, sequence, static_cast<int>(range.start + i * range.step));
        if (element == nullptr) {
            return nullptr;
        }
        PyList_SET_ITEM(list.Get(), i, element);
    }
    return list.Release();
}

PyObject* SequenceItem(PyObject* self, Py_ssize_t index)
{
    return pyGuard(static_cast<PyObject*>(nullptr), [&] {
        return Element(self, SequenceOf(self), static_cast<int>(std::min<Py_ssize_t>(index, MOST)));
    });
}

PyObject* SequenceSubscript(PyObject* self, PyObject* key)
{
    return pyGuard(static_cast<PyObject*>(nullptr), [&]() -> PyObject* {
        Range range{};
        int index = 0;
        if (!PySlice_Check(key)) {
            return ReadIndex(key, index) ? Element(self, SequenceOf(self), index) : nullptr;
        }
        if (!ReadSlice(key, self, range)) {
            return nullptr;
        }
        const omu_SeqIntObj& sequence = SequenceOf(self);
        if (range.step != 1) {
            return Stepped(self, sequence, range);
        }
        return TakeOffered(self, sequence.Slice(static_cast<int>(range.start), static_cast<int>(range.stop)),
                           "slicing");
    });
}

int DeleteElement(PyObject* self, PyObject* key)
{
    int index = 0;
    if (!ReadIndex(key, index)) {
        return -1;
    }
    omu_SeqIntObj& sequence = SequenceOf(self);
    const int position = sequence.ConvertSubscrIndex(index);
    return ChangeItem(
        self, [&] { return omu_PrimHolder(new omu_PrimNumber(position)); }, nullptr, "item deletion",
        [&] { return sequence.Remove(position) != 0; });
}

int DeleteSlice(PyObject* self, PyObject* key)
{
    Range range{};
    if (!ReadSlice(key, self, range)) {
        return -1;
    }
    omu_SeqIntObj& sequence = SequenceOf(self);
    const auto low = static_cast<int>(range.start);
    const auto high = static_cast<int>(range.stop);
    const auto makeKey = [&] {
        return omu_PrimHolder(new omu_PrimExpr("slice(" + cow_String(low) + ", " + cow_String(high) + ")"));
    };
    return ChangeItem(self, makeKey, nullptr, "deletion of such a slice",
                      [&] { return range.step == 1 && sequence.RemoveSlice(low, high) != 0; });
}

int SequenceAssign(PyObject* self, PyObject* key, PyObject* value)
{
    return pyGuard(-1, [&] {
        if (value != nullptr) {
            NotOffered(self, "item assignment");
            return -1;
        }
        return PySlice_Check(key) ? DeleteSlice(self, key) : DeleteElement(self, key);
    });
}

Py_ssize_t SequenceLength(PyObject* self)
{
    return pyGuard(Py_ssize_t{-1}, [&] { return Py_ssize_t{std::max(SequenceOf(self).Length(), 0)}; });
}

PyObject* SequenceConcat(PyObject* self, PyObject* other)
{
    return pyGuard(static_cast<PyObject*>(nullptr), [&] {
        auto* const appended = dynamic_cast<omu_SeqIntObj*>(pyUnwrapObject(other));
        return appended != nullptr ? TakeOffered(self, SequenceOf(self).Concat(appended), "concatenation")
                                   : NotOffered(self, "concatenation with what is no sequence of the kernel");
    });
}

PyObject* FromCount(Py_ssize_t count)
{
    return count >= 0 ? PyLong_FromSsize_t(count) : nullptr;
}

PyObject* SequenceIndex(PyObject* self, PyObject* item)
{
    return FromCount(PySequence_Index(self, item));
}

PyObject* SequenceCount(PyObject* self, PyObject* item)
{
    return FromCount(PySequence_Count(self, item));
}

PyObject* SequenceRepeat(PyObject* self, Py_ssize_t count)
{
    return pyGuard(static_cast<PyObject*>(nullptr), [&] {
        const auto times = static_cast<int>(std::clamp<Py_ssize_t>(count, 0, MOST));
        return TakeOffered(self, SequenceOf(self).Repeat(times), "repetition");
    });
}

// ---- the types

template <class Function> PyType_Slot Slot(int id, Function* function)
{
    return {id, reinterpret_cast<void*>(function)};
}

PyMethodDef mappingMethods[] = {
    {"get", reinterpret_cast<PyCFunction>(reinterpret_cast<void*>(MappingGet)), METH_FASTCALL,
     PyDoc_STR("get($self, key, default=None, /)\n--\n\nThe object under the key, or the default.")},
    {},
};

PyType_Slot mappingSlots[] = {
    {Py_tp_doc, const_cast<char*>("A repository of kernel objects.")},
    {Py_tp_methods, mappingMethods},
    Slot(Py_tp_str, ContainerText),
    Slot(Py_tp_iter, MappingIterate),
    Slot(Py_mp_length, MappingLength),
    Slot(Py_mp_subscript, MappingSubscript),
    Slot(Py_mp_ass_subscript, MappingAssign),
    Slot(Py_sq_contains, MappingContains),
    {0, nullptr},
};

PyMethodDef sequenceMethods[] = {
    {"index", SequenceIndex, METH_O, PyDoc_STR("index($self, item, /)\n--\n\nThe place of the first such item.")},
    {"count", SequenceCount, METH_O, PyDoc_STR("count($self, item, /)\n--\n\nHow many such items there are.")},
    {},
};

PyType_Slot sequenceSlots[] = {
    {Py_tp_doc, const_cast<char*>("A sequence of kernel objects.")},
    {Py_tp_methods, sequenceMethods},
    Slot(Py_tp_str, ContainerText),
    Slot(Py_mp_length, SequenceLength),
    Slot(Py_mp_subscript, SequenceSubscript),
    Slot(Py_mp_ass_subscript, SequenceAssign),
    Slot(Py_sq_length, SequenceLength),
    Slot(Py_sq_item, SequenceItem),
    Slot(Py_sq_concat, SequenceConcat),
    Slot(Py_sq_repeat, SequenceRepeat),
    {0, nullptr},
};

/// A type that derives from `objectType` and counts as the abstract one of collections.abc; null with a Python error set.
PyTypeObject* MakeType(PyObject* module, PyTypeObject* objectType, const char* name, PyType_Slot* slots,
                       const char* abstractName)
{
    PyType_Spec spec{name, 0, 0, Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE | Py_TPFLAGS_DISALLOW_INSTANTIATION, slots};
    const PyRef bases(PyTuple_Pack(1, objectType));
    PyRef type(bases ? PyType_FromSpecWithBases(&spec, bases.Get()) : nullptr);
    const PyRef collections(type ? PyImport_ImportModule("collections.abc") : nullptr);
    const PyRef abstractType(collections ? PyObject_GetAttrString(collections.Get(), abstractName) : nullptr);
    const PyRef registered(abstractType ? PyObject_CallMethod(abstractType.Get(), "register", "O", type.Get())
                                        : nullptr);
    if (!registered || PyModule_AddType(module, reinterpret_cast<PyTypeObject*>(type.Get())) < 0) {
        return nullptr;
    }
    return reinterpret_cast<PyTypeObject*>(type.Release());
}

} // namespace

bool pyAddContainerTypes(PyObject* module, PyTypeObject* objectType)
{
    mappingType = MakeType(module, objectType, "vexomu.ObjectMapping", mappingSlots, "Mapping");
    sequenceType = mappingType != nullptr
                       ? MakeType(module, objectType, "vexomu.ObjectSequence", sequenceSlots, "Sequence")
                       : nullptr;
    return sequenceType != nullptr;
}

PyTypeObject* pyContainerTypeOf(const omu_InterfaceObj& object)
{
    if (dynamic_cast<const omu_SeqIntObj*>(&object) != nullptr) {
        return sequenceType;
    }
    const bool isRepository = dynamic_cast<const omu_DictIntObjABC<cow_String>*>(&object) != nullptr ||
                              dynamic_cast<const omu_DictIntObjABC<int>*>(&object) != nullptr ||
                              dynamic_cast<const omu_DictIntObjABC<omu_PrimEnumBase>*>(&object) != nullptr;
    return isRepository ? mappingType : nullptr;
}
