#include "omu_PrimArray.h"

#include "VEXCRT.h"
#include "cow_CloneCount.h"
#include "cow_Stream.h"
#include "nex_TextException.h"
#include "omu_PrimVisitor.h"
#include "omu_TypeIds.h"
#include "pnt_debugPrint.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <numeric>
#include <utility>

using Kind = omu_PrimNumber::DataTypeEnm;

namespace
{

constexpr const char* SOURCE = "source/omu/impl/omu_PrimArray";

/// As deep as its tuples may be.
constexpr int MAX_DIMENSIONS = omu_Primitive::MAX_NESTING;

/// Elements that an array without any might have if its empty dimensions were 1, when a stream says so: the few bytes of
/// its dimensions could otherwise ask for a text of any length.
constexpr std::int64_t MAX_EMPTY_EXTENT = 1 << 16;

// What LayOut answers instead of a size.
constexpr std::int64_t NEGATIVE_DIMENSION = -1;
constexpr std::int64_t TOO_MANY_BYTES = -2;

[[noreturn]] void Fail(const cow_String& text)
{
    nex_TextException(text).Throw(SOURCE, __LINE__);
}

/// What `make` gives; when memory is short, an error that says for which part.
template <class Make> auto Allocated(const char* part, Make make)
{
    try {
        return make();
    } catch (const std::bad_alloc&) {
        Fail("PrimArray can't allocate memory for array (" + cow_String(part) + ")");
    }
}

int ItemSize(Kind type)
{
    switch (type) {
    case omu_PrimNumber::INT32:
    case omu_PrimNumber::REAL32:
        return 4;
    case omu_PrimNumber::REAL64:
        return 8;
    case omu_PrimNumber::INT8:
    case omu_PrimNumber::INT16:
    case omu_PrimNumber::UINT32:
        break;
    }
    VEXCRT::_assert("PrimArray typeCode must be INT32, REAL32, or REAL64", SOURCE, __LINE__);
    return 0;
}

void RequireElementType(Kind type)
{
    if (type != omu_PrimNumber::INT32 && !omu_PrimNumber::IsFloating(type)) {
        Fail("PrimArray only INT32, REAL32, REAL64 allowed");
    }
}

/// Bytes of all elements, and the row-major strides; NEGATIVE_DIMENSION or TOO_MANY_BYTES when there is no such array.
std::int64_t LayOut(std::span<const int> dimensions, int itemSize, int* strides)
{
    if (std::any_of(dimensions.begin(), dimensions.end(), [](int dimension) { return dimension < 0; })) {
        return NEGATIVE_DIMENSION;
    }
    std::int64_t bytes = itemSize;
    std::int64_t extent = itemSize; // without a look at empty dimensions, or the others could be of any size
    for (std::size_t i = dimensions.size(); i-- > 0;) {
        strides[i] = static_cast<int>(bytes);
        bytes *= dimensions[i];
        extent *= std::max(dimensions[i], 1);
        if (extent > omu_PrimArray::MAX_BYTES) {
            return TOO_MANY_BYTES;
        }
    }
    return bytes;
}

std::size_t RequireBytes(std::int64_t bytes)
{
    if (bytes == NEGATIVE_DIMENSION) {
        Fail("PrimArray negative dimensions are not allowed");
    }
    if (bytes == TOO_MANY_BYTES) {
        Fail("PrimArray can't allocate memory for array (data)");
    }
    return static_cast<std::size_t>(bytes);
}

void RequireDimensionCount(int count)
{
    if (count > MAX_DIMENSIONS) {
        Fail("PrimArray more than " + cow_String(MAX_DIMENSIONS) + " dimensions");
    }
}

template <class T> T Load(const void* address)
{
    T value;
    std::memcpy(&value, address, sizeof value);
    return value;
}

template <class T> void Save(void* address, T value)
{
    std::memcpy(address, &value, sizeof value);
}

/// The value as a double, wherever the number has it.
double ValueOf(const omu_PrimNumber& number)
{
    return number.GetDataType() == omu_PrimNumber::UINT32 ? number.GetUnsigned() : number.GetValue();
}

/// Calls `use` with the address of each element from `data` on, row by row.
template <class Use>
void ForEachElement(const omu_PrimArray& array, int level, const unsigned char* data, const Use& use)
{
    if (level == array.ConstGetNumDimensions()) {
        use(data);
        return;
    }
    for (int i = 0; i < array.ConstGetDimension(level); ++i) {
        ForEachElement(array, level + 1, data + std::ptrdiff_t{array.ConstGetStride(level)} * i, use);
    }
}

const unsigned char* DataOf(const omu_PrimArray& array)
{
    return static_cast<const unsigned char*>(array.ConstGetData());
}

/// Writes the elements as ones of `type` row by row to `to`; returns what lies behind them.
unsigned char* CopyElements(const omu_PrimArray& array, Kind type, unsigned char* to)
{
    if (type == array.ConstGetPrimNumberType() && array.IsContiguous()) {
        const auto bytes = static_cast<std::size_t>(array.ConstGetArraySize());
        if (bytes != 0) {
            std::memcpy(to, array.ConstGetData(), bytes);
        }
        return to + bytes;
    }
    const int itemSize = ItemSize(type);
    ForEachElement(array, 0, DataOf(array), [&](const unsigned char* from) {
        putPrimNumberAtPtr(getPrimNumberAtPtr(from, array.ConstGetPrimNumberType()), type, to);
        to += itemSize;
    });
    return to;
}

/// Writes where two arrays differ; the answer of the comparison.
bool DiffersAt(int index)
{
    pnt_debugPrint() << "PrimArray. different Index(" << index << ")\n";
    return false;
}

/// Compares two arrays of equal dimensions and type.
template <class T>
bool EqualElements(const omu_PrimArray& a, const unsigned char* dataA, const omu_PrimArray& b,
                   const unsigned char* dataB, int level)
{
    if (level == a.ConstGetNumDimensions()) {
        return Load<T>(dataA) == Load<T>(dataB) || (level == 0 && DiffersAt(0));
    }
    for (int i = 0; i < a.ConstGetDimension(level); ++i) {
        if (!EqualElements<T>(a, dataA + std::ptrdiff_t{a.ConstGetStride(level)} * i, b,
                              dataB + std::ptrdiff_t{b.ConstGetStride(level)} * i, level + 1)) {
            return level == 0 && DiffersAt(i);
        }
    }
    return true;
}

void AppendItems(cow_String& text, const omu_PrimArray& array, int level, const unsigned char* data)
{
    if (level == array.ConstGetNumDimensions()) {
        text += getPrimNumberAtPtr(data, array.ConstGetPrimNumberType()).AsString(0);
        return;
    }
    text += "[";
    for (int i = 0; i < array.ConstGetDimension(level); ++i) {
        if (i > 0) {
            text += ", ";
        }
        AppendItems(text, array, level + 1, data + std::ptrdiff_t{array.ConstGetStride(level)} * i);
    }
    text += "]";
}

/// Bounds of a slice, inside 0 to `length`.
std::pair<int, int> ClampSlice(int low, int high, int length)
{
    high = std::min(high, length);
    high = high < 0 ? high + length : high;
    low = low < 0 ? std::max(low + length, 0) : low;
    return {low, std::max(low, high)};
}

} // namespace

