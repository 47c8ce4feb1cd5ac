#pragma once

#include "fem_Model.h"

/// The root of everything that a script reaches.
///
/// Ownership:  owned by the Python module; owns its models.
class fem_Session final : public omu_InterfaceObj
{
public:
    fem_Session();

    cow_String AsString(int depth) const override;
    /// Null: there is one session.
    omu_Primitive* Copy() const override { return nullptr; }

private:
    omu_Primitive* GetModels();

    omu_Primitive* Bodies(omu_Arguments& arguments);
    omu_Primitive* CreateModel(omu_Arguments& arguments);
    omu_Primitive* DeleteModel(omu_Arguments& arguments);

    fem_Repository<cow_String, fem_Model> m_models;
};
