#pragma once

#include "cow_1DArray.h"
#include "cow_CountedHld.h"
#include "omu_PrimArrayData.h"
#include "omu_PrimHolder.h"
#include "omu_PrimNumber.h"
#include "omu_PrimSequence.h"

#include <array>
#include <concepts>
#include <cstdint>
#include <memory>
#include <span>

/// The element type that holds both: floats win over integers, and two different integer kinds give INT32.
VEXOMU_API omu_PrimNumber::DataTypeEnm widestType(omu_PrimNumber::DataTypeEnm a,
                                                  omu_PrimNumber::DataTypeEnm b) noexcept;

/// True when there is one index for each dimension, and each is inside; otherwise `message` says what is wrong.
VEXOMU_API bool checkArrayIndices(int count, const int* indices, const cow_1DArray<int>& dimensions,
                                  cow_String& message);

// One element of INT32, REAL32 or REAL64 at an address, which need not be aligned; any other type is reported as an
// assertion, writes nothing and reads as 0. A number that the type does not hold becomes the nearest that it holds.
VEXOMU_API void putPrimNumberAtPtr(const omu_PrimNumber& number, omu_PrimNumber::DataTypeEnm type, void* address);
VEXOMU_API omu_PrimNumber getPrimNumberAtPtr(const void* address, omu_PrimNumber::DataTypeEnm type);
VEXOMU_API double getDoubleAtPtr(const void* address, omu_PrimNumber::DataTypeEnm type);
VEXOMU_API int getIntAtPtr(const void* address, omu_PrimNumber::DataTypeEnm type);

/// The shape and element type of numbers in nested sequences; false, with the fault in `message`, when there is none.
/// The type is INT32 for all integer kinds and REAL64 without any number.
VEXOMU_API bool getDimensionsFromSequence(const omu_PrimSequence& sequence, cow_1DArray<int>& dimensions,
                                          omu_PrimNumber::DataTypeEnm& type, cow_String& message);

/// Writes the numbers row by row to `address` as elements of `type`; false, with the fault in `message`, when the
/// sequence has not the shape `dimensions`, which is reported as an assertion, or when a number does not fit.
VEXOMU_API bool copyValuesFromSequence(const omu_PrimSequence& sequence, std::span<const int> dimensions,
                                       omu_PrimNumber::DataTypeEnm type, void* address, cow_String& message);

template <class T>
concept omu_ArrayIndex = std::same_as<T, int>;

/// The script's numeric array: a block of 32-bit integers, 32-bit or 64-bit floats with a shape. It is a sequence along
/// its first dimension, of arrays with one dimension less, or of numbers.
///
/// Ownership:  copies, slices and what Index gives share the elements until one side writes; each stays valid without
///             the others.
/// Threads:    one thread at a time; distinct copies may live on distinct threads.
/// Complexity: copy, Slice, Index and reading an element O(dimensions); Repeat, Concat, comparison, text O(elements);
///             the first write to shared elements O(elements).
/// Errors:     nex_TextException for impossible shapes, for indices out of bounds, for a sequence that is no array, and
///             for more than MAX_BYTES.
/// References: what Index() returns dies with the array or its next Index() or SetItem(); so does ConstGetData().
/// Example:    const int dimensions[] = {2, 3}; omu_PrimArray matrix(2, dimensions, omu_PrimNumber::REAL64, nullptr);
///             matrix.SetItem(omu_PrimNumber(1.5), 0, 2);
/// Avoid for:  values of mixed kinds; see omu_PrimTuple.
class VEXOMU_API omu_PrimArray : public omu_PrimSequence
{
public:
    /// Most bytes of elements: strides are 32-bit on every system.
    static constexpr std::int64_t MAX_BYTES = 0x7FFFFFFF;

    /// One empty dimension of REAL64.
    omu_PrimArray();
    /// Elements of `type`, row-major, copied from `data`; zeros when `data` is null.
    omu_PrimArray(int dimensionCount, const int* dimensions, omu_PrimNumber::DataTypeEnm type, const void* data);
    /// REAL64 elements copied from `values`; zeros when null.
    omu_PrimArray(int dimensionCount, const int* dimensions, const double* values);
    /// A view of `storage`: `data` is the first element's place in it and the strides are in bytes. Strides that lead
    /// outside the storage throw; a `pyType` that does not stand for `type` is reported as an assertion.
    omu_PrimArray(int dimensionCount, const int* dimensions, const int* strides, void* data, char pyType,
                  omu_PrimNumber::DataTypeEnm type, const cow_CountedHld<omu_PrimArrayData>& storage);
    /// From numbers in sequences nested to equal lengths: ((1, 2), (3, 4)). The type is the widest of the numbers met.
    explicit omu_PrimArray(const omu_PrimSequence& sequence);
    explicit omu_PrimArray(bio_Ifilter& in);
    omu_PrimArray(const omu_PrimArray&) = default;
    omu_PrimArray& operator=(const omu_PrimArray&) = default;

