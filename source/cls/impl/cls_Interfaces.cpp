// The destructors of the interfaces that a storage engine implements: the virtual table of each stands here alone.

#include "cls_AgentListPrim.h"
#include "cls_AgentRequest.h"
#include "cls_CollectionReaders.h"
#include "cls_CollectionWriters.h"
#include "cls_History.h"
#include "cls_MementoRead.h"
#include "cls_MementoWrite.h"
#include "cls_ObjectAgents.h"

cls_AgentListObj::~cls_AgentListObj() = default;
cls_AgentRequest::~cls_AgentRequest() = default;
cls_History::~cls_History() = default;
cls_MementoRead::~cls_MementoRead() = default;
cls_MementoWrite::~cls_MementoWrite() = default;
cls_ReadIntTableInt::~cls_ReadIntTableInt() = default;
cls_ReadListObj::~cls_ReadListObj() = default;
cls_ReadMapInt2Obj::~cls_ReadMapInt2Obj() = default;
cls_ReadMapString2Obj::~cls_ReadMapString2Obj() = default;
cls_WriteIntTableInt::~cls_WriteIntTableInt() = default;
cls_WriteListObj::~cls_WriteListObj() = default;
cls_WriteMapInt2Obj::~cls_WriteMapInt2Obj() = default;
cls_WriteMapString2Obj::~cls_WriteMapString2Obj() = default;

template class cls_AgentMapKey2Obj<int>;
template class cls_AgentMapKey2Obj<cow_String>;

#define CLS_LISTED_KIND(T)                                                                                             \
    template class cls_AgentListPrim<T>;                                                                               \
    template class cls_ReadListPrim<T>;                                                                                \
    template class cls_WriteListPrim<T>;
#define CLS_KEYED_KIND(T)                                                                                              \
    CLS_LISTED_KIND(T)                                                                                                 \
    template class cls_ReadMapInt2Prim<T>;                                                                             \
    template class cls_ReadMapString2Prim<T>;                                                                          \
    template class cls_WriteMapInt2Prim<T>;                                                                            \
    template class cls_WriteMapString2Prim<T>;
CLS_LISTED_KIND(bool)
CLS_KEYED_KIND(double)
CLS_KEYED_KIND(float)
CLS_KEYED_KIND(int)
CLS_KEYED_KIND(cow_String)
CLS_KEYED_KIND(std::uint32_t)
#undef CLS_KEYED_KIND
#undef CLS_LISTED_KIND
