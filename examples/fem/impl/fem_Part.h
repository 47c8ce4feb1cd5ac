#pragma once

#include "fem_LabelRepository.h"
#include "fem_Mesh.h"
#include "fem_Named.h"

#include "omu_BrenowName.h"

#include <memory>

class fem_Material;
class fem_Model;

/// A named mesh of a model, as scripts see it.
///
/// Ownership:  owned by its model, which outlives it, as do the materials; owns its mesh.
class fem_Part final : public fem_Named<omu_InterfaceObj>
{
public:
    static constexpr omu_BrenowName::omu_BrenowNameEnum NAME_RULES = omu_BrenowName::KER_NAME;
    static constexpr std::uint32_t CLASS_ID = fem_PART;

    /// `id` stands for the part, whatever its name, in the sets of its model.
    fem_Part(const fem_Model& model, const cow_String& name, int id, std::unique_ptr<fem_Mesh> mesh);
    /// The materials of the model are there already.
    fem_Part(const fem_Model& model, const cow_String& name, const cls_ReadVisitor& visitor);

    static void Register(cls_ClassRegistrar& registrar);
    void DBWrite(const cls_WriteVisitor& visitor, fem_Save& save) const;
    void Restore() const { m_mesh->Restore(); }

    int Id() const noexcept { return m_id; }
    const fem_Mesh& Mesh() const noexcept { return *m_mesh; }
    const fem_LabelRepository& Elements() const noexcept { return m_elements; }

private:
    fem_Part(const fem_Model& model, const cow_String& name, const cls_Uid& uid, int id,
             std::unique_ptr<fem_Mesh> mesh);

    omu_Primitive* GetDescription();
    omu_Primitive* SetDescription(omu_Arguments& arguments);
    omu_Primitive* GetMaterial();
    omu_Primitive* SetMaterial(omu_Arguments& arguments);
    omu_Primitive* GetNodes();
    omu_Primitive* GetElements();

    omu_Primitive* BoundingBox(omu_Arguments& arguments);
    omu_Primitive* SurfaceArea(omu_Arguments& arguments);
    omu_Primitive* Volume(omu_Arguments& arguments);
    omu_Primitive* Mass(omu_Arguments& arguments);
    omu_Primitive* WorstElements(omu_Arguments& arguments);
    omu_Primitive* QualityHistogram(omu_Arguments& arguments);
    omu_Primitive* Coordinates(omu_Arguments& arguments);
    omu_Primitive* Translate(omu_Arguments& arguments);
    omu_Primitive* Node(omu_Arguments& arguments);

    const fem_Model& m_model;
    int m_id;
    cow_String m_description;
    const fem_Material* m_material = nullptr; // null: none was set
    std::unique_ptr<fem_Mesh> m_mesh;         // not null
    fem_LabelRepository m_nodes;
    fem_LabelRepository m_elements;
};
