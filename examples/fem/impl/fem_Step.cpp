#include "fem_Step.h"

#include "fem_Model.h"

#include "cls_ClassRegistrar.h"
#include "omu_Arguments.h"
#include "omu_PrimNone.h"
#include "omu_ValueErrorException.h"

namespace
{

constexpr const char* SOURCE = "examples/fem/impl/fem_Step";

const cls_FieldHandle PROCEDURE("procedure");
const cls_FieldHandle FIELDS("fields");
/// The element of the record that has the pressures by the name of a set.
constexpr std::uint32_t LOADS = 2;

} // namespace

fem_Step::fem_Step(const fem_Model& model, const cow_String& name, const fem_ProcedureConstant& procedure,
                   const Loads& loads)
    : fem_Named(model, "steps", name), m_model(model), m_procedure(procedure), m_loads(Checked(loads))
{
    Describe();
}

fem_Step::fem_Step(const fem_Model& model, const cow_String& name, const cls_ReadVisitor& visitor)
    : fem_Named(model, "steps", name, visitor.GetUid()), m_model(model),
      m_procedure(cls_ReadVisitor(visitor, PROCEDURE))
{
    Describe();
    if (m_procedure.GetString().IsEmpty()) {
        fem_FailStored(visitor, "it has no procedure");
    }
    const std::unique_ptr<cls_ReadMapString2Prim<double>> loads(visitor.Memento()->MakeStringMapDoubleReader(LOADS));
    while (loads != nullptr && loads->Next()) {
        const fem_Set* const set = model.Sets().Find(loads->Key());
        if (set == nullptr) {
            fem_FailStored(visitor, "there is no set '" + loads->Key() + "' for its load");
        }
        m_loads.push_back({set, loads->Value()});
    }
    m_fields.DBRead(cls_ReadVisitor(visitor, FIELDS), [this](const cow_String& key, const cls_ReadVisitor& field) {
        return std::make_unique<fem_Field>(*this, key, field);
    });
}

void fem_Step::Register(cls_ClassRegistrar& registrar)
{
    registrar.CreateClassMD("Step", CLASS_ID, 1, nullptr, 1)
        .AddAttribute(PROCEDURE, cls_ATTRIBUTE_STRING, 1, cls_COLLECTION_NONE)
        .AddAttribute(FIELDS, cls_ATTRIBUTE_STRING, 1, cls_COLLECTION_STRING_KEYED);
}

void fem_Step::DBWrite(const cls_WriteVisitor& visitor, fem_Save& save) const
{
    if (visitor.StartWrite(CLASS_ID, Uid()) == 0) {
        return;
    }
    m_procedure.DBWrite(cls_WriteVisitor(visitor, PROCEDURE, nullptr));
    {
        const std::unique_ptr<cls_WriteMapString2Prim<double>> loads(
            visitor.Memento()->MakeStringMapDoubleWriter(LOADS));
        for (const Load& load : m_loads) {
            loads->Write(load.set->Name(), load.pressure);
        }
    }
    m_fields.DBWrite(cls_WriteVisitor(visitor, FIELDS, nullptr), save);
}

void fem_Step::Describe()
{
    static constexpr methodTable methods[] = {
        {"createField", "createField(name: str, description: str = '') -> Field: a new field, empty.",
         omu_AsMethod<&fem_Step::CreateField>},
        {},
    };
    static constexpr memberTable members[] = {
        {"name", "-> str: Unique among the steps of the model.", omu_AsGetter<&fem_Step::GetName>, nullptr},
        {"procedure", "-> vexomu.Constant: STATIC or FREQUENCY.", omu_AsGetter<&fem_Step::GetProcedure>,
         omu_AsMethod<&fem_Step::SetProcedure>},
        {"loads", "-> dict[str, float]: Pressures in MPa by the name of the set that they act on.",
         omu_AsGetter<&fem_Step::GetLoads>, omu_AsMethod<&fem_Step::SetLoads>},
        {"fields", "-> Repository: The fields by name.", omu_AsGetter<&fem_Step::GetFields>, nullptr},
        {},
    };
    DescribeType("Step", methods, members);
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
            omu_ValueErrorException("the load on '" + name + "' must be a Float").Throw(SOURCE, __LINE__);
        }
        checked.push_back(load);
    }
    return checked;
}

omu_Primitive* fem_Step::GetFields()
{
    return new omu_ObjectRef(m_fields);
}

omu_Primitive* fem_Step::CreateField(omu_Arguments& arguments)
{
    omu_BrenowName name;
    cow_String description;
    arguments.Begin();
    arguments.Get(name, "name");
    arguments.Optional();
    arguments.Get(description, "description");
    arguments.End("createField");
    return new omu_ObjectRef(m_fields.Add(std::make_unique<fem_Field>(*this, name.AsString(), description)));
}
