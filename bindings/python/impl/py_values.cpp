#include "py_values.h"

#include "py_array.h"
#include "py_journal.h"
#include "py_object.h"
#include "py_text_types.h"

#include "bio_Ofilter.h"
#include "cow_List.h"
#include "omi_complex.h"
#include "omu_InterfaceObj.h"
#include "omu_ObjectRef.h"
#include "omu_PrimArray.h"
#include "omu_PrimComplex.h"
#include "omu_PrimDictionary.h"
#include "omu_PrimEnumBase.h"
#include "omu_PrimList.h"
#include "omu_PrimNone.h"
#include "omu_PrimNumber.h"
#include "omu_PrimPath.h"
#include "omu_PrimString.h"
#include "omu_PrimTuple.h"
#include "omu_PrimType.h"

#include <limits>
#include <memory>
#include <utility>

namespace
{

/// A new value of a class that holders do not keep in place.
template <class V, class... Args> omu_PrimHolder NewValue(Args&&... args)
{
    return omu_PrimHolder(new V(std::forward<Args>(args)...));
}

/// Takes an int of one of the interpreter's digits, as nearly all are; false for others.
inline bool TakeSmall(PyObject* value, int& number)
{
    auto* const integer = reinterpret_cast<PyLongObject*>(value);
#if PY_VERSION_HEX >= 0x030C0000
    const bool isSmall = PyUnstable_Long_IsCompact(integer) != 0;
    number = isSmall ? static_cast<int>(PyUnstable_Long_CompactValue(integer)) : number;
#else
    const Py_ssize_t signedDigits = Py_SIZE(integer);
    const bool isSmall = signedDigits >= -1 && signedDigits <= 1;
    number = isSmall ? static_cast<int>(signedDigits) * static_cast<int>(integer->ob_digit[0]) : number;
#endif
    return isSmall;
}

omu_PrimHolder FromInteger(PyObject* value)
{
    int overflow = 0;
    const long long number = PyLong_AsLongLongAndOverflow(value, &overflow);
    if (number == -1 && overflow == 0 && PyErr_Occurred() != nullptr) {
        return {};
    }
    if (overflow == 0 && number >= std::numeric_limits<std::int32_t>::min()) {
        if (number <= std::numeric_limits<std::int32_t>::max()) {
            return omu_PrimHolder(std::in_place_type<omu_PrimNumber>, static_cast<int>(number));
        }
        if (number <= std::numeric_limits<std::uint32_t>::max()) {
            return omu_PrimHolder(std::in_place_type<omu_PrimNumber>, static_cast<unsigned int>(number));
        }
    }
    PyErr_SetString(PyExc_OverflowError, "int does not fit in 32 bits");
    return {};
}

[[gnu::noinline]] bool PutText(omu_PrimTuple& tuple, PyObject* value)
{
    const PyUtf8 utf8(value);
    if (utf8.IsValid()) {
        tuple.Put(cow_String(utf8.view()));
    }
    return utf8.IsValid();
}

[[gnu::noinline]] bool PutOther(omu_PrimTuple& tuple, PyObject* value, int depth)
{
    omu_PrimHolder converted = pyFromPython(value, depth);
    if (!converted) {
        return false;
    }
    tuple.Put(std::move(converted));
    return true;
}

cow_List<cow_String> SplitPath(const cow_String& text)
{
    cow_List<cow_String> components;
    int start = 0;
    for (int dot = text.Find("."); dot >= 0; dot = text.Find(".", start)) {
        components.Append(text.Substring(start, dot));
        start = dot + 1;
    }
    if (start < text.Length()) {
        components.Append(text.Substring(start, text.Length()));
    }
    return components;
}

/// The path's text without the quotes.
cow_String PathText(const omu_PrimPath& path)
{
    const cow_String quoted = path.AsString(0);
    return quoted.Substring(1, quoted.Length() - 1);
}

omu_PrimHolder FromText(PyObject* value)
{
    const PyUtf8 utf8(value);
    if (!utf8.IsValid()) {
        return {};
    }
    const cow_String text(utf8.view());
    if (PyUnicode_CheckExact(value)) {
        return omu_PrimHolder(std::in_place_type<omu_PrimString>, text);
    }
    if (PyJournalRendering::IsOn()) {
        if (omu_PrimHolder shown = PyJournalRendering::ForText(value, text)) {
            return shown;
        }
    }
    switch (pyTextKindOf(value)) {
    case PyTextKind::PATH:
        return NewValue<omu_PrimPath>(SplitPath(text));
    case PyTextKind::CONSTANT:
        return NewValue<omu_PrimEnumBase>(text);
    case PyTextKind::TYPE_NAME:
        return NewValue<omu_PrimType>(text);
    case PyTextKind::NONE:
        break;
    }
    return omu_PrimHolder(std::in_place_type<omu_PrimString>, text);
}

/// Items are taken one by one and held meanwhile: converting one may run Python code that changes the sequence.
template <class Sequence, auto GET_ITEM> omu_PrimHolder FromSequence(PyObject* value, Py_ssize_t length, int depth)
{
    if (length > std::numeric_limits<int>::max() / 2) {
        PyErr_SetString(PyExc_OverflowError, "sequence too long");
        return {};
    }
    auto sequence = std::make_unique<Sequence>(static_cast<int>(length));
    for (Py_ssize_t i = 0; i < length; ++i) {
        const PyRef item(GET_ITEM(value, i));
        if (!item || !pyPutFromPython(*sequence, item.Get(), depth + 1)) {
            return {};
        }
    }
    return omu_PrimHolder(sequence.release());
}

PyObject* TupleItem(PyObject* tuple, Py_ssize_t index)
{
    return Py_NewRef(PyTuple_GET_ITEM(tuple, index));
}

PyObject* ListItem(PyObject* list, Py_ssize_t index)
{
    if (index >= PyList_GET_SIZE(list)) {
        PyErr_SetString(PyExc_RuntimeError, "list changed size while it was converted");
        return nullptr;
    }
    return Py_NewRef(PyList_GET_ITEM(list, index));
}

/// The entries of `items`, a list of (key, value) tuples; `toKey(object, key)` is false with a Python error set.
template <class K, class ToKey> omu_PrimHolder FromItems(PyObject* items, int depth, ToKey toKey)
{
    auto dictionary = std::make_unique<omu_PrimDictionary<K>>();
    for (Py_ssize_t i = 0; i < PyList_GET_SIZE(items); ++i) {
        PyObject* const entry = PyList_GET_ITEM(items, i);
        K key{};
        if (!toKey(PyTuple_GET_ITEM(entry, 0), key)) {
            return {};
        }
        omu_PrimHolder value = pyFromPython(PyTuple_GET_ITEM(entry, 1), depth + 1);
        if (!value) {
            return {};
        }
        dictionary->Put(std::move(value), key);
    }
    return omu_PrimHolder(dictionary.release());
}

bool ToStringKey(PyObject* object, cow_String& key)
{
    if (!PyUnicode_Check(object)) {
        PyErr_Format(PyExc_TypeError, "dictionary keys must be all str or all int, not str and %s",
                     Py_TYPE(object)->tp_name);
        return false;
    }
    const PyUtf8 utf8(object);
    key = utf8.IsValid() ? cow_String(utf8.view()) : cow_String();
    return utf8.IsValid();
}

bool ToIntKey(PyObject* object, int& key)
{
    if (!PyLong_Check(object)) {
        PyErr_Format(PyExc_TypeError, "dictionary keys must be all str or all int, not int and %s",
                     Py_TYPE(object)->tp_name);
        return false;
    }
    int overflow = 0;
    const long long number = PyLong_AsLongLongAndOverflow(object, &overflow);
    if (overflow != 0 || number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max()) {
        PyErr_SetString(PyExc_OverflowError, "dictionary key does not fit in 32 bits");
        return false;
    }
    key = static_cast<int>(number);
    return true;
}

omu_PrimHolder FromDict(PyObject* value, int depth)
{
    const PyRef items(PyDict_Items(value)); // a snapshot: the dict may change while values are converted
    if (!items) {
        return {};
    }
    if (PyList_GET_SIZE(items.Get()) > 0) {
        PyObject* const firstKey = PyTuple_GET_ITEM(PyList_GET_ITEM(items.Get(), 0), 0);
        if (PyLong_Check(firstKey)) {
            return FromItems<int>(items.Get(), depth, ToIntKey);
        }
        if (!PyUnicode_Check(firstKey)) {
            PyErr_Format(PyExc_TypeError, "dictionary keys must be str or int, not %s", Py_TYPE(firstKey)->tp_name);
            return {};
        }
    }
    return FromItems<cow_String>(items.Get(), depth, ToStringKey);
}

/// Values without a fast test of their type.
omu_PrimHolder FromOther(PyObject* value, int depth)
{
    if (PyUnicode_Check(value)) {
        return FromText(value);
    }
    if (PyFloat_Check(value)) {
        return omu_PrimHolder(std::in_place_type<omu_PrimNumber>, PyFloat_AS_DOUBLE(value));
    }
    if (PyComplex_Check(value)) {
        return NewValue<omu_PrimComplex>(omi_complex(PyComplex_RealAsDouble(value), PyComplex_ImagAsDouble(value)));
    }
    if (PyTuple_Check(value)) {
        return FromSequence<omu_PrimTuple, TupleItem>(value, PyTuple_GET_SIZE(value), depth);
    }
    if (PyList_Check(value)) {
        return FromSequence<omu_PrimList, ListItem>(value, PyList_GET_SIZE(value), depth);
    }
    if (PyDict_Check(value)) {
        return FromDict(value, depth);
    }
    if (PyRange_Check(value)) {
        const Py_ssize_t length = PyObject_Size(value);
        return length >= 0 ? FromSequence<omu_PrimList, PySequence_GetItem>(value, length, depth) : omu_PrimHolder();
    }
    if (omu_InterfaceObj* const object = pyUnwrapObject(value)) {
        if (PyJournalRendering::IsOn()) {
            if (omu_PrimHolder shown = PyJournalRendering::ForObject(*object, pyJournalNameOf(value))) {
                return shown;
            }
        }
        return NewValue<omu_ObjectRef>(*object);
    }
    if (PyObject_CheckBuffer(value) != 0 && !PyBytes_Check(value) && !PyByteArray_Check(value)) {
        return omu_PrimHolder(pyFromBuffer(value).release());
    }
    if (PyIndex_Check(value)) {
        const PyRef index(PyNumber_Index(value));
        return index ? FromInteger(index.Get()) : omu_PrimHolder();
    }
    const PyRef path(PyOS_FSPath(value));
    if (path && PyUnicode_Check(path.Get())) {
        return FromText(path.Get());
    }
    if (path || PyErr_ExceptionMatches(PyExc_TypeError)) {
        PyErr_Format(PyExc_TypeError, "a %s has no value that the kernel understands", Py_TYPE(value)->tp_name);
    }
    return {};
}

PyObject* ToNumber(const omu_PrimNumber& number)
{
    if (number.IsType('f')) {
        return PyFloat_FromDouble(number.GetValue());
    }
    if (number.GetDataType() == omu_PrimNumber::UINT32) {
        return PyLong_FromUnsignedLong(number.GetUnsigned());
    }
    return PyLong_FromLong(number.GetInt());
}

/// What a container holds. A kernel object that is no reference would go with the container: Python gets a copy to keep.
PyObject* ItemToPython(const omu_Primitive* item)
{
    omu_Primitive* const copy = item != nullptr && item->IsType('<') ? item->Copy() : nullptr;
    return copy != nullptr ? pyTakeResult(copy) : pyToPython(item);
}

PyObject* ToSequence(const omu_PrimTuple& sequence)
{
    const bool isList = sequence.IsA(omu_PrimList::TypeId());
    const Py_ssize_t length = sequence.Length();
    PyRef result(isList ? PyList_New(length) : PyTuple_New(length));
    if (!result) {
        return nullptr;
    }
    for (Py_ssize_t i = 0; i < length; ++i) {
        PyObject* const item = ItemToPython(sequence.Index(static_cast<int>(i)));
        if (item == nullptr) {
            return nullptr;
        }
        if (isList) {
            PyList_SET_ITEM(result.Get(), i, item);
        } else {
            PyTuple_SET_ITEM(result.Get(), i, item);
        }
    }
    return result.Release();
}

template <class K, class ToKey> PyObject* ToDict(const omu_PrimDictionary<K>& dictionary, ToKey toKey)
{
    PyRef result(PyDict_New());
    if (!result) {
        return nullptr;
    }
    for (const auto& [key, held] : dictionary.GetEntries()) {
        const PyRef pythonKey(toKey(key));
        const PyRef value(pythonKey ? ItemToPython(held.ConstGet()) : nullptr);
        if (!value || PyDict_SetItem(result.Get(), pythonKey.Get(), value.Get()) < 0) {
            return nullptr;
        }
    }
    return result.Release();
}

PyObject* ToTextKind(PyTextKind kind, std::string_view text)
{
    const PyRef string(pyText(text));
    return string ? pyNewText(kind, string.Get()) : nullptr;
}

PyObject* ToDictionary(const omu_Primitive& value)
{
    if (value.IsA(omu_PrimDictionary<int>::TypeId())) {
        return ToDict(static_cast<const omu_PrimDictionary<int>&>(value), [](int key) { return PyLong_FromLong(key); });
    }
    return ToDict(static_cast<const omu_PrimDictionary<cow_String>&>(value),
                  [](const cow_String& key) { return pyText(key.view()); });
}

} // namespace

