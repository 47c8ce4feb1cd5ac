#include "cls_ArrayPrim.h"

#include "VEXCRT.h"
#include "cls_CollectionType.h"
#include "cls_Collections_detail.h"
#include "cls_Module.h"
#include "cls_ReadVisitor.h"
#include "cls_WriteVisitor.h"
#include "nex_TextException.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

const cls_detail::ArrayTexts cls_detail::ARRAY_TEXTS{
    .source = "source/include/cls_ArrayPrim",
    .missingAgent = "In cls_ArrayPrim::GetBuffer() Missing agent.",
    .constGet = "In cls_ArrayPrim::ConstGet() Index out of range.",
    .get = "In cls_ArrayPrim::Get() Index out of range.",
    .append = "In cls_ArrayPrim::Append() Length out of range.",
    .appendBlock = "cls_ArrayPrim::AppendBlock: Collection must be associated with a database for this method.",
    .appendBlockCount = "cls_ArrayPrim::AppendBlock: Count out of range."};

namespace
{
constexpr int MAX_LENGTH = std::numeric_limits<int>::max();

[[noreturn]] void Fail(const cls_detail::ArrayTexts& texts, const char* text, int line)
{
    nex_TextException(text).Throw(texts.source, line);
}

/// An agent that no array is attached to yet.
template <class T> struct AgentDeleter
{
    void operator()(cls_AgentListPrim<T>* agent) const noexcept
    {
        if (!agent->IsOwnedElsewhere()) {
            delete agent;
        }
    }
};
template <class T> using AgentPtr = std::unique_ptr<cls_AgentListPrim<T>, AgentDeleter<T>>;

template <class T, class Memento> AgentPtr<T> MakeAgent(Memento* record, const char* missing, int line)
{
    AgentPtr<T> agent(record != nullptr ? cls_detail::MakeListAgent<T>(*record) : nullptr);
    if (!agent) {
        Fail(cls_detail::ARRAY_TEXTS, missing, line);
    }
    return agent;
}
} // namespace

template <class T> cls_ArrayPrim<T>::cls_ArrayPrim() = default;

template <class T>
cls_ArrayPrim<T>::cls_ArrayPrim(const cls_ArrayPrim& other)
    : cls_PC(other), m_agent(other.m_agent), m_blocks(other.m_blocks), m_resident(other.m_resident),
      m_residentStart(other.m_residentStart), m_length(other.m_length), m_uid(other.m_uid),
      m_remembered(other.m_remembered), m_rememberedLength(other.m_rememberedLength)
{
    other.m_current.writable = 0;
    if (m_agent != nullptr) {
        m_agent->Attach();
        m_agent->Register(*this);
    }
}

template <class T> cls_ArrayPrim<T>::cls_ArrayPrim(const cls_ReadVisitor& visitor) : cls_ArrayPrim()
{
    if (visitor.Memento() != nullptr) {
        AgentPtr<T> agent =
            MakeAgent<T>(visitor.Memento(), "In cls_ArrayPrim::cls_ArrayPrim() Missing agent.", __LINE__);
        m_length = agent->Size();
        m_uid = visitor.GetUid();
        agent->Attach();
        m_agent = agent.release();
        m_agent->Register(*this);
    }
}

template <class T> cls_ArrayPrim<T>& cls_ArrayPrim<T>::operator=(const cls_ArrayPrim& other)
{
    if (this != &other) {
        if (other.m_agent != nullptr) {
            other.m_agent->Attach(); // before the own one is left: it may be the same, and would go
        }
        Leave();
        m_agent = other.m_agent;
        m_blocks = other.m_blocks;
        m_resident = other.m_resident;
        m_residentStart = other.m_residentStart;
        m_length = other.m_length;
        m_uid = other.m_uid;
        m_remembered = other.m_remembered;
        m_rememberedLength = other.m_rememberedLength;
        m_current = Current();
        other.m_current.writable = 0;
        if (m_agent != nullptr) {
            m_agent->Register(*this);
        }
    }
    return *this;
}

template <class T> cls_ArrayPrim<T>::~cls_ArrayPrim()
{
    Leave();
}

