#pragma once

#include "VEXomu_export.h"
#include "cow_ArrayCOW.h"
#include "cow_String.h"
#include "obj_Stream.h"
#include "thr_RefCount.h"
#include "utl_BlockPool.h"

#include <concepts>
#include <cstddef>
#include <cstdint>

class omu_PrimVisitor;

/// Root of every value that crosses between scripts and the kernel.
///
/// Ownership:  owned by whoever holds the pointer, and deleted through the virtual destructor; holders (omu_PrimHolder)
///             share a value until one side writes. The count of the holders is part of the value.
/// Threads:    a value is used by one thread at a time; holders of one value may live on distinct threads.
/// Complexity: allocation comes from utl_BlockPool; IsA walks up the parents in the run-time type tables.
/// Errors:     streams throw nex_TextException; nothing else here throws but std::bad_alloc.
/// The virtual operations stand in a promised order; new ones go to the end of the classes that add them.
class VEXOMU_API omu_Primitive
{
public:
    virtual ~omu_Primitive() = default;

    /// The script-level type name of the value; "primitive" here.
    virtual cow_String TypeString() const;
    /// The value as text; `depth` is the nesting depth that containers pass on to their elements.
    virtual cow_String AsString(int depth) const = 0;
    virtual bool operator==(const omu_Primitive& other) const = 0;
    virtual void Accept(omu_PrimVisitor* visitor) const = 0;
    /// A new value that the caller owns.
    virtual omu_Primitive* Copy() const = 0;
    /// The type id of the most derived class.
    virtual std::uint32_t DynTypeId() const;

    /// The coarse identity of the value: one character shared by a family of classes.
    char TypeCode() const noexcept { return m_typeCode; }
    bool IsType(char code) const noexcept { return m_typeCode == code; }
    bool operator!=(const omu_Primitive& other) const { return !(*this == other); }
    /// True when the value's class is `typeId` or derives from it: the test before every down-cast.
    bool IsA(std::uint32_t typeId) const;

    /// Levels of containers in a value, 0 for a scalar. A container that has held deeper values may answer more.
    int Nesting() const noexcept { return m_nesting; }
    /// Most levels, so that whatever walks a value can recurse and every value can be written to a stream.
    static constexpr int MAX_NESTING = 200;
    /// False for kernel objects, and for containers that have held one.
    bool HasStreamForm() const noexcept { return m_hasStreamForm; }

    static std::uint32_t TypeId();
    /// Reports an assertion and returns null: the class is abstract.
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    /// The type code.
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);

    static void* operator new(std::size_t bytes) { return utl_BlockPool::Allocate(bytes); }
    static void operator delete(void* block, std::size_t bytes) noexcept { utl_BlockPool::Free(block, bytes); }
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void*, void*) noexcept {}

    // What cow_ArrayCOW needs of an object that carries its own count.
    void CowRaise() const noexcept { m_holders.Raise(); }
    bool CowLower() const noexcept { return m_holders.Lower(); }
    bool CowIsUnique() const noexcept { return m_holders.IsUnique(); }

protected:
    explicit omu_Primitive(char typeCode) noexcept
        : m_typeCode(typeCode), m_mark(typeCode == 'n' ? 0 : 1), m_nesting(typeCode == '(' || typeCode == '{' ? 1 : 0),
          m_hasStreamForm(typeCode != '<')
    {}
    /// Reads nothing: the data follows through ReadData. The class gives its own (default) code.
    omu_Primitive(bio_Ifilter&, char typeCode) noexcept : omu_Primitive(typeCode) {}
    omu_Primitive(const omu_Primitive& other) noexcept
        : m_typeCode(other.m_typeCode), m_mark(other.m_mark), m_nesting(other.m_nesting),
          m_hasStreamForm(other.m_hasStreamForm)
    {}
    /// Copies what describes the value; holders stay with the object that is assigned to.
    omu_Primitive& operator=(const omu_Primitive& other) noexcept
    {
        m_typeCode = other.m_typeCode;
        m_nesting = other.m_nesting;
        m_hasStreamForm = other.m_hasStreamForm;
        return *this;
    }

    /// Reads the root's type code and throws unless it is one of the characters of `allowedCodes`.
    static void ReadTypeCode(bio_Ifilter& in, omu_Primitive& value, const char* allowedCodes);

    /// What a container does before it takes `item`; throws nex_TextException when that is nested too deep.
    void NoteItem(const omu_Primitive& item)
    {
        // Most items are scalars, of which a container has nothing to note.
        if (item.m_nesting != 0 || !item.m_hasStreamForm || item.IsType('w')) {
            NoteContainer(item);
        }
    }
    /// What a container does before its first byte goes into a stream; throws nex_TextException.
    static void RequireStreamForm(const omu_Primitive& value);

private:
    friend class omu_PrimNone;

    void NoteContainer(const omu_Primitive& item);

    char m_typeCode;
    // The byte that none values compare: 0 in them, 1 in every other value, so that nothing else equals none.
    unsigned char m_mark;
    std::uint8_t m_nesting;
    bool m_hasStreamForm;
    mutable thr_RefCount m_holders{0};
};

/// Shares a value until one side writes; the element of tuples and dictionaries. Defined in omu_PrimHolder.h.
template <> class cow_ArrayCOW<omu_Primitive, cow_Virtual<omu_Primitive>>;
using omu_PrimHolder = cow_ArrayCOW<omu_Primitive, cow_Virtual<omu_Primitive>>;

/// Values of the same or of different classes compare through the virtual operator; without this exact match the two
/// ways to call it, forwards and reversed, would be ambiguous.
template <std::derived_from<omu_Primitive> A, std::derived_from<omu_Primitive> B>
    requires(!std::same_as<A, omu_Primitive> || !std::same_as<B, omu_Primitive>)
bool operator==(const A& left, const B& right)
{
    return static_cast<const omu_Primitive&>(left).operator==(static_cast<const omu_Primitive&>(right));
}
