#pragma once

#include "cls_CollectionNames.h"
#include "sql_ReadNode_detail.h"

// What the mementos make collections with. A reader or writer is on a record that holds, or becomes, its collection;
// null for a null node. The element types as lists of (name in the operations, type):

#define SQL_KEYED_KINDS(X)                                                                                             \
    X(Double, double)                                                                                                  \
    X(Float, float)                                                                                                    \
    X(Int, int)                                                                                                        \
    X(String, cow_String)                                                                                              \
    X(Unsigned, std::uint32_t)
#define SQL_KINDS(X)                                                                                                   \
    X(Bool, bool)                                                                                                      \
    SQL_KEYED_KINDS(X)

using sql_SessionPtr = std::shared_ptr<sql_Session>;

template <class T> cls_ReadListPrim<T>* sql_MakeListReader(const sql_NodePtr& node);
template <class T> cls_ReadMapInt2Prim<T>* sql_MakeIntMapReader(const sql_NodePtr& node);
template <class T> cls_ReadMapString2Prim<T>* sql_MakeStringMapReader(const sql_NodePtr& node);
cls_ReadListObj* sql_MakeObjListReader(const sql_NodePtr& node);
cls_ReadMapInt2Obj* sql_MakeIntMapObjReader(const sql_NodePtr& node);
cls_ReadMapString2Obj* sql_MakeStringMapObjReader(const sql_NodePtr& node);
cls_ReadIntTableInt* sql_MakeIntTableReader(const sql_NodePtr& node);

template <class T>
cls_WriteListPrim<T>* sql_MakeListWriter(const sql_SessionPtr& session, const sql_Session::Open& open);
template <class T>
cls_WriteMapInt2Prim<T>* sql_MakeIntMapWriter(const sql_SessionPtr& session, const sql_Session::Open& open);
template <class T>
cls_WriteMapString2Prim<T>* sql_MakeStringMapWriter(const sql_SessionPtr& session, const sql_Session::Open& open);
cls_WriteListObj* sql_MakeObjListWriter(const sql_SessionPtr& session, const sql_Session::Open& open);
cls_WriteMapInt2Obj* sql_MakeIntMapObjWriter(const sql_SessionPtr& session, const sql_Session::Open& open);
cls_WriteMapString2Obj* sql_MakeStringMapObjWriter(const sql_SessionPtr& session, const sql_Session::Open& open);
cls_WriteIntTableInt* sql_MakeIntTableWriter(const sql_SessionPtr& session, const sql_Session::Open& open);

/// An agent of a stored collection, for arrays of that uid. The first one comes from a record that is written to.
template <class T>
cls_AgentListPrim<T>* sql_MakeListAgent(const sql_SessionPtr& session, std::int64_t record, const cls_Uid& uid,
                                        bool isFirst);
cls_AgentListObj* sql_MakeObjListAgent(const sql_SessionPtr& session, std::int64_t record, int depth);
template <class K>
cls_AgentMapKey2Obj<K>* sql_MakeMapAgent(const sql_SessionPtr& session, std::int64_t record, int depth);