void PyUtf8::Encode(PyObject* string)
{
    m_bytes = PyUnicode_AsUTF8AndSize(string, &m_length);
    if (m_bytes != nullptr || !PyErr_ExceptionMatches(PyExc_UnicodeEncodeError)) {
        return;
    }
    PyErr_Clear();
    m_encoded = PyRef(PyUnicode_AsEncodedString(string, "utf-8", "surrogateescape"));
    if (m_encoded) {
        m_bytes = PyBytes_AS_STRING(m_encoded.Get());
        m_length = PyBytes_GET_SIZE(m_encoded.Get());
    }
}

PyObject* pyText(std::string_view text)
{
    return PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogateescape");
}

omu_PrimHolder pyFromPython(PyObject* value, int depth)
{
    if (depth >= bio_MAX_NESTING) {
        PyErr_Format(PyExc_ValueError, "value nested deeper than %d levels", bio_MAX_NESTING);
        return {};
    }
    PyTypeObject* const type = Py_TYPE(value);
    if (type == &PyLong_Type) {
        return FromInteger(value);
    }
    if (type == &PyFloat_Type) {
        return omu_PrimHolder(std::in_place_type<omu_PrimNumber>, PyFloat_AS_DOUBLE(value));
    }
    if (type == &PyUnicode_Type) {
        return FromText(value);
    }
    if (type == &PyList_Type) {
        return FromSequence<omu_PrimList, ListItem>(value, PyList_GET_SIZE(value), depth);
    }
    if (type == &PyTuple_Type) {
        return FromSequence<omu_PrimTuple, TupleItem>(value, PyTuple_GET_SIZE(value), depth);
    }
    if (type == &PyBool_Type) {
        return omu_PrimHolder(std::in_place_type<omu_PrimNumber>, value == Py_True ? 1 : 0);
    }
    if (value == Py_None) {
        return omu_PrimHolder(std::in_place_type<omu_PrimNone>);
    }
    return FromOther(value, depth);
}