template <class T> void cls_ArrayPrim<T>::Leave() noexcept
{
    if (m_agent == nullptr) {
        return;
    }
    m_agent->Detach(*this);
    if (!m_agent->IsOwnedElsewhere()) {
        try {
            Flush();
        } catch (...) {
            VEXCRT::_assert("an agent keeps the failed writes of an array that left it", "source/include/cls_ArrayPrim",
                            __LINE__);
        }
        delete m_agent;
    }
    m_agent = nullptr;
    Unlink();
}

template <class T> void cls_ArrayPrim<T>::Remember()
{
    m_remembered = m_blocks;
    m_rememberedLength = m_length;
}

template <class T> void cls_ArrayPrim<T>::Forget() noexcept
{
    m_remembered = Blocks();
    m_rememberedLength = NOTHING_REMEMBERED;
}

template <class T> void cls_ArrayPrim<T>::TakeBack() noexcept
{
    if (m_agent != nullptr && m_rememberedLength != NOTHING_REMEMBERED) {
        LeaveWith(m_remembered, m_rememberedLength);
    }
}

template <class T> void cls_ArrayPrim<T>::TakeIn()
{
    if (m_agent == nullptr) {
        return;
    }
    Blocks blocks(m_length / Buffer::SIZE + 1);
    for (std::int64_t next = 0; next < m_length; next += Buffer::SIZE) {
        const int start = static_cast<int>(next);
        Holder block = m_residentStart == start ? m_resident : Holder();
        if (!block) {
            block = Holder::Make();
            m_agent->ReadRange(start, CountFrom(start), block->elements);
        }
        blocks.Set(start / Buffer::SIZE, std::move(block));
    }
    LeaveWith(blocks, m_length);
}

template <class T> void cls_ArrayPrim<T>::CopyTo(Agent& list) const
{
    const Holder scratch = Holder::Make();
    for (std::int64_t next = 0; next < m_length; next += Buffer::SIZE) {
        const int start = static_cast<int>(next);
        const Buffer* const held = Held(start);
        if (held == nullptr) {
            m_agent->ReadRange(start, CountFrom(start), scratch->elements);
        }
        list.WriteRange(start, CountFrom(start), (held != nullptr ? held : scratch.get())->elements);
    }
    list.EndWrite();
}

/// Leaves the agent, without a flush, as an array that is in memory.
template <class T> void cls_ArrayPrim<T>::LeaveWith(Blocks& blocks, int length) noexcept
{
    m_blocks = std::move(blocks);
    m_resident = Holder();
    m_length = length;
    m_current = Current();
    Forget();
    const AgentPtr<T> agent(std::exchange(m_agent, nullptr)); // without which Flush does nothing
    agent->Detach(*this);
    Unlink();
}

template <class T> std::uint32_t cls_ArrayPrim<T>::TypeId() noexcept
{
    return cls_TypeIdOf(cls_ARRAY_PRIM_ROW);
}

template <class T> std::uint32_t cls_ArrayPrim<T>::DynTypeId() const
{
    return TypeId();
}

template <class T> void* cls_ArrayPrim<T>::Ctor(cls_ReadVisitor& visitor)
{
    return new cls_ArrayPrim(visitor);
}

template <class T> void cls_ArrayPrim<T>::Flush() const
{
    if (m_agent == nullptr || m_agent->IsReadOnly()) {
        return;
    }
    StoreResident();
    m_agent->EndWrite();
}

template <class T> void cls_ArrayPrim<T>::DBWrite(const cls_WriteVisitor& visitor) const
{
    if (visitor.StartWrite(TypeId(), m_uid) != 0) {
        visitor.CheckCollectionType(cls_CollectionTypeFix(cls_COLLECTION_ARRAY, static_cast<T*>(nullptr)));
        DBWriteBody(visitor);
    }
}

