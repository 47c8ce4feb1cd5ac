#pragma once

#include "VEXomu_export.h"
#include "cls_AgentListPrim.h"
#include "cls_PC.h"
#include "cls_Uid.h"
#include "cow_1DArray.h"
#include "cow_CountedHld.h"
#include "cow_String.h"

#include <concepts>
#include <cstdint>
#include <exception>

class cls_ReadVisitor;
class cls_WriteVisitor;

namespace cls_detail
{
/// The values that a persistent array and the stored list behind it may have.
template <class T>
concept ListElement = std::same_as<T, bool> || std::same_as<T, double> || std::same_as<T, float> ||
                      std::same_as<T, int> || std::same_as<T, cow_String> || std::same_as<T, std::uint32_t>;

/// What an array says when it fails, and where it says so: the words are promised for one dimension and for two.
struct ArrayTexts
{
    const char* source;
    const char* missingAgent;
    const char* constGet;
    const char* get;
    const char* append;
    const char* appendBlock;
    const char* appendBlockCount;
};
extern VEXOMU_API const ArrayTexts ARRAY_TEXTS;
} // namespace cls_detail

/// One block of an array. The members stand in the promised order, without anything before or between them.
template <class T> struct cls_ArrayPrimBuffer
{
    static constexpr int SIZE = 2048;

    std::int32_t dirty = 0; ///< 1 when elements changed since the block was loaded or last written
    T elements[SIZE]{};
};
static_assert(sizeof(cls_ArrayPrimBuffer<int>) == 8196);

/// Growable array of plain values that may live in the store: blocks of 2048 elements come into memory when they are
/// touched and go back when another one is. Until it is first stored an array has no agent and is all in memory.
///
/// Ownership:  copies share blocks until one side writes, and agent and identity for good: they are views of one stored
///             list, which keeps what was flushed last. The last copy to go deletes the agent, unless that is owned
///             elsewhere.
/// Threads:    one thread at a time, for all copies together; the identity binds them to it, see cls_Uid.
/// Complexity: ConstGet, Get, Append O(1). With an agent one block at most is in memory, and a step to another one is
///             the read of that block, and a write if the block before was changed.
/// Errors:     nex_TextException, and what the agent throws: the array then still holds all that is not stored, and the
///             call may be tried again. The destructor throws nothing: a failed write is thrown by the next commit.
/// References: what ConstGet and Get return holds until the next call on the array or a copy of it.
/// Example:    loads.Append(2.5); loads.Get(0) += 1.0; double sum = loads.ConstGet(0);
/// Avoid for:  data that is never stored; a cow_1DArray has no blocks.
template <class T> class cls_ArrayPrim : public cls_PC
{
    static_assert(cls_detail::ListElement<T>);

public:
    using Buffer = cls_ArrayPrimBuffer<T>;

    /// No element, no agent, a fresh identity.
    cls_ArrayPrim();
    cls_ArrayPrim(const cls_ArrayPrim& other);
    /// The array that the record holds; an empty one when the visitor has no record.
    explicit cls_ArrayPrim(const cls_ReadVisitor& visitor);
    cls_ArrayPrim& operator=(const cls_ArrayPrim& other);
    ~cls_ArrayPrim() override;

    /// Stores the changed blocks and ends the write. Nothing without an agent, or with one that is read-only.
    void Flush() const override;
    /// Stores the whole array in the visitor's record. An array that has an agent is in the store already: of what
    /// changed in it Flush takes care, and this writes nothing.
    virtual void DBWrite(const cls_WriteVisitor& visitor) const;
    virtual std::uint32_t DynTypeId() const;

    /// The same for every T; what the record holds tells the element type.
    static std::uint32_t TypeId() noexcept;
    /// A new array from the record, owned by the caller.
    static void* Ctor(cls_ReadVisitor& visitor);

    const cls_Uid& Uid() const noexcept { return m_uid; }
    int Size() const noexcept { return m_length; }
    /// Sets the length and nothing else: no block is made or dropped. Elements that were never set come from the agent;
    /// without one, access to a block that is not there throws.
    void SetLength(int length) noexcept;

    /// True with an agent that takes no writes: a changed block could not leave memory, nor another one come in then.
    bool IsReadOnly() const { return m_agent != nullptr && m_agent->IsReadOnly(); }

    void Append(const T& value);
    /// Stores `count` values behind the last one at once, past the blocks in memory. Needs an agent.
    void AppendBlock(const T* values, int count);

    /// The element. The index may equal the length, on purpose: it then means the free place behind the last element.
    const T& ConstGet(int index) const;
    /// As ConstGet, for writing.
    T& Get(int index);

    /// With an agent: drops every block from memory, the changed ones once they are stored, but for the one that holds
    /// the element `keep`; all of them when that is negative.
    void Prune(int keep) const;
    void Release() const { Prune(-1); }
    /// Follows a change that someone else made to the stored list: 1 when there was one, else 0. Blocks in memory are
    /// dropped as by Release.
    int Snap() const;

    /// What DBWrite does once the record is ready.
    void DBWriteBody(const cls_WriteVisitor& visitor) const;

    // For a storage engine whose writing may be undone, or whose list may go while arrays still use it.
    /// Called as the first writing ends: remembers the array as it is, all in memory, until Forget or TakeBack.
    void Remember();
    void Forget() noexcept;
    /// Makes the array what it was at Remember and leaves the agent, without a flush. Nothing if nothing is remembered.
    void TakeBack() noexcept;
    /// Brings every element into memory and leaves the agent: the array is as before it was first stored.
    void TakeIn();
    /// Stores every element through an agent of an empty list, with a flush; this array does not attach to it.
    void CopyTo(cls_AgentListPrim<T>& list) const;

protected:
    using Texts = cls_detail::ArrayTexts;

    /// The block with the element, loaded if need be; null when the index is outside 0..length. Another array may share
    /// it.
    Buffer* GetBuffer(int index, const Texts& texts = cls_detail::ARRAY_TEXTS) const;

    const T& ConstGetWith(int index, const Texts& texts) const;
    T& GetWith(int index, const Texts& texts);
    void AppendWith(const T& value, const Texts& texts);
    void AppendBlockWith(const T* values, int count, const Texts& texts);

private:
    using Agent = cls_AgentListPrim<T>;
    using Holder = cow_CountedHld<Buffer>;
    using Blocks = cow_1DArray<Holder>; // in order, null where none was made

    // The block of the last access, to which the next one mostly goes too. `readable` and `writable` are its size or 0:
    // an index up to the length that falls within may be read, or written, without further ado. `writable` is not 0 only
    // while no other array shares the block and it is marked dirty. It starts at the length at most.
    struct Current
    {
        T* elements = nullptr;
        int start = 0;
        unsigned readable = 0;
        unsigned writable = 0;

        unsigned OffsetOf(int index) const noexcept
        {
            return static_cast<unsigned>(index) - static_cast<unsigned>(start);
        }
    };

    static constexpr int NOTHING_REMEMBERED = -1;

    static int StartOf(int index) noexcept { return index & ~(Buffer::SIZE - 1); }

    const T& Readable(int index, const Texts& texts) const;
    T& Writable(int index, const Texts& texts);
    // Null where Readable or Writable throws; what they threw is then thrown by ThrowFailure. GCC keeps no sum of doubles
    // in a register across a call that may throw, even one that is never made, where something is to be destroyed.
    const T* ConstGetSlowly(int index, const Texts& texts) const noexcept;
    T* GetSlowly(int index, const Texts& texts) noexcept;
    [[noreturn]] void ThrowFailure() const;
    void AppendSlowly(T value, const Texts& texts);

    int CountFrom(int start) const noexcept;
    void SetCurrent(int start, Buffer& buffer, bool writable) const noexcept;
    Buffer* Held(int start) const noexcept;
    Buffer* PageIn(int start, int stored) const;
    Buffer* Make(int start) const;
    void StoreResident() const;
    void StoreFirst(Agent& agent) const;
    void Leave() noexcept;
    void LeaveWith(Blocks& blocks, int length) noexcept;

    // Reading brings blocks in and takes them out, and the first writing brings the agent.
    mutable Agent* m_agent = nullptr; // attached
    mutable Blocks m_blocks;          // none with an agent
    mutable Holder m_resident;        // with an agent: the block in memory, or null
    mutable int m_residentStart = 0;
    mutable int m_length = 0;
    cls_Uid m_uid = cls_Uid::AllocateUid();
    mutable Current m_current;
    mutable std::exception_ptr m_failure; // between a slow access and ThrowFailure
    Blocks m_remembered;                  // none unless `m_rememberedLength` is 0 or more
    int m_rememberedLength = NOTHING_REMEMBERED;
};