omu_PrimArray::omu_PrimArray() : omu_PrimSequence('o'), m_dimensions{0}, m_strides{static_cast<int>(sizeof(double))} {}

omu_PrimArray::omu_PrimArray(int dimensionCount, const int* dimensions, Kind type, const void* data) : omu_PrimArray()
{
    FromDimsAndData(dimensionCount, dimensions, data, type);
}

omu_PrimArray::omu_PrimArray(int dimensionCount, const int* dimensions, const double* values)
    : omu_PrimArray(dimensionCount, dimensions, omu_PrimNumber::REAL64, values)
{}

omu_PrimArray::omu_PrimArray(int dimensionCount, const int* dimensions, const int* strides, void* data, char pyType,
                             Kind type, const cow_CountedHld<omu_PrimArrayData>& storage)
    : omu_PrimSequence('o'), m_dimensions(dimensions, dimensions + std::max(dimensionCount, 0)),
      m_strides(strides, strides + std::max(dimensionCount, 0)), m_data(static_cast<unsigned char*>(data)),
      m_type(type), m_storage(storage)
{
    RequireElementType(type);
    RequireDimensionCount(dimensionCount);
    SetPyType();
    if (pyType != m_pyType) {
        VEXCRT::_assert("omu_PrimArray ctor failed - bad pyType", SOURCE, __LINE__);
    }
    RequireInsideStorage();
}

