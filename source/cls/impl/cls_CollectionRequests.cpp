#include "cls_CollectionRequests.h"

#include "cls_CollectionWriters.h"
#include "cls_ObjectAgents.h"

#include <utility>

cls_AgentRequestListObj::~cls_AgentRequestListObj() = default;
cls_WriteRequestListObj::~cls_WriteRequestListObj() = default;
cls_WriteRequestMapInt2Obj::~cls_WriteRequestMapInt2Obj() = default;
cls_WriteRequestMapString2Obj::~cls_WriteRequestMapString2Obj() = default;

cls_MementoWrite* cls_AgentRequestListObj::MakeWriteObj(std::uint32_t classId, const cls_Uid& uid) const
{
    return m_agent->MakeWriteObj(m_index, classId, uid);
}

template <class K>
cls_AgentRequestMapKey2Obj<K>::cls_AgentRequestMapKey2Obj(cls_AgentMapKey2Obj<K>* agent, K key)
    : m_agent(agent), m_key(std::move(key))
{}

template <class K> cls_AgentRequestMapKey2Obj<K>::~cls_AgentRequestMapKey2Obj() = default;

template <class K>
cls_MementoWrite* cls_AgentRequestMapKey2Obj<K>::MakeWriteObj(std::uint32_t classId, const cls_Uid& uid) const
{
    return m_agent->MakeWriteObj(m_key, classId, uid);
}

template class cls_AgentRequestMapKey2Obj<int>;
template class cls_AgentRequestMapKey2Obj<cow_String>;

cls_MementoWrite* cls_WriteRequestListObj::MakeWriteObj(std::uint32_t classId, const cls_Uid& uid) const
{
    return m_writer->MakeWriteObj(classId, uid);
}

cls_MementoWrite* cls_WriteRequestMapInt2Obj::MakeWriteObj(std::uint32_t classId, const cls_Uid& uid) const
{
    return m_writer->MakeWriteObj(m_key, classId, uid);
}

cls_MementoWrite* cls_WriteRequestMapString2Obj::MakeWriteObj(std::uint32_t classId, const cls_Uid& uid) const
{
    return m_writer->MakeWriteObj(*m_key, classId, uid);
}
