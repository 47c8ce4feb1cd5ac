#pragma once

#include "omu_ListArrayInt.h"
#include "omu_SeqIntObj.h"

/// A sequence of kernel objects that belong to several instances, held as runs of ids. It can be counted and asked for
/// its ids; a concrete sequence adds what it offers beyond that.
///
/// Ownership, threads, errors: see omu_SeqIntObj.
/// Complexity: that of omu_ListArrayInt.
class VEXOMU_API omu_IdSeqIntObj : public omu_SeqIntObj
{
public:
    /// How many ids there are.
    int Length() const override;
    // Not offered: null, or 0.
    omu_Primitive* Index(const int& index) const override;
    omu_Primitive* Slice(const int& low, const int& high) const override;
    omu_Primitive* Repeat(const int& count) const override;
    omu_Primitive* Concat(omu_SeqIntObj* other) const override;
    int Remove(const int& index) override;
    int RemoveSlice(const int& low, const int& high) override;
    int IsUnique(const int& id) const;

    /// The position of an element, or with `allowEnd` also that of the end.
    int ConvertIndex(const int& index, bool allowEnd) const;
    /// The element's id and its instance.
    void ConvertSubscrIndex(const int& index, int& id, int& instanceId) const;
    /// Copies all of the ids, or those from `from` up to but not including `to`.
    void Subscripts(omu_ListArrayInt& subscripts) const;
    void Subscripts(omu_ListArrayInt& subscripts, int from, int to) const;
    /// True, with the instance, when all ids belong to one.
    bool GetSingleInstanceId(int& instanceId) const;
    /// Leaves one run for each instance, its ids ascending, each once.
    void RemoveDuplicates();

protected:
    omu_IdSeqIntObj();
    explicit omu_IdSeqIntObj(omu_OperationRules rules);
    omu_IdSeqIntObj(const omu_IdSeqIntObj&) = default;
    omu_IdSeqIntObj& operator=(const omu_IdSeqIntObj&) = default;

    omu_ListArrayInt m_subscripts;
};