omu_PrimArray::omu_PrimArray(const omu_PrimSequence& sequence) : omu_PrimArray()
{
    FromSequence(sequence);
}

omu_PrimArray::omu_PrimArray(bio_Ifilter&) : omu_PrimArray() {}

bool omu_PrimArray::FromDimsAndData(int dimensionCount, const int* dimensions, const void* data, Kind type)
{
    if (dimensionCount < 0) {
        VEXCRT::_assert("PrimArray number of dimensions must be >= 0", SOURCE, __LINE__);
        return false;
    }
    RequireElementType(type);
    RequireDimensionCount(dimensionCount);
    const auto shape = Allocated("dims", [&] { return cow_1DArray<int>(dimensions, dimensions + dimensionCount); });
    auto strides = Allocated("strides", [&] { return cow_1DArray<int>(dimensionCount); });
    const std::size_t bytes = RequireBytes(LayOut(shape, ItemSize(type), strides.Write()));
    m_storage = Allocated("data", [&] { return cow_CountedHld<omu_PrimArrayData>::Make(data, bytes); });
    m_dimensions = shape;
    m_strides = strides;
    m_data = m_storage->Bytes();
    m_type = type;
    SetPyType();
    m_indexed = {};
    return true;
}

void omu_PrimArray::SetPyType() noexcept
{
    m_pyType = m_type == omu_PrimNumber::INT32 ? 'i' : m_type == omu_PrimNumber::REAL32 ? 'f' : 'd';
}

void omu_PrimArray::FromSequence(const omu_PrimSequence& sequence)
{
    cow_1DArray<int> dimensions;
    Kind type = omu_PrimNumber::REAL64;
    cow_String message;
    if (!getDimensionsFromSequence(sequence, dimensions, type, message)) {
        Fail("omu_PrimArray from sequence failed - dimensions. " + message);
    }
    try {
        FromDimsAndData(dimensions.Length(), dimensions.data(), nullptr, type);
    } catch (const nex_TextException& failure) {
        Fail("omu_PrimArray from sequence failed - DimsAndData. " + failure.AsString());
    }
    if (!copyValuesFromSequence(sequence, dimensions, type, m_data, message)) {
        Fail("omu_PrimArray from sequence failed - copyValues. " + message);
    }
}

/// Throws when the shape and strides lead to a byte that is not in the storage.
void omu_PrimArray::RequireInsideStorage() const
{
    int strides[MAX_DIMENSIONS];
    if (RequireBytes(LayOut(m_dimensions, ConstGetItemSize(), strides)) == 0) {
        return;
    }
    const std::int64_t size = m_storage ? static_cast<std::int64_t>(m_storage->SizeBytes()) : 0;
    std::int64_t lowest = m_storage ? m_data - m_storage->Bytes() : 0;
    std::int64_t highest = lowest + ConstGetItemSize();
    for (int i = 0; i < ConstGetNumDimensions() && lowest >= 0 && highest <= size; ++i) {
        const std::int64_t reach = std::int64_t{m_strides[i]} * (m_dimensions[i] - 1);
        (reach < 0 ? lowest : highest) += reach;
    }
    if (lowest < 0 || highest > size) {
        Fail("PrimArray strides lead outside the data");
    }
}

cow_String omu_PrimArray::TypeString() const
{
    return "omu_PrimArray";
}

cow_String omu_PrimArray::AsString(int depth) const
{
    if (depth < 0) {
        VEXCRT::_assert("PrimArray::AsString depth < 0", SOURCE, __LINE__);
    }
    cow_String text("array(");
    AppendItems(text, *this, 0, m_data);
    text += ", '";
    text.Append(m_pyType);
    text += "')";
    return text;
}

bool omu_PrimArray::operator==(const omu_Primitive& other) const
{
    if (!other.IsType('o')) {
        pnt_debugPrint() << "PrimArray. different types\n";
        return false;
    }
    return EqualsArray(static_cast<const omu_PrimArray&>(other));
}

