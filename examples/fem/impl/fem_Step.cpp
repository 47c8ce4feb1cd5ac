#include "fem_Step.h"

#include "fem_Model.h"

#include "omu_Arguments.h"
#include "omu_PrimNone.h"
#include "omu_ValueErrorException.h"

fem_Step::fem_Step(const fem_Model& model, const cow_String& name, const fem_ProcedureConstant& procedure,
                   const Loads& loads)
    : fem_Named(model, "steps", name), m_model(model), m_procedure(procedure), m_loads(Checked(loads))
{
    static constexpr memberTable members[] = {
        {"name", "-> str: Unique among the steps of the model.", omu_AsGetter<&fem_Step::GetName>, nullptr},
        {"procedure", "-> vexomu.Constant: STATIC or FREQUENCY.", omu_AsGetter<&fem_Step::GetProcedure>,
         omu_AsMethod<&fem_Step::SetProcedure>},
        {"loads", "-> dict[str, float]: Pressures in MPa by the name of the set that they act on.",
         omu_AsGetter<&fem_Step::GetLoads>, omu_AsMethod<&fem_Step::SetLoads>},
        {},
    };
    DescribeType("Step", nullptr, members);
}

omu_Primitive* fem_Step::SetProcedure(omu_Arguments& arguments)
{
    fem_ProcedureConstant procedure = m_procedure;
    arguments.Begin();
    arguments.Get(procedure);
    arguments.End("procedure");
    m_procedure = procedure;
    return new omu_PrimNone;
}

omu_Primitive* fem_Step::GetLoads()
{
    Loads loads;
    for (const Load& load : m_loads) {
        loads.Put(load.pressure, load.set->Name());
    }
    return loads.Copy();
}

omu_Primitive* fem_Step::SetLoads(omu_Arguments& arguments)
{
    Loads loads;
    arguments.Begin();
    arguments.Get(loads);
    arguments.End("loads");
    m_loads = Checked(loads);
    return new omu_PrimNone;
}

std::vector<fem_Step::Load> fem_Step::Checked(const Loads& loads) const
{
    std::vector<Load> checked;
    for (const cow_String& name : loads.Keys()) {
        Load load{&m_model.Sets().Get(name), 0.0};
        if (loads.Get(load.pressure, name) == 0) {
            omu_ValueErrorException("the load on '" + name + "' must be a Float")
                .Throw("examples/fem/impl/fem_Step", __LINE__);
        }
        checked.push_back(load);
    }
    return checked;
}
