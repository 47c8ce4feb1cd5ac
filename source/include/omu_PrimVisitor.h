#pragma once

#include "VEXomu_export.h"

class cow_String;
class omu_InterfaceObj;
class omu_PrimArray;
class omu_PrimComplex;
class omu_PrimEnumBase;
class omu_PrimList;
class omu_PrimNone;
class omu_PrimNumber;
class omu_PrimPath;
class omu_PrimString;
class omu_PrimTuple;
class omu_PrimType;
class omu_SeqIntObj;
template <class K> class omu_DictIntObjABC;
template <class K> class omu_PrimDictionary;

/// Double dispatch over the values: the Accept of each class calls its operation. The order of the operations is
/// promised. Expressions and wrappers are never visited.
class VEXOMU_API omu_PrimVisitor
{
public:
    virtual ~omu_PrimVisitor() = default;

    virtual void VisitNumber(const omu_PrimNumber& value) = 0;
    virtual void VisitString(const omu_PrimString& value) = 0;
    virtual void VisitArray(const omu_PrimArray& value) = 0;
    virtual void VisitTuple(const omu_PrimTuple& value) = 0;
    virtual void VisitList(const omu_PrimList& value) = 0;
    virtual void VisitPath(const omu_PrimPath& value) = 0;
    virtual void VisitEnum(const omu_PrimEnumBase& value) = 0;
    /// Both boolean flavours.
    virtual void VisitBool(const omu_PrimEnumBase& value) = 0;
    virtual void VisitNone(const omu_PrimNone& value) = 0;
    virtual void VisitType(const omu_PrimType& value) = 0;
    virtual void VisitComplex(const omu_PrimComplex& value) = 0;
    virtual void VisitInterfaceObj(const omu_InterfaceObj& value) = 0;
    virtual void VisitIntRepository(const omu_DictIntObjABC<int>& value) = 0;
    virtual void VisitStringRepository(const omu_DictIntObjABC<cow_String>& value) = 0;
    virtual void VisitEnumRepository(const omu_DictIntObjABC<omu_PrimEnumBase>& value) = 0;
    virtual void VisitIntDictionary(const omu_PrimDictionary<int>& value) = 0;
    virtual void VisitStringDictionary(const omu_PrimDictionary<cow_String>& value) = 0;
    virtual void VisitSequenceObj(const omu_SeqIntObj& value) = 0;

protected:
    omu_PrimVisitor() = default;
    omu_PrimVisitor(const omu_PrimVisitor&) = default;
    omu_PrimVisitor& operator=(const omu_PrimVisitor&) = default;
};
