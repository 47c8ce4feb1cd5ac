#pragma once

#include "fem_Material.h"
#include "fem_Part.h"
#include "fem_Repository.h"
#include "fem_Set.h"
#include "fem_Step.h"

/// A named collection of parts, materials, sets and steps, as scripts see it.
///
/// Ownership:  owned by its session; owns what is in its repositories.
class fem_Model final : public fem_Named<omu_InterfaceObj>
{
public:
    static constexpr omu_BrenowName::omu_BrenowNameEnum NAME_RULES = omu_BrenowName::KER_MODEL_NAME;

    static constexpr std::uint32_t CLASS_ID = fem_MODEL;

    fem_Model(const omu_InterfaceObj& session, const cow_String& name);
    fem_Model(const omu_InterfaceObj& session, const cow_String& name, const cls_ReadVisitor& visitor);

    static void Register(cls_ClassRegistrar& registrar);
    void DBWrite(const cls_WriteVisitor& visitor, fem_Save& save) const;
    void Restore() const
    {
        m_parts.Restore();
        m_steps.Restore();
    }

    const fem_Repository<cow_String, fem_Set>& Sets() const noexcept { return m_sets; }
    /// Throws omu_KeyErrorException when the model has no such material.
    const fem_Material& Material(const fem_SubstanceConstant& name) const { return m_materials.Get(name.GetString()); }
    /// Null when it has none.
    const fem_Material* FindMaterial(const fem_SubstanceConstant& name) const
    {
        return m_materials.Find(name.GetString());
    }
    /// Null when there is none.
    const fem_Part* FindPart(int id) const;
    /// Of a part that is there.
    fem_Part& PartOfId(int id) const;
    /// The part that `object` is; throws omu_ValueErrorException when it is none of this model's.
    const fem_Part& OwnPart(const omu_InterfaceObj& object) const;

private:
    void Describe();
    /// The id is not taken.
    void NoteId(fem_Part& part);

    omu_Primitive* GetParts();
    omu_Primitive* GetMaterials();
    omu_Primitive* GetSets();
    omu_Primitive* GetSteps();

    omu_Primitive* CreatePart(omu_Arguments& arguments);
    omu_Primitive* DeletePart(omu_Arguments& arguments);
    omu_Primitive* CreateMaterial(omu_Arguments& arguments);
    omu_Primitive* CreateSet(omu_Arguments& arguments);
    omu_Primitive* CreateStep(omu_Arguments& arguments);

    fem_Repository<cow_String, fem_Part> m_parts;
    fem_Repository<omu_PrimEnumBase, fem_Material> m_materials;
    fem_Repository<cow_String, fem_Set> m_sets;
    fem_Repository<cow_String, fem_Step> m_steps;
    omu_Table<void*> m_partsById; // each a fem_Part of m_parts
    int m_lastPartId = 0;         // ids are not used again
};