template <class T> void cls_ArrayPrim<T>::DBWriteBody(const cls_WriteVisitor& visitor) const
{
    if (m_agent != nullptr) {
        return;
    }
    AgentPtr<T> agent = MakeAgent<T>(visitor.Memento(), "cls_ArrayPrim::DBWrite: Missing agent.", __LINE__);
    cls_ArrayPrim& self = const_cast<cls_ArrayPrim&>(*this); // flushing is all the agent may do, and that is const
    agent->Attach();
    agent->Register(self);
    try {
        StoreFirst(*agent);
    } catch (...) {
        m_agent = nullptr; // everything is still here, for another try
        m_resident = Holder();
        agent->Detach(self);
        self.Unlink();
        throw;
    }
    agent.release();
    m_blocks = Blocks();
    m_current = Current();
}

/// Stores every block, also those that a copy of the array marked as stored - in its own list - and keeps them all. The
/// one with the free place goes last, as the resident one.
template <class T> void cls_ArrayPrim<T>::StoreFirst(Agent& agent) const
{
    if (agent.Size() != 0 && m_length > 0) {
        Fail(cls_detail::ARRAY_TEXTS, "cls_ArrayPrim::DBWrite: Index conflicts(s) in list.", __LINE__);
    }
    m_agent = &agent;
    for (int i = 0; i < m_blocks.Length(); ++i) {
        const int start = i * Buffer::SIZE;
        if (const Holder& block = m_blocks[i]; block && start == StartOf(m_length)) {
            block->dirty = 1;
            m_resident = block;
            m_residentStart = start;
        } else if (const int count = CountFrom(start); block && count > 0) {
            agent.WriteRange(start, count, block->elements);
        }
    }
    Flush();
}

template <class T> void cls_ArrayPrim<T>::SetLength(int length) noexcept
{
    m_length = length;
    m_current = Current();
}

// By value: it may be an element of a block that now goes, and what has an address keeps no register on the usual way.
template <class T> void cls_ArrayPrim<T>::AppendSlowly(T value, const Texts& texts)
{
    if (m_length == MAX_LENGTH) {
        Fail(texts, texts.append, __LINE__);
    }
    Writable(m_length, texts) = std::move(value);
    ++m_length;
}

template <class T> void cls_ArrayPrim<T>::AppendBlock(const T* values, int count)
{
    AppendBlockWith(values, count, cls_detail::ARRAY_TEXTS);
}

template <class T> void cls_ArrayPrim<T>::AppendBlockWith(const T* values, int count, const Texts& texts)
{
    if (m_agent == nullptr) {
        Fail(texts, texts.appendBlock, __LINE__);
    }
    if (count < 0 || m_length < 0 || count > MAX_LENGTH - m_length) {
        Fail(texts, texts.appendBlockCount, __LINE__);
    }
    Flush();
    if (count != 0) {
        m_agent->WriteRange(m_length, count, values);
    }
    Flush();
    if (m_residentStart == StartOf(m_length)) {
        m_resident = Holder(); // it lacks what was just appended, and must never be stored over that
    }
    m_length += count;
    m_current = Current();
}

template <class T> const T& cls_ArrayPrim<T>::Readable(int index, const Texts& texts) const
{
    Buffer* const buffer = GetBuffer(index, texts);
    if (buffer == nullptr) {
        Fail(texts, texts.constGet, __LINE__);
    }
    SetCurrent(StartOf(index), *buffer, /*writable=*/false);
    return buffer->elements[index - StartOf(index)];
}

template <class T> T& cls_ArrayPrim<T>::Writable(int index, const Texts& texts)
{
    if (GetBuffer(index, texts) == nullptr) {
        Fail(texts, texts.get, __LINE__);
    }
    Holder& held = m_agent != nullptr ? m_resident : m_blocks.Get(index / Buffer::SIZE);
    if (!held.IsUnique()) {
        held = Holder::Make(*held);
    }
    held->dirty = 1;
    SetCurrent(StartOf(index), *held, /*writable=*/true);
    return held->elements[index - StartOf(index)];
}

template <class T> const T* cls_ArrayPrim<T>::ConstGetSlowly(int index, const Texts& texts) const noexcept
try {
    return &Readable(index, texts);
} catch (...) {
    m_failure = std::current_exception();
    return nullptr;
}

template <class T> T* cls_ArrayPrim<T>::GetSlowly(int index, const Texts& texts) noexcept
try {
    return &Writable(index, texts);
} catch (...) {
    m_failure = std::current_exception();
    return nullptr;
}