bool omu_PrimArray::EqualsArray(const omu_PrimArray& other) const
{
    const int count = ConstGetNumDimensions();
    if (count != other.ConstGetNumDimensions()) {
        pnt_debugPrint() << "PrimArray. different numDims " << count << " and " << other.ConstGetNumDimensions()
                         << "\n";
        return false;
    }
    for (int i = 0; i < count; ++i) {
        if (m_dimensions[i] != other.m_dimensions[i]) {
            pnt_debugPrint() << "PrimArray. different dim[" << i << "] " << m_dimensions[i] << " and "
                             << other.m_dimensions[i] << "\n";
            return false;
        }
    }
    if (m_type != other.m_type) {
        pnt_debugPrint() << "PrimArray. different typeCode " << static_cast<int>(m_type) << " and "
                         << static_cast<int>(other.m_type) << "\n";
        return false;
    }
    if (m_type == omu_PrimNumber::INT32) {
        return EqualElements<std::int32_t>(*this, m_data, other, other.m_data, 0);
    }
    return m_type == omu_PrimNumber::REAL32 ? EqualElements<float>(*this, m_data, other, other.m_data, 0)
                                            : EqualElements<double>(*this, m_data, other, other.m_data, 0);
}

void omu_PrimArray::Accept(omu_PrimVisitor* visitor) const
{
    visitor->VisitArray(*this);
}

omu_Primitive* omu_PrimArray::Copy() const
{
    return new omu_PrimArray(*this);
}

std::uint32_t omu_PrimArray::DynTypeId() const
{
    return TypeId();
}

int omu_PrimArray::Length() const
{
    return m_dimensions.IsEmpty() ? 0 : m_dimensions[0];
}

const omu_Primitive* omu_PrimArray::Index(int index) const
{
    unsigned char* const data = Index2Ptr(index);
    if (ConstGetNumDimensions() > 1) {
        auto item = std::make_unique<omu_PrimArray>(*this);
        item->m_dimensions = cow_1DArray<int>(m_dimensions.begin() + 1, m_dimensions.end());
        item->m_strides = cow_1DArray<int>(m_strides.begin() + 1, m_strides.end());
        item->m_data = data;
        item->m_indexed = {};
        m_indexed = omu_PrimHolder(item.release());
    } else if (m_indexed) {
        static_cast<omu_PrimNumber&>(*m_indexed.Get()) = getPrimNumberAtPtr(data, m_type);
    } else {
        m_indexed.Emplace<omu_PrimNumber>(getPrimNumberAtPtr(data, m_type));
    }
    return m_indexed.ConstGet();
}

unsigned char* omu_PrimArray::Index2Ptr(int index) const
{
    const bool isInside = m_dimensions.IsEmpty() ? index == 0 : index >= 0 && index < m_dimensions[0];
    if (!isInside) {
        Fail("PrimArray index out of bounds");
    }
    return index == 0 ? m_data : m_data + std::ptrdiff_t{m_strides[0]} * index;
}

unsigned char* omu_PrimArray::Address(std::span<const int> indices) const
{
    cow_String message;
    if (!checkArrayIndices(static_cast<int>(indices.size()), indices.data(), m_dimensions, message)) {
        Fail(message);
    }
    unsigned char* address = m_data;
    for (int i = 0; i < m_dimensions.Length(); ++i) {
        address += std::ptrdiff_t{m_strides[i]} * indices[static_cast<std::size_t>(i)];
    }
    return address;
}

unsigned char* omu_PrimArray::AddressForWriting(std::span<const int> indices)
{
    unsigned char* const address = Address(indices);
    m_indexed = {}; // may be a view of the elements
    if (m_storage.IsUnique()) {
        return address;
    }
    cow_NoteClone<omu_PrimArrayData>();
    omu_PrimArray own(ConstGetNumDimensions(), m_dimensions.data(), m_type, nullptr);
    CopyElements(*this, m_type, own.m_data);
    *this = own;
    return Address(indices);
}

omu_PrimSequence* omu_PrimArray::Slice(int low, int high) const
{
    RequireDimension();
    const auto [begin, end] = ClampSlice(low, high, Length());
    auto slice = std::make_unique<omu_PrimArray>(*this);
    slice->m_dimensions.Set(0, end - begin);
    slice->m_data = begin < end ? Index2Ptr(begin) : m_data;
    slice->m_indexed = {};
    return slice.release();
}

omu_PrimSequence* omu_PrimArray::Repeat(int count) const
{
    RequireDimension();
    count = std::max(count, 0);
    auto repeated = NewWithLength(std::int64_t{Length()} * count, m_type);
    if (repeated->ConstGetArraySize() != 0) {
        unsigned char* to = repeated->m_data;
        for (int i = 0; i < count; ++i) {
            to = CopyElements(*this, m_type, to);
        }
    }
    return repeated.release();
}

