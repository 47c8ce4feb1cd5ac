#pragma once

#include "cow_1DArray.h"
#include "cow_1DArrayList.h"
#include "cow_2DArray.h"
#include "cow_List.h"
#include "cow_Map.h"
#include "omu_PrimHolder.h"
#include "omu_PrimSequence.h"

#include <string>
#include <string_view>

class omi_complex;
class omu_InterfaceObj;
class omu_PrimArray;
class omu_PrimEnumBase;
class omu_PrimExpr;
class omu_PrimNone;
class omu_PrimPath;
class omu_PrimType;
class utl_FilePath;
template <class K> class omu_PrimDictionary;

/// A fixed number of script values: the script's tuple, and the record through which every call's values travel. Filled
/// once by Put, then read any number of times, each reading bracketed by Begin and End.
///
/// Ownership:  owns its items through copy-on-write holders; copies share them until one side writes.
/// Threads:    one thread at a time; distinct copies may live on distinct threads.
/// Complexity: Put, Get, Index O(1) for scalars, container Gets O(items); copy O(1); Slice, Repeat, Concat O(items).
/// Errors:     Put and Get never throw an argument error: the first failed Get is recorded and End throws it.
///             Putting or indexing past the end is an assertion, and the call does nothing or returns null.
/// References: what Index() returns dies with the tuple or the next Put to that slot.
/// Example:    tuple.Begin(); tuple.Get(width); tuple.Optional(); tuple.Get(name); tuple.End("setWidth");
/// Avoid for:  large numeric data; an omu_PrimArray holds it without boxing.
class VEXOMU_API omu_PrimTuple : public omu_PrimSequence
{
public:
    explicit omu_PrimTuple(int size = 0);
    /// One number for each element of the first dimension (a nested tuple for each row of a matrix).
    explicit omu_PrimTuple(const omu_PrimArray& array);
    /// One string for each text.
    explicit omu_PrimTuple(const cow_List<cow_String>& texts);
    explicit omu_PrimTuple(bio_Ifilter& in);
    omu_PrimTuple(const omu_PrimTuple&) = default;
    omu_PrimTuple& operator=(const omu_PrimTuple&) = default;
    ~omu_PrimTuple() override;

    /// "tuple".
    cow_String TypeString() const override;
    /// As the script language writes it: (1, 'a') or (1,); a list [1, 'a'].
    cow_String AsString(int depth) const override;
    /// Same class of sequence (tuple or list), same length, equal items in order.
    bool operator==(const omu_Primitive& other) const override;
    void Accept(omu_PrimVisitor* visitor) const override;
    omu_Primitive* Copy() const override;
    std::uint32_t DynTypeId() const override;

    int Length() const override;
    /// The item; null for a slot not filled. Outside the tuple an assertion is reported and the result is null.
    const omu_Primitive* Index(int index) const override;
    omu_PrimSequence* Slice(int low, int high) const override;
    omu_PrimSequence* Repeat(int count) const override;
    omu_PrimSequence* Concat(omu_PrimSequence* other) const override;

    // Each Put fills the next slot. The pointer forms take ownership, also when the tuple is full.
    virtual void Put(const cow_1DArray<int>& values);
    virtual void Put(const cow_List<cow_String>& values);
    virtual void Put(const omu_PrimType& value);
    virtual void Put(const omu_PrimNone& value);
    virtual void Put(const omu_PrimEnumBase& value);
    virtual void Put(omu_Primitive* value);
    virtual void Put(omu_InterfaceObj* value);
    virtual void Put(const omu_PrimDictionary<cow_String>& value);
    virtual void Put(const omu_PrimDictionary<int>& value);
    virtual void Put(const omu_PrimArray& value);
    virtual void Put(const omu_PrimTuple& value);
    virtual void Put(const omu_PrimPath& value);
    virtual void Put(const omu_PrimExpr& value);
    virtual void Put(float value);
    virtual void Put(double value);
    virtual void Put(const utl_FilePath& value);
    virtual void Put(const omi_complex& value);
    virtual void Put(const cow_String& value);
    virtual void Put(unsigned int value);
    virtual void Put(int value);
    virtual void Put(short value);
    virtual void Put(char value);
    void Put(omu_PrimHolder&& value);
    void Put(const omu_PrimHolder& value) { Put(omu_PrimHolder(value)); }

    // Each Get reads the next slot into the target when it fits, and otherwise leaves the target as it is and records
    // the failure. An interface object stays owned by the tuple; the result is `prototype` when there is none.
    virtual const omu_InterfaceObj* Get(const char* typeName, const omu_InterfaceObj* prototype);
    virtual void Get(cow_Map<cow_String, float>& values);
    virtual void Get(cow_2DArray<cow_String>& values);
    virtual void Get(cow_2DArray<double>& values);
    virtual void Get(cow_1DArrayList<cow_String, cow_String>& values);
    virtual void Get(cow_1DArrayList<int, int>& values);
    virtual void Get(cow_1DArrayList<float, float>& values);
    virtual void Get(cow_1DArrayList<double, double>& values);
    virtual void Get(cow_1DArray<int>& values);
    virtual void Get(cow_List<cow_String>& values);
    virtual void Get(cow_List<float>& values);
    virtual void Get(cow_List<int>& values);
    virtual void Get(omu_PrimType& value);
    virtual void Get(omu_PrimNone& value);
    virtual void Get(omu_PrimArray& value);
    virtual void Get(omu_PrimEnumBase& value);
    virtual void Get(omu_PrimDictionary<cow_String>& value);
    virtual void Get(omu_PrimDictionary<int>& value);
    virtual void Get(omu_PrimTuple& value);
    virtual void Get(omu_PrimPath& value);
    virtual void Get(utl_FilePath& value);
    virtual void Get(omi_complex& value);
    virtual void Get(cow_String& value);
    virtual void Get(double& value);
    virtual void Get(float& value);
    virtual void Get(unsigned int& value);
    virtual void Get(int& value);
    virtual void Get(short& value);
    virtual void Get(char& value);
    virtual void Get(bool& value);