    /// "omu_PrimArray": promised, and it must stay.
    cow_String TypeString() const override;
    /// array([[1, 2], [3, 4]], 'i')
    cow_String AsString(int depth) const override;
    /// Same dimensions, type and elements; the first difference is written to the debugging text.
    bool operator==(const omu_Primitive& other) const override;
    void Accept(omu_PrimVisitor* visitor) const override;
    omu_Primitive* Copy() const override;
    std::uint32_t DynTypeId() const override;

    /// The first dimension; 0 without dimensions.
    int Length() const override;
    /// The number or sub-array at `index`; an array without dimensions has one number, at 0. Throws out of bounds.
    const omu_Primitive* Index(int index) const override;
    // Along the first dimension; an array without one throws. Slices share the elements.
    omu_PrimSequence* Slice(int low, int high) const override;
    omu_PrimSequence* Repeat(int count) const override;
    /// Of two types the wider one; the other dimensions must be equal. `other` may be any sequence of numbers.
    omu_PrimSequence* Concat(omu_PrimSequence* other) const override;

    int ConstGetNumDimensions() const noexcept { return m_dimensions.Length(); }
    /// `which` counts from 0 and is not checked.
    int ConstGetDimension(int which) const { return m_dimensions[which]; }
    /// In bytes; `which` is not checked.
    int ConstGetStride(int which) const { return m_strides[which]; }
    /// True when the elements follow one another row by row, as they do in all arrays but views made with strides.
    bool IsContiguous() const noexcept;
    omu_PrimNumber::DataTypeEnm ConstGetPrimNumberType() const noexcept { return m_type; }
    /// The first element; the others are where the strides lead.
    const void* ConstGetData() const noexcept { return m_data; }
    /// 'i', 'f' or 'd'.
    char ConstGetPyType() const noexcept { return m_pyType; }
    int ConstGetNumElements() const noexcept;
    /// Bytes of all elements.
    int ConstGetArraySize() const noexcept { return ConstGetNumElements() * ConstGetItemSize(); }
    int ConstGetItemSize() const noexcept;

    // One index for each dimension, four at most; nex_TextException for more, fewer, or one out of range.
    template <omu_ArrayIndex... Indices>
        requires(sizeof...(Indices) <= 4)
    void SetItem(const omu_PrimNumber& number, Indices... indices)
    {
        const std::array<int, sizeof...(Indices)> all{indices...};
        putPrimNumberAtPtr(number, m_type, AddressForWriting(all));
    }
    template <omu_ArrayIndex... Indices>
        requires(sizeof...(Indices) <= 4)
    omu_PrimNumber ConstGetItem(Indices... indices) const
    {
        const std::array<int, sizeof...(Indices)> all{indices...};
        return getPrimNumberAtPtr(Address(all), m_type);
    }
    template <omu_ArrayIndex... Indices>
        requires(sizeof...(Indices) <= 4)
    double ConstGetDouble(Indices... indices) const
    {
        const std::array<int, sizeof...(Indices)> all{indices...};
        return getDoubleAtPtr(Address(all), m_type);
    }
    template <omu_ArrayIndex... Indices>
        requires(sizeof...(Indices) <= 4)
    int ConstGetInt(Indices... indices) const
    {
        const std::array<int, sizeof...(Indices)> all{indices...};
        return getIntAtPtr(Address(all), m_type);
    }

    static std::uint32_t TypeId();
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    /// Type code, element type, dimensions, element count, elements row by row.
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);

private:
    /// False, and nothing changes, for a negative number of dimensions, which is reported as an assertion.
    bool FromDimsAndData(int dimensionCount, const int* dimensions, const void* data, omu_PrimNumber::DataTypeEnm type);
    void FromSequence(const omu_PrimSequence& sequence);
    /// The character that stands for the element type.
    void SetPyType() noexcept;
    void RequireInsideStorage() const;
    void RequireDimension() const;
    /// The place of the item at `index` along the first dimension; throws out of bounds.
    unsigned char* Index2Ptr(int index) const;
    unsigned char* Address(std::span<const int> indices) const;
    /// The same after the elements were made this array's own.
    unsigned char* AddressForWriting(std::span<const int> indices);
    bool EqualsArray(const omu_PrimArray& other) const;
    /// Zeros of `type`, with `length` as the first dimension and the others as here.
    std::unique_ptr<omu_PrimArray> NewWithLength(std::int64_t length, omu_PrimNumber::DataTypeEnm type) const;

    // Invariants: as many strides as dimensions; every element lies inside the storage; m_type is INT32, REAL32 or
    // REAL64, and m_pyType stands for it.
    cow_1DArray<int> m_dimensions;
    cow_1DArray<int> m_strides;      // in bytes
    unsigned char* m_data = nullptr; // in m_storage
    omu_PrimNumber::DataTypeEnm m_type = omu_PrimNumber::REAL64;
    char m_pyType = 'd';
    cow_CountedHld<omu_PrimArrayData> m_storage;
    mutable omu_PrimHolder m_indexed; // what Index() gave last
};