template <class T> void cls_ArrayPrim<T>::ThrowFailure() const
{
    std::rethrow_exception(std::exchange(m_failure, nullptr));
}

template <class T> auto cls_ArrayPrim<T>::GetBuffer(int index, const Texts& texts) const -> Buffer*
{
    if (index < 0 || index > m_length) {
        return nullptr;
    }
    const int start = StartOf(index);
    if (Buffer* const held = Held(start)) {
        return held;
    }
    const bool isStored = index != start || index != m_length;
    if (m_agent != nullptr) {
        return PageIn(start, isStored ? CountFrom(start) : 0);
    }
    if (isStored) {
        Fail(texts, texts.missingAgent, __LINE__);
    }
    return Make(start);
}

/// The block that starts there, if it is in memory.
template <class T> auto cls_ArrayPrim<T>::Held(int start) const noexcept -> Buffer*
{
    if (m_agent != nullptr) {
        return m_residentStart == start ? m_resident.get() : nullptr;
    }
    const int place = start / Buffer::SIZE;
    return place < m_blocks.Length() ? m_blocks[place].get() : nullptr;
}

/// Brings in the block that starts there, of which the agent has `stored` elements. It takes the memory of the one that
/// goes, unless another array shares that.
template <class T> auto cls_ArrayPrim<T>::PageIn(int start, int stored) const -> Buffer*
{
    StoreResident();
    Holder block = std::exchange(m_resident, Holder());
    m_current = Current();
    if (!block.IsUnique()) {
        block = Holder::Make();
    }
    if (stored > 0) {
        m_agent->ReadRange(start, stored, block->elements);
    }
    std::fill(block->elements + stored, block->elements + Buffer::SIZE, T());
    m_resident = std::move(block);
    m_residentStart = start;
    return m_resident.get();
}

/// Makes the block that starts there, in an array that is all in memory.
template <class T> auto cls_ArrayPrim<T>::Make(int start) const -> Buffer*
{
    const int place = start / Buffer::SIZE;
    Holder block = Holder::Make();
    m_blocks.Resize(std::max(m_blocks.Length(), place + 1));
    m_blocks.Set(place, block);
    return block.get();
}

template <class T> void cls_ArrayPrim<T>::Prune(int keep) const
{
    if (m_resident && (keep < 0 || m_residentStart != StartOf(keep))) {
        StoreResident();
        m_resident = Holder();
        m_current = Current();
    }
}

template <class T> int cls_ArrayPrim<T>::Snap() const
{
    if (m_agent == nullptr || !m_agent->IsChanged()) {
        return 0;
    }
    m_length = m_agent->Size();
    m_current = Current();
    Prune(-1);
    return 1;
}

/// The number of elements of the block that starts there: none behind the end, wherever that was set.
template <class T> int cls_ArrayPrim<T>::CountFrom(int start) const noexcept
{
    return static_cast<int>(std::clamp<std::int64_t>(std::int64_t{m_length} - start, 0, Buffer::SIZE));
}

template <class T> void cls_ArrayPrim<T>::SetCurrent(int start, Buffer& buffer, bool writable) const noexcept
{
    const unsigned size = Buffer::SIZE;
    m_current = {.elements = buffer.elements, .start = start, .readable = size, .writable = writable ? size : 0};
}

/// Stores the resident block if it was changed; nothing of it may be left when the array was shortened.
template <class T> void cls_ArrayPrim<T>::StoreResident() const
{
    if (!m_resident || m_resident->dirty == 0) {
        return;
    }
    if (const int count = CountFrom(m_residentStart); count > 0) {
        m_agent->WriteRange(m_residentStart, count, m_resident->elements);
    }
    m_resident->dirty = 0;
    m_current.writable = 0;
}

template class cls_ArrayPrim<bool>;
template class cls_ArrayPrim<double>;
template class cls_ArrayPrim<float>;
template class cls_ArrayPrim<int>;
template class cls_ArrayPrim<cow_String>;
template class cls_ArrayPrim<std::uint32_t>;
