#pragma once

#include "fem_Mesh.h"

#include "omu_InterfaceObj.h"

class fem_Model;

/// A named mesh of a model, as scripts see it.
///
/// Ownership:  owned by its model, which outlives it.
class fem_Part final : public omu_InterfaceObj
{
public:
    fem_Part(fem_Model& model, const cow_String& name, fem_Mesh mesh);

    const cow_String& Name() const noexcept { return m_name; }

    /// The expression that finds the part again.
    cow_String AsString(int depth) const override;
    /// Null: a part stays the one of its model; scripts get references to it.
    omu_Primitive* Copy() const override { return nullptr; }

private:
    omu_Primitive* GetName();
    omu_Primitive* SetName(omu_Arguments& arguments);
    omu_Primitive* GetDescription();
    omu_Primitive* SetDescription(omu_Arguments& arguments);
    omu_Primitive* GetNodeCount();
    omu_Primitive* GetElementCount();

    omu_Primitive* BoundingBox(omu_Arguments& arguments);
    omu_Primitive* SurfaceArea(omu_Arguments& arguments);
    omu_Primitive* Volume(omu_Arguments& arguments);
    omu_Primitive* WorstElements(omu_Arguments& arguments);
    omu_Primitive* QualityHistogram(omu_Arguments& arguments);
    omu_Primitive* Node(omu_Arguments& arguments);
    omu_Primitive* Elements(omu_Arguments& arguments);
    omu_Primitive* Coordinates(omu_Arguments& arguments);
    omu_Primitive* Translate(omu_Arguments& arguments);

    [[noreturn]] void ThrowNo(const char* kind, int label) const;

    fem_Model& m_model;
    cow_String m_name;
    cow_String m_description;
    fem_Mesh m_mesh;
};