template <class T> inline const T& cls_ArrayPrim<T>::ConstGet(int index) const
{
    return ConstGetWith(index, cls_detail::ARRAY_TEXTS);
}

template <class T> inline T& cls_ArrayPrim<T>::Get(int index)
{
    return GetWith(index, cls_detail::ARRAY_TEXTS);
}

template <class T> inline void cls_ArrayPrim<T>::Append(const T& value)
{
    AppendWith(value, cls_detail::ARRAY_TEXTS);
}

template <class T> inline const T& cls_ArrayPrim<T>::ConstGetWith(int index, const Texts& texts) const
{
    const unsigned offset = m_current.OffsetOf(index);
    if (offset < m_current.readable && index <= m_length) [[likely]] {
        return m_current.elements[offset];
    }
    const T* const element = ConstGetSlowly(index, texts);
    if (element == nullptr) {
        ThrowFailure();
    }
    return *element;
}

template <class T> inline T& cls_ArrayPrim<T>::GetWith(int index, const Texts& texts)
{
    const unsigned offset = m_current.OffsetOf(index);
    if (offset < m_current.writable && index <= m_length) [[likely]] {
        return m_current.elements[offset];
    }
    T* const element = GetSlowly(index, texts);
    if (element == nullptr) {
        ThrowFailure();
    }
    return *element;
}

template <class T> inline void cls_ArrayPrim<T>::AppendWith(const T& value, const Texts& texts)
{
    const unsigned offset = m_current.OffsetOf(m_length);
    if (offset + 1 < m_current.writable) {
        m_current.elements[offset] = value;
        ++m_length;
    } else {
        AppendSlowly(value, texts);
    }
}

VEXOMU_EXTERN_TEMPLATE(cls_ArrayPrim<bool>);
VEXOMU_EXTERN_TEMPLATE(cls_ArrayPrim<double>);
VEXOMU_EXTERN_TEMPLATE(cls_ArrayPrim<float>);
VEXOMU_EXTERN_TEMPLATE(cls_ArrayPrim<int>);
VEXOMU_EXTERN_TEMPLATE(cls_ArrayPrim<cow_String>);
VEXOMU_EXTERN_TEMPLATE(cls_ArrayPrim<std::uint32_t>);