    /// Starts a reading: all counters, marks and recorded names are reset.
    virtual void Begin();
    /// Ends a reading: throws the recorded failure, else the wrong count; an empty `methodName` stands for the default
    /// name. Throws omu_ArgTypeErrorException or omu_ArgNumberErrorException.
    virtual void End(cow_String methodName);

    /// The parameters from here on need not be supplied.
    void Optional() noexcept { m_required = 0; }
    /// Undoes the Get just made when it failed, and says so; the caller then tries another type.
    bool Alternative();
    /// True when End would throw for the state so far.
    bool Error() const;
    /// The item at `index`; outside the tuple an assertion is reported and the result is an empty holder.
    const omu_PrimHolder& operator[](int index) const;
    // The items for iteration, empty holders for slots not filled.
    const omu_PrimHolder* begin() const noexcept { return m_items.data(); }
    const omu_PrimHolder* end() const noexcept { return m_items.data() + m_size; }

    // The whole tuple as a container; omu_GenericTypeErrorException when an item does not fit. Integers are INT32,
    // floats any number, strings strings; the rows of a 2-D sequence have equal length; a map is a sequence of
    // (string, number) pairs.
    cow_List<int> AsListInt() const;
    cow_List<float> AsListFloat() const;
    cow_List<cow_String> AsListString() const;
    cow_1DArrayList<int, int> AsArrayInt() const;
    cow_1DArrayList<float, float> AsArrayFloat() const;
    cow_1DArrayList<double, double> AsArrayDouble() const;
    cow_1DArrayList<cow_String, cow_String> AsArrayString() const;
    cow_2DArray<double> As2DArrayDouble() const;
    cow_2DArray<cow_String> As2DArrayString() const;
    cow_Map<cow_String, float> AsMapString2Float() const;
    cow_1DArray<int> As1DArrayInt() const;

    static std::uint32_t TypeId();
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    /// Type code, size, the items as object pointers, default name.
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);

protected:
    bool CountError() const noexcept { return m_size < m_minimum || m_size > m_gets; }
    /// Records that the item at the cursor is not what was wanted.
    void SetTypeError(std::string_view expected);
    void IncrementCursor() noexcept
    {
        ++m_cursor;
        ++m_gets;
        m_minimum += m_required;
    }
    void ResetReading() noexcept
    {
        m_cursor = 0;
        m_minimum = 0;
        m_required = 1;
        m_typeErrorPosition = 0;
        m_gets = 0;
        m_actualType.Clear();
        m_expectedType.Clear();
    }
    void SetDefaultName(const cow_String& name) { m_defaultName = name; }

    // What every Get does: test the item at the cursor and convert it, record a mismatch, advance. Without an expected
    // name it is the one that the tuple has for the type. Defined in omu_Convert_detail.h.
    template <class T> void FetchPositional(T& value);
    template <class T> void FetchPositional(T& value, const char* expected);

    /// The item at the cursor, none for a slot not filled; null when nothing is to be tested.
    const omu_Primitive* ItemToTest() const noexcept
    {
        return m_cursor < m_size && m_typeErrorPosition == 0 ? &ItemOrNone(m_cursor) : nullptr;
    }
    /// Takes the value (may be null) for the next slot; reports an assertion when there is none.
    void Store(omu_Primitive* value);

    friend void omu_AppendText(std::string& text, const omu_Primitive& value, int depth);
    /// Appends the items' text between the brackets of the class.
    void AppendItems(std::string& text, int depth) const;
    // What tuples and lists do alike, with a result of either class. Defined in omu_PrimTuple_detail.h.
    template <class Sequence> Sequence* SliceAs(int low, int high) const;
    template <class Sequence> Sequence* RepeatAs(int count) const;
    template <class Sequence> Sequence* ConcatAs(const omu_PrimSequence* other) const;

    // The marshalling state; omu_Arguments adds keyword values to it.
    int m_cursor = 0;            // next slot to put or get
    int m_size = 0;              // slots, fixed at construction
    int m_gets = 0;              // made so far: the most that may be supplied
    int m_typeErrorPosition = 0; // one more than the cursor of the first failed Get; 0: none failed
    int m_minimum = 0;           // Gets made before Optional()
    int m_required = 1;          // what a Get adds to the minimum: 0 after Optional()
    cow_String m_actualType;     // of the offending item
    cow_String m_expectedType;   // what the failed Get wanted
    // Invariant: m_size slots; a slot not filled is a null holder.
    cow_1DArray<omu_PrimHolder> m_items;
    cow_String m_defaultName;

private:
    /// The item, or a none value for a slot not filled; `index` is not checked.
    const omu_Primitive& ItemOrNone(int index) const noexcept;
    /// The slot at the cursor, for writing; null, reported as an assertion, when there is none.
    omu_PrimHolder* NextSlot();
    /// The same when that slot is not filled and only this tuple has it; else null, and nothing is reported.
    omu_PrimHolder* NextFreshSlot() noexcept;
    /// Makes the value in the next slot.
    template <omu_HeldInPlace V, class... Args> void Emplace(const Args&... args);
    void PutCopy(const omu_Primitive* item);
};
