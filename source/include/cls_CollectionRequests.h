#pragma once

#include "VEXomu_export.h"
#include "cls_AgentRequest.h"
#include "cls_CollectionNames.h"
#include "cow_String.h"

#include <cstdint>

// The kinds of cls_AgentRequest: each names one element of a collection by its place there. To write an object into a
// collection, make a request for its element, a cls_WriteVisitor on the request, and hand that to the object's DBWrite:
//
//     element.DBWrite(cls_WriteVisitor(cls_AgentRequestListObj(agent, index)));
//
// Ownership:  a request refers to its collection, which outlives it.
// Errors:     MakeWriteObj: those of the storage engine; null when the collection refuses the element.

/// The element at an index of a list that an agent serves.
class VEXOMU_API cls_AgentRequestListObj : public cls_AgentRequest
{
public:
    cls_AgentRequestListObj(cls_AgentListObj* agent, int index) noexcept : m_agent(agent), m_index(index) {}
    ~cls_AgentRequestListObj() override;

    cls_MementoWrite* MakeWriteObj(std::uint32_t classId, const cls_Uid& uid) const override;

private:
    cls_AgentListObj* m_agent;
    int m_index;
};

/// The element under a key, int or text, of a map that an agent serves. Keeps a copy of the key.
template <class K> class cls_AgentRequestMapKey2Obj : public cls_AgentRequest
{
public:
    cls_AgentRequestMapKey2Obj(cls_AgentMapKey2Obj<K>* agent, K key);
    ~cls_AgentRequestMapKey2Obj() override;

    cls_MementoWrite* MakeWriteObj(std::uint32_t classId, const cls_Uid& uid) const override;

private:
    cls_AgentMapKey2Obj<K>* m_agent;
    K m_key;
};

extern template class VEXOMU_API cls_AgentRequestMapKey2Obj<int>;
extern template class VEXOMU_API cls_AgentRequestMapKey2Obj<cow_String>;

/// A new element at the end of a list that is being written.
class VEXOMU_API cls_WriteRequestListObj : public cls_AgentRequest
{
public:
    explicit cls_WriteRequestListObj(cls_WriteListObj* writer) noexcept : m_writer(writer) {}
    ~cls_WriteRequestListObj() override;

    cls_MementoWrite* MakeWriteObj(std::uint32_t classId, const cls_Uid& uid) const override;

private:
    cls_WriteListObj* m_writer;
};

/// The element under an int of a map that is being written.
class VEXOMU_API cls_WriteRequestMapInt2Obj : public cls_AgentRequest
{
public:
    cls_WriteRequestMapInt2Obj(cls_WriteMapInt2Obj* writer, int key) noexcept : m_writer(writer), m_key(key) {}
    ~cls_WriteRequestMapInt2Obj() override;

    cls_MementoWrite* MakeWriteObj(std::uint32_t classId, const cls_Uid& uid) const override;

private:
    cls_WriteMapInt2Obj* m_writer;
    int m_key;
};

/// The element under a text of a map that is being written. Keeps only the address of the key, on purpose: the request
/// is made for one write, within the life of the caller's key.
class VEXOMU_API cls_WriteRequestMapString2Obj : public cls_AgentRequest
{
public:
    cls_WriteRequestMapString2Obj(cls_WriteMapString2Obj* writer, const cow_String& key) noexcept
        : m_writer(writer), m_key(&key)
    {}
    cls_WriteRequestMapString2Obj(cls_WriteMapString2Obj*, cow_String&&) = delete;
    ~cls_WriteRequestMapString2Obj() override;

    cls_MementoWrite* MakeWriteObj(std::uint32_t classId, const cls_Uid& uid) const override;

private:
    cls_WriteMapString2Obj* m_writer;
    const cow_String* m_key;
};
