#include "py_array.h"

#include "omi_complex.h"
#include "omu_Arguments.h"
#include "omu_PrimArray.h"
#include "omu_PrimComplex.h"
#include "omu_PrimExpr.h"
#include "omu_PrimNumber.h"
#include "py_errors.h"
#include "py_journal.h"
#include "py_values.h"

#include "nex_TextException.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace
{

constexpr const char* SOURCE = "bindings/python/impl/py_array";

using Kind = omu_PrimNumber::DataTypeEnm;

/// A numeric array in Python's hands; it shares the elements with the values it came from.
struct ArrayObject
{
    PyObject ob_base;
    omu_PrimArray array;
    // What a buffer consumer is shown; they live as long as the object.
    std::vector<Py_ssize_t> shape;
    std::vector<Py_ssize_t> strides;
};

PyTypeObject* arrayType = nullptr;

/// Lets go of a buffer at the end of a scope.
class BufferView
{
public:
    explicit BufferView(PyObject* exporter)
        : m_isOpen(PyObject_GetBuffer(exporter, &m_view, PyBUF_FORMAT | PyBUF_STRIDES) == 0)
    {}
    ~BufferView()
    {
        if (m_isOpen) {
            PyBuffer_Release(&m_view);
        }
    }
    BufferView(const BufferView&) = delete;
    BufferView& operator=(const BufferView&) = delete;

    bool IsOpen() const noexcept { return m_isOpen; }
    const Py_buffer& operator*() const noexcept { return m_view; }
    const Py_buffer* operator->() const noexcept { return &m_view; }

private:
    Py_buffer m_view{};
    bool m_isOpen;
};

template <class T> T Load(const void* address)
{
    T value;
    std::memcpy(&value, address, sizeof value);
    return value;
}

/// Calls `use` with a value of the C type that the format stands for; false for formats that are no numbers.
template <class Use> bool WithIntegerType(char format, Use use)
{
    switch (format) {
    case '?':
        return use(static_cast<unsigned char>(0));
    case 'b':
        return use(static_cast<signed char>(0));
    case 'B':
        return use(static_cast<unsigned char>(0));
    case 'h':
        return use(static_cast<short>(0));
    case 'H':
        return use(static_cast<unsigned short>(0));
    case 'i':
        return use(0);
    case 'I':
        return use(0U);
    case 'l':
        return use(0L);
    case 'L':
        return use(0UL);
    case 'q':
        return use(0LL);
    case 'Q':
        return use(0ULL);
    default:
        return false;
    }
}

/// What the format says of the order of the elements' bytes: every machine that VEXomu runs on is little-endian.
bool IsBigEndian(const Py_buffer& view)
{
    return view.format != nullptr && (*view.format == '>' || *view.format == '!');
}

/// The one character of the format of elements that are numbers, or 0.
char FormatOf(const Py_buffer& view)
{
    const char* format = view.format != nullptr ? view.format : "B";
    if (*format == '@' || *format == '=' || *format == '<' || IsBigEndian(view)) {
        ++format;
    }
    const auto hasSizeOf = [&](auto sample) { return view.itemsize == static_cast<Py_ssize_t>(sizeof sample); };
    const bool isNumber = format[0] == 'f'   ? hasSizeOf(0.0F)
                          : format[0] == 'd' ? hasSizeOf(0.0)
                                             : WithIntegerType(format[0], hasSizeOf);
    return isNumber && format[1] == '\0' ? format[0] : '\0';
}

/// A scalar of numpy that is no number, such as a date, has its bytes for elements.
bool IsScalarOfBytes(PyObject* value, const Py_buffer& view)
{
    if (view.ndim != 1 || view.itemsize != 1) {
        return false;
    }
    const PyRef dimensions(PyObject_GetAttrString(value, "ndim"));
    const bool isScalar = dimensions && PyLong_Check(dimensions.Get()) && PyLong_AsLong(dimensions.Get()) == 0;
    PyErr_Clear();
    return isScalar;
}

bool SetOverflow()
{
    PyErr_SetString(PyExc_OverflowError, "int does not fit in 32 bits");
    return false;
}

/// The elements of a buffer row by row, as this machine has them; a copy only where the exporter has them otherwise.
class Elements
{
public:
    /// Throws std::bad_alloc; Get() is null with a Python error set when the exporter does not give them.
    explicit Elements(const Py_buffer& view) : m_elements(static_cast<const unsigned char*>(view.buf))
    {
        if (PyBuffer_IsContiguous(&view, 'C') != 0 && !IsBigEndian(view)) {
            return;
        }
        m_packed.reset(new unsigned char[static_cast<std::size_t>(view.len)]);
        m_elements = m_packed.get();
        if (PyBuffer_ToContiguous(m_packed.get(), const_cast<Py_buffer*>(&view), view.len, 'C') < 0) {
            m_elements = nullptr;
        } else if (IsBigEndian(view)) {
            for (unsigned char* item = m_packed.get(); item != m_packed.get() + view.len; item += view.itemsize) {
                std::reverse(item, item + view.itemsize);
            }
        }
    }
    const unsigned char* Get() const noexcept { return m_elements; }

private:
    std::unique_ptr<unsigned char[]> m_packed;
    const unsigned char* m_elements;
};

std::unique_ptr<omu_PrimNumber> NumberFrom(const unsigned char* element, char format)
{
    if (format == 'f') {
        return std::make_unique<omu_PrimNumber>(Load<float>(element));
    }
    if (format == 'd') {
        return std::make_unique<omu_PrimNumber>(Load<double>(element));
    }
    std::unique_ptr<omu_PrimNumber> number;
    WithIntegerType(format, [&](auto sample) {
        using T = decltype(sample);
        const T integer = Load<T>(element);
        if constexpr (std::is_same_v<T, signed char>) {
            number = std::make_unique<omu_PrimNumber>(integer, omu_PrimNumber::INT8);
        } else if constexpr (std::is_same_v<T, short>) {
            number = std::make_unique<omu_PrimNumber>(integer, omu_PrimNumber::INT16);
        } else if (std::in_range<std::int32_t>(integer) && !std::is_same_v<T, unsigned int>) {
            number = std::make_unique<omu_PrimNumber>(static_cast<int>(integer));
        } else if (std::in_range<std::uint32_t>(integer)) {
            number = std::make_unique<omu_PrimNumber>(static_cast<unsigned int>(integer));
        } else {
            SetOverflow();
        }
        return true;
    });
    return number;
}

/// What the journal writes for a number of a kind that the script's own numbers do not have; null for any other.
std::unique_ptr<omu_Primitive> ShownNumber(const omu_PrimNumber& number)
{
    const auto shown = [](const auto& plain, const char* kind) {
        omu_Arguments arguments(2);
        arguments.Put(plain);
        arguments.Put(cow_String(kind));
        return std::make_unique<omu_PrimExpr>("number" + arguments.AsRepr());
    };
    switch (number.GetDataType()) {
    case omu_PrimNumber::INT8:
        return shown(number.GetInt(), "b");
    case omu_PrimNumber::INT16:
        return shown(number.GetInt(), "h");
    case omu_PrimNumber::UINT32:
        return std::in_range<std::int32_t>(number.GetUnsigned()) ? shown(number.GetInt(), "I") : nullptr;
    case omu_PrimNumber::REAL32:
        return shown(number.GetValue(), "f"); // the digits of a float would be read as another double
    default:
        return nullptr;
    }
}

/// Elements of an integer format as 32-bit ones; false with a Python error set.
bool Narrow(char format, const unsigned char* elements, std::vector<std::int32_t>& narrowed)
{
    bool fits = true;
    WithIntegerType(format, [&](auto sample) {
        using T = decltype(sample);
        for (std::size_t i = 0; i < narrowed.size(); ++i) {
            const T element = Load<T>(elements + i * sizeof(T));
            fits = fits && std::in_range<std::int32_t>(element);
            narrowed[i] = static_cast<std::int32_t>(element);
        }
        return true;
    });
    return fits || SetOverflow();
}

std::unique_ptr<omu_Primitive> ArrayFrom(const Py_buffer& view, const unsigned char* elements, char format)
{
    std::vector<int> dimensions;
    for (int i = 0; i < view.ndim; ++i) {
        if (!std::in_range<int>(view.shape[i])) {
            PyErr_SetString(PyExc_OverflowError, "array dimension does not fit in 32 bits");
            return nullptr;
        }
        dimensions.push_back(static_cast<int>(view.shape[i]));
    }
    const auto make = [&](Kind kind, const void* data) {
        return std::make_unique<omu_PrimArray>(view.ndim, dimensions.data(), kind, data);
    };
    switch (format) {
    case 'i':
        return make(omu_PrimNumber::INT32, elements);
    case 'f':
        return make(omu_PrimNumber::REAL32, elements);
    case 'd':
        return make(omu_PrimNumber::REAL64, elements);
    default: {
        std::vector<std::int32_t> narrowed(static_cast<std::size_t>(view.len / view.itemsize));
        return Narrow(format, elements, narrowed) ? make(omu_PrimNumber::INT32, narrowed.data()) : nullptr;
    }
    }
}

ArrayObject& Of(PyObject* self)
{
    return *reinterpret_cast<ArrayObject*>(self);
}

const char* FormatText(Kind kind)
{
    return kind == omu_PrimNumber::INT32 ? "i" : kind == omu_PrimNumber::REAL32 ? "f" : "d";
}

int GetBuffer(PyObject* self, Py_buffer* view, int flags)
{
    ArrayObject& object = Of(self);
    if ((flags & PyBUF_WRITABLE) != 0) {
        PyErr_SetString(PyExc_BufferError, "the elements are shared with the kernel and cannot be written");
        return -1;
    }
    if ((flags & PyBUF_STRIDES) != PyBUF_STRIDES && !object.array.IsContiguous()) {
        PyErr_SetString(PyExc_BufferError, "the elements do not follow one another");
        return -1;
    }
    const Py_ssize_t itemSize = object.array.ConstGetItemSize();
    *view = Py_buffer{.buf = const_cast<void*>(static_cast<const void*>(object.array.ConstGetData())),
                      .obj = Py_NewRef(self),
                      .len = itemSize * object.array.ConstGetNumElements(),
                      .itemsize = itemSize,
                      .readonly = 1,
                      .ndim = static_cast<int>(object.shape.size()),
                      .format = const_cast<char*>(FormatText(object.array.ConstGetPrimNumberType())),
                      .shape = object.shape.data(),
                      .strides = object.strides.data(),
                      .suboffsets = nullptr,
                      .internal = nullptr};
    return 0;
}

void Dealloc(PyObject* self)
{
    PyTypeObject* const type = Py_TYPE(self);
    Of(self).array.~omu_PrimArray();
    Of(self).shape.~vector();
    Of(self).strides.~vector();
    type->tp_free(self);
    Py_DECREF(type);
}

/// As a script makes it; of many elements only how many there are.
PyObject* Repr(PyObject* self)
{
    constexpr int MOST_SHOWN = 1000;
    const omu_PrimArray& array = Of(self).array;
    if (array.ConstGetNumElements() > MOST_SHOWN) {
        return PyUnicode_FromFormat("<%s of %d elements>", Py_TYPE(self)->tp_name, array.ConstGetNumElements());
    }
    return pyGuard(static_cast<PyObject*>(nullptr), [&] { return pyText(array.AsString(0).view()); });
}

/// The array as a vexomu.Array; null with a Python error set.
PyObject* NewArrayObject(const omu_PrimArray& array)
{
    std::vector<Py_ssize_t> shape;
    std::vector<Py_ssize_t> strides;
    for (int i = 0; i < array.ConstGetNumDimensions(); ++i) {
        shape.push_back(array.ConstGetDimension(i));
        strides.push_back(array.ConstGetStride(i));
    }
    PyObject* const self = arrayType->tp_alloc(arrayType, 0);
    if (self == nullptr) {
        return nullptr;
    }
    ::new (&Of(self).array) omu_PrimArray(array);
    ::new (&Of(self).shape) std::vector<Py_ssize_t>(std::move(shape));
    ::new (&Of(self).strides) std::vector<Py_ssize_t>(std::move(strides));
    return self;
}

/// array.reshape(shape), which stands in the text of an array that has no elements in some dimension.
PyObject* Reshape(PyObject* self, PyObject* shape)
{
    const omu_PrimArray& array = Of(self).array;
    const PyRef lengths(PySequence_Tuple(shape));
    std::vector<int> dimensions;
    long long count = 1;
    for (Py_ssize_t i = 0; lengths && i < PyTuple_GET_SIZE(lengths.Get()); ++i) {
        const long length = PyLong_AsLong(PyTuple_GET_ITEM(lengths.Get(), i));
        if (length == -1 && PyErr_Occurred() != nullptr) {
            return nullptr;
        }
        if (length < 0 || length > std::numeric_limits<int>::max()) {
            PyErr_SetString(PyExc_ValueError, "a dimension is negative or does not fit in 32 bits");
            return nullptr;
        }
        dimensions.push_back(static_cast<int>(length));
        count = std::min(count * length, 1LL << 32); // beyond every array, and short of overflow
    }
    if (!lengths) {
        return nullptr;
    }
    if (count != array.ConstGetNumElements() || !array.IsContiguous()) {
        PyErr_Format(PyExc_ValueError, "%d elements cannot be reshaped to %R", array.ConstGetNumElements(), shape);
        return nullptr;
    }
    return pyGuard(static_cast<PyObject*>(nullptr), [&] {
        return NewArrayObject({static_cast<int>(dimensions.size()), dimensions.data(), array.ConstGetPrimNumberType(),
                               array.ConstGetData()});
    });
}

PyMethodDef methods[] = {
    {"reshape", Reshape, METH_O, "reshape($self, shape, /)\n--\n\nThe same elements in other dimensions."},
    {},
};

/// numpy.asarray, borrowed; null without a Python error when there is no numpy.
PyObject* NumpyAsArray()
{
    static PyObject* asArray = nullptr; // kept for the life of the process
    if (asArray == nullptr) {
        const PyRef numpy(PyImport_ImportModule("numpy"));
        asArray = numpy ? PyObject_GetAttrString(numpy.Get(), "asarray") : nullptr;
        if (asArray == nullptr) {
            PyErr_Clear();
        }
    }
    return asArray;
}

bool IsRow(PyObject* value)
{
    return PyList_CheckExact(value) || PyTuple_CheckExact(value);
}

/// The shape of lists or tuples in each other, found by following the first items down.
std::vector<int> ShapeOf(PyObject* values)
{
    std::vector<int> shape;
    while (IsRow(values) && shape.size() < bio_MAX_NESTING &&
           PySequence_Fast_GET_SIZE(values) <= std::numeric_limits<int>::max()) {
        shape.push_back(static_cast<int>(PySequence_Fast_GET_SIZE(values)));
        if (shape.back() == 0) {
            break;
        }
        values = PySequence_Fast_GET_ITEM(values, 0);
    }
    return shape;
}

/// Appends the number; false when `T` does not hold it exactly, or when it is none of the interpreter's own numbers.
template <class T> bool AppendNumber(std::vector<T>& elements, PyObject* item)
{
    if constexpr (std::is_floating_point_v<T>) {
        if (PyFloat_CheckExact(item)) {
            elements.push_back(static_cast<T>(PyFloat_AS_DOUBLE(item)));
            return true;
        }
    }
    int overflow = 0;
    const long long number = PyLong_CheckExact(item) ? PyLong_AsLongLongAndOverflow(item, &overflow) : 0;
    if (!PyLong_CheckExact(item) || overflow != 0 || !std::in_range<std::int32_t>(number)) {
        return false;
    }
    elements.push_back(static_cast<T>(number));
    return true;
}

/// Appends the numbers row by row; false when they have not that shape or are not all plain.
template <class T> bool AppendRows(std::vector<T>& elements, PyObject* row, std::span<const int> shape)
{
    if (!IsRow(row) || PySequence_Fast_GET_SIZE(row) != shape[0]) {
        return false;
    }
    PyObject** const items = PySequence_Fast_ITEMS(row);
    return std::all_of(items, items + shape[0], [&](PyObject* item) {
        return shape.size() == 1 ? AppendNumber(elements, item) : AppendRows(elements, item, shape.subspan(1));
    });
}

/// The array of plain numbers in lists and tuples, made without a value for each; null without a Python error when there
/// is more to it.
template <class T> std::unique_ptr<omu_PrimArray> PlainArray(PyObject* values, Kind kind)
{
    const std::vector<int> shape = ShapeOf(values);
    std::vector<T> elements;
    if (shape.empty() || !AppendRows(elements, values, shape)) {
        return nullptr;
    }
    return std::make_unique<omu_PrimArray>(static_cast<int>(shape.size()), shape.data(), kind, elements.data());
}

/// The array of numbers in values of any kind; throws nex_TextException when they have no shape.
std::unique_ptr<omu_PrimArray> ArrayOfValues(const omu_PrimHolder& values, Kind kind)
{
    if (const omu_PrimNumber* const number = values.NumberInPlace()) {
        // The text of an array without dimensions has its number alone.
        double element = 0; // room for each kind
        putPrimNumberAtPtr(*number, kind, &element);
        if (kind == omu_PrimNumber::INT32 && Load<std::int32_t>(&element) != number->GetValue()) {
            nex_TextException("a number that is no int32 is no element of an array of kind 'i'")
                .Throw(SOURCE, __LINE__);
        }
        return std::make_unique<omu_PrimArray>(0, nullptr, kind, &element);
    }
    const auto& sequence = static_cast<const omu_PrimSequence&>(*values);
    const omu_PrimArray source(sequence);
    if (kind == omu_PrimNumber::INT32 && source.ConstGetPrimNumberType() != kind) {
        nex_TextException("floats are no elements of an array of kind 'i'").Throw(SOURCE, __LINE__);
    }
    std::vector<int> shape;
    for (int i = 0; i < source.ConstGetNumDimensions(); ++i) {
        shape.push_back(source.ConstGetDimension(i));
    }
    std::vector<double> elements(static_cast<std::size_t>(source.ConstGetNumElements()));
    cow_String message;
    if (!copyValuesFromSequence(sequence, shape, kind, elements.data(), message)) {
        nex_TextException(message).Throw(SOURCE, __LINE__);
    }
    return std::make_unique<omu_PrimArray>(static_cast<int>(shape.size()), shape.data(), kind, elements.data());
}

/// The values as an array of `kind`, whose elements are T; null with a Python error set.
template <class T> PyObject* NewArrayOf(PyObject* values, Kind kind)
{
    if (const std::unique_ptr<omu_PrimArray> array = PlainArray<T>(values, kind)) {
        return pyToArray(*array);
    }
    const omu_PrimHolder held = pyFromPython(values);
    if (!held) {
        return nullptr;
    }
    if (!held->IsType('(') && !held->IsType('o') && held.NumberInPlace() == nullptr) {
        PyErr_Format(PyExc_TypeError, "no array can be made of a %s", Py_TYPE(values)->tp_name);
        return nullptr;
    }
    return pyToArray(*ArrayOfValues(held, kind));
}

/// array(values, kind): what the text of a numeric array makes when it is run.
PyObject* NewArray(PyObject*, PyObject* arguments)
{
    PyObject* values = nullptr;
    const char* code = nullptr;
    if (PyArg_ParseTuple(arguments, "Os:array", &values, &code) == 0) {
        return nullptr;
    }
    return pyGuard(static_cast<PyObject*>(nullptr), [&]() -> PyObject* {
        const std::string_view text(code);
        if (text == "i") {
            return NewArrayOf<std::int32_t>(values, omu_PrimNumber::INT32);
        }
        if (text == "f") {
            return NewArrayOf<float>(values, omu_PrimNumber::REAL32);
        }
        if (text == "d") {
            return NewArrayOf<double>(values, omu_PrimNumber::REAL64);
        }
        PyErr_SetString(PyExc_ValueError, "the kind of an array is 'i', 'f' or 'd'");
        return nullptr;
    });
}

/// number(value, kind): what the journal writes for a number of a kind that a script's own numbers do not have. A ctypes
/// object carries it, so that a journal runs where there is no numpy.
PyObject* NewNumber(PyObject*, PyObject* arguments)
{
    PyObject* value = nullptr;
    const char* kind = nullptr;
    if (PyArg_ParseTuple(arguments, "Os:number", &value, &kind) == 0) {
        return nullptr;
    }
    static constexpr std::array<std::pair<std::string_view, const char*>, 4> classes{
        {{"b", "c_int8"}, {"h", "c_int16"}, {"I", "c_uint32"}, {"f", "c_float"}}};
    const auto* const found =
        std::find_if(classes.begin(), classes.end(), [kind](const auto& row) { return row.first == kind; });
    if (found == classes.end()) {
        PyErr_SetString(PyExc_ValueError, "the kind of a number is 'b', 'h', 'I' or 'f'");
        return nullptr;
    }
    const PyRef ctypes(PyImport_ImportModule("ctypes"));
    const PyRef type(ctypes ? PyObject_GetAttrString(ctypes.Get(), found->second) : nullptr);
    PyRef number(type ? PyObject_CallOneArg(type.Get(), value) : nullptr);
    const PyRef kept(number ? PyObject_GetAttrString(number.Get(), "value") : nullptr);
    if (!kept) {
        return nullptr;
    }
    if (*kind == 'f') {
        return number.Release();
    }
    const int isSame = PyObject_RichCompareBool(kept.Get(), value, Py_EQ); // ctypes drops the bits that do not fit
    if (isSame == 0) {
        PyErr_Format(PyExc_OverflowError, "%R does not fit in a number of kind '%s'", value, kind);
    }
    return isSame == 1 ? number.Release() : nullptr;
}

PyMethodDef functions[] = {
    {"number", NewNumber, METH_VARARGS,
     "number(value, kind, /)\n--\n\nA number for the kernel as int8 'b', int16 'h', uint32 'I' or float32 'f'."},
    {"array", NewArray, METH_VARARGS,
     "array(values, kind, /)\n--\n\nNumbers in nested sequences as an array of int32 'i', float32 'f' or float64 'd'."},
    {},
};

} // namespace

