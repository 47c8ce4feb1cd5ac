#pragma once

// The collection interfaces by name, for those who only pass pointers to them on.

template <class T> class cow_1DArray;
template <class T> class cow_2DArray;

template <class T> class cls_ReadListPrim;
template <class T> class cls_ReadMapInt2Prim;
template <class T> class cls_ReadMapString2Prim;
class cls_ReadListObj;
class cls_ReadMapInt2Obj;
class cls_ReadMapString2Obj;
class cls_ReadIntTableInt;

template <class T> class cls_WriteListPrim;
template <class T> class cls_WriteMapInt2Prim;
template <class T> class cls_WriteMapString2Prim;
class cls_WriteListObj;
class cls_WriteMapInt2Obj;
class cls_WriteMapString2Obj;
class cls_WriteIntTableInt;

template <class T> class cls_AgentListPrim;
template <class K> class cls_AgentMapKey2Obj;
class cls_AgentListObj;