omu_PrimSequence* omu_PrimArray::Concat(omu_PrimSequence* other) const
{
    if (other == nullptr) {
        VEXCRT::_assert("other != 0", SOURCE, __LINE__);
        return new omu_PrimArray(*this);
    }
    const omu_PrimArray second = other->IsType('o') ? static_cast<const omu_PrimArray&>(*other) : omu_PrimArray(*other);
    RequireDimension();
    second.RequireDimension();
    if (!std::equal(m_dimensions.begin() + 1, m_dimensions.end(), second.m_dimensions.begin() + 1,
                    second.m_dimensions.end())) {
        Fail("PrimArray different dimensions behind the first");
    }
    const Kind type = widestType(m_type, second.m_type);
    auto both = NewWithLength(std::int64_t{Length()} + second.Length(), type);
    CopyElements(second, type, CopyElements(*this, type, both->m_data));
    return both.release();
}

void omu_PrimArray::RequireDimension() const
{
    if (m_dimensions.IsEmpty()) {
        Fail("PrimArray without dimensions is no sequence");
    }
}

std::unique_ptr<omu_PrimArray> omu_PrimArray::NewWithLength(std::int64_t length, Kind type) const
{
    if (length > std::numeric_limits<int>::max()) {
        RequireBytes(TOO_MANY_BYTES);
    }
    cow_1DArray<int> dimensions = m_dimensions;
    dimensions.Set(0, static_cast<int>(length));
    return std::make_unique<omu_PrimArray>(dimensions.Length(), dimensions.data(), type, nullptr);
}

bool omu_PrimArray::IsContiguous() const noexcept
{
    std::int64_t step = ConstGetItemSize();
    for (int i = ConstGetNumDimensions() - 1; i >= 0; --i) {
        if (m_dimensions[i] > 1 && m_strides[i] != step) {
            return false;
        }
        step *= m_dimensions[i];
    }
    return true;
}

int omu_PrimArray::ConstGetNumElements() const noexcept
{
    int count = 1;
    for (int i = ConstGetNumDimensions() - 1; i >= 0; --i) {
        count *= m_dimensions[i];
    }
    return count;
}

int omu_PrimArray::ConstGetItemSize() const noexcept
{
    return ItemSize(m_type);
}

std::uint32_t omu_PrimArray::TypeId()
{
    return omu_TypeIdOf(omu_PrimArrayRow);
}

void* omu_PrimArray::CtorFunc(bio_Ifilter& in, void* place)
{
    return obj_Construct<omu_PrimArray>(in, place);
}

void omu_PrimArray::DtorFunc(void* object)
{
    obj_Destroy<omu_PrimArray>(object);
}

void omu_PrimArray::ReadData(bio_Ifilter& in, void* object)
{
    auto& array = *static_cast<omu_PrimArray*>(object);
    const std::uint64_t start = in.Offset();
    ReadTypeCode(in, array, "o");
    std::int32_t type = 0;
    in >> type;
    if (type < omu_PrimNumber::INT32 || type > omu_PrimNumber::REAL64) {
        in.FailAt("element type that arrays do not have", start);
    }
    cow_1DArray<int> dimensions;
    in >> dimensions;
    const int itemSize = ItemSize(static_cast<Kind>(type));
    const std::int64_t count = in.ReadCount(static_cast<std::size_t>(itemSize));
    int strides[MAX_DIMENSIONS];
    if (dimensions.Length() > MAX_DIMENSIONS || LayOut(dimensions, itemSize, strides) != count * itemSize) {
        in.FailAt("dimensions that do not fit the number of elements", start);
    }
    const auto extent = [](std::int64_t product, int dimension) { return product * std::max(dimension, 1); };
    if (count == 0 &&
        std::accumulate(dimensions.begin(), dimensions.end(), std::int64_t{1}, extent) > MAX_EMPTY_EXTENT) {
        in.FailAt("an array without elements but with too many rows", start);
    }
    cow_1DArray<unsigned char> elements;
    cow_detail::ReadItems(in, static_cast<std::uint32_t>(count * itemSize), elements);
    array.FromDimsAndData(dimensions.Length(), dimensions.data(), elements.data(), static_cast<Kind>(type));
}