bool pyPutFromPython(omu_PrimTuple& tuple, PyObject* value, int depth)
{
    // What most calls hand over goes straight to its place.
    if (depth < bio_MAX_NESTING) {
        if (PyLong_CheckExact(value)) {
            int number = 0;
            if (TakeSmall(value, number)) {
                tuple.Put(number);
                return true;
            }
        } else if (PyFloat_CheckExact(value)) {
            tuple.Put(PyFloat_AS_DOUBLE(value));
            return true;
        } else if (PyUnicode_CheckExact(value)) {
            return PutText(tuple, value);
        }
    }
    return PutOther(tuple, value, depth);
}

PyObject* pyToPython(const omu_Primitive* value)
{
    if (value == nullptr) {
        return Py_NewRef(Py_None);
    }
    switch (value->TypeCode()) {
    case 'n':
        return Py_NewRef(Py_None);
    case 'i':
    case 'f':
        return ToNumber(static_cast<const omu_PrimNumber&>(*value));
    case 's':
        return pyText(static_cast<const omu_PrimString&>(*value).GetString().view());
    case '(':
        return ToSequence(static_cast<const omu_PrimTuple&>(*value));
    case '{':
        return ToDictionary(*value);
    case 'x': {
        const omi_complex number = static_cast<const omu_PrimComplex&>(*value).GetValue();
        return PyComplex_FromDoubles(number.RealPart(), number.ImaginaryPart());
    }
    case 'o':
        return pyToArray(static_cast<const omu_PrimArray&>(*value));
    case 'c':
        return ToTextKind(PyTextKind::CONSTANT, static_cast<const omu_PrimEnumBase&>(*value).GetString().view());
    case 'p':
        return ToTextKind(PyTextKind::PATH, PathText(static_cast<const omu_PrimPath&>(*value)).view());
    case 't':
        return ToTextKind(PyTextKind::TYPE_NAME, static_cast<const omu_PrimType&>(*value).GetName().view());
    case '<':
        // The kernel's own object; whatever holds it now, Python only refers to it.
        return pyWrapObject(const_cast<omu_InterfaceObj&>(static_cast<const omu_InterfaceObj&>(*value).Resolve()),
                            /*owned=*/false);
    default:
        PyErr_Format(PyExc_TypeError, "a value of type %s cannot be shown to Python", value->TypeString().AsCharPtr());
        return nullptr;
    }
}
