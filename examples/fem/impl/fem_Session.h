#pragma once

#include "fem_Model.h"

#include "omu_InterfaceObj.h"

#include <map>
#include <memory>

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
    omu_Primitive* GetModelNames();

    omu_Primitive* Bodies(omu_Arguments& arguments);
    omu_Primitive* CreateModel(omu_Arguments& arguments);
    omu_Primitive* GetModel(omu_Arguments& arguments);
    omu_Primitive* DeleteModel(omu_Arguments& arguments);

    /// The name given as the method's one argument, which must be that of a model.
    cow_String TakeModelName(omu_Arguments& arguments, const char* method) const;

    std::map<cow_String, std::unique_ptr<fem_Model>> m_models;
};