void omu_PrimArray::WriteData(bio_Ofilter& out, const void* object)
{
    const auto& array = *static_cast<const omu_PrimArray*>(object);
    omu_PrimSequence::WriteData(out, object);
    out << static_cast<std::int32_t>(array.m_type) << array.m_dimensions
        << static_cast<std::uint32_t>(array.ConstGetNumElements());
    if (array.IsContiguous()) {
        out.WriteBytes(array.m_data, static_cast<std::size_t>(array.ConstGetArraySize()));
    } else {
        const auto itemSize = static_cast<std::size_t>(array.ConstGetItemSize());
        ForEachElement(array, 0, array.m_data,
                       [&](const unsigned char* element) { out.WriteBytes(element, itemSize); });
    }
}

void omu_PrimArray::PrintData(pnt_PrettyPrint& out, const void* object)
{
    const auto& array = *static_cast<const omu_PrimArray*>(object);
    out.Open("omu_PrimArray");
    omu_PrimSequence::PrintData(out, object);
    out << array.m_dimensions << array.m_strides;
    out.Field(static_cast<int>(array.m_type));
    out.Field(array.m_pyType);
    out.Field(array.AsString(0));
    out.Close();
}

Kind widestType(Kind a, Kind b) noexcept
{
    if (a == b) {
        return a;
    }
    if (a < omu_PrimNumber::INT8 || a > omu_PrimNumber::UINT32 || a == omu_PrimNumber::REAL64 ||
        b == omu_PrimNumber::REAL64) {
        return omu_PrimNumber::REAL64;
    }
    return omu_PrimNumber::IsFloating(a) || omu_PrimNumber::IsFloating(b) ? omu_PrimNumber::REAL32
                                                                          : omu_PrimNumber::INT32;
}

bool checkArrayIndices(int count, const int* indices, const cow_1DArray<int>& dimensions, cow_String& message)
{
    if (count != dimensions.Length()) {
        message = count < dimensions.Length() ? "less indices given than size of array ("
                                              : "more indices given than size of array (";
        message += cow_String(count);
        message += ", ";
        message += cow_String(dimensions.Length());
        message += ")";
        return false;
    }
    for (int i = 0; i < count; ++i) {
        if (indices[i] < 0 || indices[i] >= dimensions[i]) {
            message = "index out of range, dimension " + cow_String(i);
            return false;
        }
    }
    return true;
}

void putPrimNumberAtPtr(const omu_PrimNumber& number, Kind type, void* address)
{
    switch (type) {
    case omu_PrimNumber::INT32:
        Save(address, omu_PrimNumber(ValueOf(number)).GetInt());
        return;
    case omu_PrimNumber::REAL32:
        Save(address, static_cast<float>(ValueOf(number)));
        return;
    case omu_PrimNumber::REAL64:
        Save(address, ValueOf(number));
        return;
    case omu_PrimNumber::INT8:
    case omu_PrimNumber::INT16:
    case omu_PrimNumber::UINT32:
        break;
    }
    VEXCRT::_assert("PrimArray wrong numeric type", SOURCE, __LINE__);
}

omu_PrimNumber getPrimNumberAtPtr(const void* address, Kind type)
{
    switch (type) {
    case omu_PrimNumber::INT32:
        return omu_PrimNumber(Load<std::int32_t>(address));
    case omu_PrimNumber::REAL32:
        return omu_PrimNumber(Load<float>(address));
    case omu_PrimNumber::REAL64:
        return omu_PrimNumber(Load<double>(address));
    case omu_PrimNumber::INT8:
    case omu_PrimNumber::INT16:
    case omu_PrimNumber::UINT32:
        break;
    }
    VEXCRT::_assert("wrong numeric type", SOURCE, __LINE__);
    return omu_PrimNumber(0);
}

double getDoubleAtPtr(const void* address, Kind type)
{
    switch (type) {
    case omu_PrimNumber::INT32:
        return Load<std::int32_t>(address);
    case omu_PrimNumber::REAL32:
        return static_cast<double>(Load<float>(address));
    case omu_PrimNumber::REAL64:
        return Load<double>(address);
    case omu_PrimNumber::INT8:
    case omu_PrimNumber::INT16:
    case omu_PrimNumber::UINT32:
        break;
    }
    VEXCRT::_assert("PrimArray wrong numeric type", SOURCE, __LINE__);
    return 0;
}

int getIntAtPtr(const void* address, Kind type)
{
    return omu_PrimNumber(getDoubleAtPtr(address, type)).GetInt();
}
