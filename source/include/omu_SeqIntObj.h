#pragma once

#include "cow_1DArray.h"
#include "omu_InterfaceObj.h"

#include <span>

/// A sequence of kernel objects, held as their ids. A concrete sequence turns each id into a value; the conversion of a
/// script's indices is here: negative ones count from the end, and those before the start mean the start.
///
/// Ownership:  owns the ids; copies share them until one side writes. Values returned are new and belong to the caller.
/// Threads:    the thread of the kernel objects.
/// Complexity: ConvertIndex O(1), IsUnique and RemoveDuplicates O(ids).
/// Errors:     omu_IndexErrorException with the index as the script gave it.
class VEXOMU_API omu_SeqIntObj : public omu_InterfaceObj
{
public:
    /// As the script language writes a list, within the limits of the text settings. Where elements are not offered, as
    /// that of any kernel object.
    cow_String AsString(int depth) const override;
    /// "<Sequence object>", which a sequence that scripts can reach replaces by its path.
    cow_String Repr() const override;
    /// The elements.
    cow_String FullRepr() const override;
    void Accept(omu_PrimVisitor* visitor) const override;

    // The order of these operations is promised. A null value, or 0 of Remove and RemoveSlice: not offered.
    virtual int Length() const = 0;
    virtual omu_Primitive* Index(const int& index) const = 0;
    virtual omu_Primitive* Slice(const int& low, const int& high) const = 0;
    virtual omu_Primitive* Repeat(const int& count) const = 0;
    virtual omu_Primitive* Concat(omu_SeqIntObj* other) const = 0;
    virtual int Remove(const int& index) = 0;
    virtual int RemoveSlice(const int& low, const int& high) = 0;

    /// The position of an end of a slice: 0 to Length().
    int ConvertIndex(const int& index) const;
    /// The position of an element.
    int ConvertSubscrIndex(const int& index) const;
    /// 1 when `id` is not among the ids, else 0.
    int IsUnique(const int& id) const;
    /// Keeps the first of equal ids, in their order.
    void RemoveDuplicates();

protected:
    omu_SeqIntObj();
    explicit omu_SeqIntObj(omu_OperationRules rules);
    omu_SeqIntObj(const omu_SeqIntObj&) = default;
    omu_SeqIntObj& operator=(const omu_SeqIntObj&) = default;

    int m_length = -1;      // -1: not filled yet
    cow_1DArray<int> m_ids; // at least m_length of them

private:
    /// The first m_length ids.
    std::span<const int> Ids() const noexcept;
};
