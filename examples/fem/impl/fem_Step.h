#pragma once

#include "fem_Constants.h"
#include "fem_Field.h"
#include "fem_Named.h"
#include "fem_Repository.h"

#include "omu_BrenowName.h"
#include "omu_PrimDictionary.h"

#include <vector>

class fem_Model;
class fem_Set;

/// One stage of an analysis: a procedure, the pressures that act on the surfaces of sets while it lasts, and the fields
/// that come of it.
///
/// Ownership:  owned by its model, as are the sets, which it refers to; owns its fields.
class fem_Step final : public fem_Named<omu_InterfaceObj>
{
public:
    static constexpr omu_BrenowName::omu_BrenowNameEnum NAME_RULES = omu_BrenowName::STEP_NAME;
    static constexpr std::uint32_t CLASS_ID = fem_STEP;
    using Loads = omu_PrimDictionary<cow_String>;

    /// Throws as SetLoads does.
    fem_Step(const fem_Model& model, const cow_String& name, const fem_ProcedureConstant& procedure,
             const Loads& loads);
    fem_Step(const fem_Model& model, const cow_String& name, const cls_ReadVisitor& visitor);

    static void Register(cls_ClassRegistrar& registrar);
    void DBWrite(const cls_WriteVisitor& visitor, fem_Save& save) const;
    void Restore() const { m_fields.Restore(); }

private:
    struct Load
    {
        const fem_Set* set;
        double pressure;
    };

    void Describe();

    omu_Primitive* GetProcedure() { return m_procedure.Copy(); }
    omu_Primitive* SetProcedure(omu_Arguments& arguments);
    omu_Primitive* GetLoads();
    omu_Primitive* SetLoads(omu_Arguments& arguments);
    omu_Primitive* GetFields();
    omu_Primitive* CreateField(omu_Arguments& arguments);

    /// Pressures by the name of a set. Throws omu_KeyErrorException for a set that the model does not have, and
    /// omu_ValueErrorException for what is no number.
    std::vector<Load> Checked(const Loads& loads) const;

    const fem_Model& m_model;
    fem_ProcedureConstant m_procedure;
    std::vector<Load> m_loads;
    fem_Repository<cow_String, fem_Field> m_fields{*this, "fields"};
};
