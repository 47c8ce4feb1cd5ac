#pragma once

#include "fem_Named.h"

#include "omu_BrenowName.h"
#include "omu_IdSeqIntObj.h"

class fem_Model;
class fem_Part;

/// A named sequence of elements that may belong to several parts. The kernel holds the parts' ids and the elements'
/// labels; a script gets elements.
///
/// Ownership:  owned by its model.
/// Complexity: see omu_ListArrayInt.
class fem_Set final : public fem_Named<omu_IdSeqIntObj>
{
public:
    static constexpr omu_BrenowName::omu_BrenowNameEnum NAME_RULES = omu_BrenowName::KER_NAME;
    static constexpr std::uint32_t CLASS_ID = fem_SET;

    fem_Set(const fem_Model& model, const cow_String& name);
    fem_Set(const fem_Model& model, const cow_String& name, const cls_ReadVisitor& visitor);

    static void Register(cls_ClassRegistrar& registrar);
    void DBWrite(const cls_WriteVisitor& visitor, fem_Save& save) const;

    /// The elements.
    cow_String AsString(int depth) const override { return omu_IdSeqIntObj::AsString(depth); }
    /// An element of the part that it belongs to.
    omu_Primitive* Index(const int& index) const override;
    /// A list of elements, which a script may keep for longer than the set.
    omu_Primitive* Slice(const int& low, const int& high) const override;

    /// Throws omu_KeyErrorException when the part has no element of one of the labels; then nothing changes.
    void Add(const fem_Part& part, const cow_List<int>& labels);
    /// The part is about to be deleted.
    void RemovePart(int partId);

private:
    void Describe();

    omu_Primitive* GetParts();
    omu_Primitive* AddElements(omu_Arguments& arguments);
    omu_Primitive* Compress(omu_Arguments& arguments);

    const fem_Model& m_model;
};