bool pyAddArrayType(PyObject* module)
{
    PyType_Slot slots[] = {
        {Py_tp_dealloc, reinterpret_cast<void*>(Dealloc)},
        {Py_tp_repr, reinterpret_cast<void*>(Repr)},
        {Py_bf_getbuffer, reinterpret_cast<void*>(GetBuffer)},
        {Py_tp_methods, methods},
        {Py_tp_doc, const_cast<char*>("A numeric array of the kernel; memoryview and numpy read it in place.")},
        {0, nullptr},
    };
    PyType_Spec spec{"vexomu.Array", sizeof(ArrayObject), 0, Py_TPFLAGS_DEFAULT | Py_TPFLAGS_DISALLOW_INSTANTIATION,
                     slots};
    arrayType = reinterpret_cast<PyTypeObject*>(PyType_FromSpec(&spec));
    return arrayType != nullptr && PyModule_AddFunctions(module, functions) == 0 &&
           PyModule_AddObjectRef(module, "Array", reinterpret_cast<PyObject*>(arrayType)) == 0;
}

std::unique_ptr<omu_Primitive> pyFromBuffer(PyObject* value)
{
    const BufferView view(value);
    if (!view.IsOpen()) {
        return nullptr;
    }
    if (view->ndim == 0 && view->format != nullptr && std::string_view(view->format) == "Zf") {
        const auto parts = Load<std::array<float, 2>>(view->buf);
        return std::make_unique<omu_PrimComplex>(omi_complex(parts[0], parts[1]));
    }
    const char format = IsScalarOfBytes(value, *view) ? '\0' : FormatOf(*view);
    if (format == '\0') {
        PyErr_Format(PyExc_TypeError, "the elements of this %s are no numbers that the kernel understands",
                     Py_TYPE(value)->tp_name);
        return nullptr;
    }
    if (!std::in_range<int>(view->len / view->itemsize)) { // before they are copied: a broadcast array is small
        PyErr_SetString(PyExc_OverflowError, "array has more elements than fit in 32 bits");
        return nullptr;
    }
    const Elements elements(*view);
    if (elements.Get() == nullptr) {
        return nullptr;
    }
    if (view->ndim != 0) {
        return ArrayFrom(*view, elements.Get(), format);
    }
    std::unique_ptr<omu_PrimNumber> number = NumberFrom(elements.Get(), format);
    std::unique_ptr<omu_Primitive> shown;
    if (number != nullptr && PyJournalRendering::IsOn()) {
        shown = ShownNumber(*number);
    }
    return shown != nullptr ? std::move(shown) : std::move(number);
}

PyObject* pyToArray(const omu_PrimArray& array)
{
    PyRef object(NewArrayObject(array));
    PyObject* const asArray = object ? NumpyAsArray() : nullptr;
    return asArray != nullptr ? PyObject_CallOneArg(asArray, object.Get()) : object.Release();
}
