#include "fem_Model.h"

#include "fem_MeshFile.h"

#include "cls_ClassRegistrar.h"
#include "omu_Arguments.h"

#include <limits>
#include <new>

namespace
{

constexpr const char* SOURCE = "examples/fem/impl/fem_Model";

const cls_FieldHandle LAST_PART_ID("lastPartId");
const cls_FieldHandle MATERIALS("materials");
const cls_FieldHandle PARTS("parts");
const cls_FieldHandle SETS("sets");
const cls_FieldHandle STEPS("steps");

} // namespace

fem_Model::fem_Model(const omu_InterfaceObj& session, const cow_String& name)
    : fem_Named(session, "models", name), m_parts(*this, "parts"), m_materials(*this, "materials"),
      m_sets(*this, "sets"), m_steps(*this, "steps")
{
    Describe();
}

fem_Model::fem_Model(const omu_InterfaceObj& session, const cow_String& name, const cls_ReadVisitor& visitor)
    : fem_Named(session, "models", name, visitor.GetUid()), m_parts(*this, "parts"), m_materials(*this, "materials"),
      m_sets(*this, "sets"), m_steps(*this, "steps"), m_lastPartId(visitor.Memento()->ReadInt(LAST_PART_ID, 0))
{
    Describe();
    if (m_lastPartId < 0 || m_lastPartId == std::numeric_limits<int>::max()) {
        fem_FailStored(visitor, "parts cannot have had ids up to " + cow_String(m_lastPartId));
    }
    // Each refers to those before it.
    m_materials.DBRead(cls_ReadVisitor(visitor, MATERIALS), [this](const cow_String&, const cls_ReadVisitor& stored) {
        return std::make_unique<fem_Material>(*this, stored);
    });
    m_parts.DBRead(cls_ReadVisitor(visitor, PARTS), [this](const cow_String& key, const cls_ReadVisitor& stored) {
        auto part = std::make_unique<fem_Part>(*this, key, stored);
        if (part->Id() < 1 || part->Id() > m_lastPartId || FindPart(part->Id()) != nullptr) {
            fem_FailStored(stored, "a part cannot have the id " + cow_String(part->Id()));
        }
        NoteId(*part);
        return part;
    });
    m_sets.DBRead(cls_ReadVisitor(visitor, SETS), [this](const cow_String& key, const cls_ReadVisitor& stored) {
        return std::make_unique<fem_Set>(*this, key, stored);
    });
    m_steps.DBRead(cls_ReadVisitor(visitor, STEPS), [this](const cow_String& key, const cls_ReadVisitor& stored) {
        return std::make_unique<fem_Step>(*this, key, stored);
    });
}

void fem_Model::Register(cls_ClassRegistrar& registrar)
{
    registrar.CreateClassMD("Model", CLASS_ID, 1, nullptr, 1)
        .AddAttribute(LAST_PART_ID, cls_ATTRIBUTE_INT, 1, cls_COLLECTION_NONE)
        .AddAttribute(MATERIALS, cls_ATTRIBUTE_STRING, 1, cls_COLLECTION_STRING_KEYED)
        .AddAttribute(PARTS, cls_ATTRIBUTE_STRING, 1, cls_COLLECTION_STRING_KEYED)
        .AddAttribute(SETS, cls_ATTRIBUTE_STRING, 1, cls_COLLECTION_STRING_KEYED)
        .AddAttribute(STEPS, cls_ATTRIBUTE_STRING, 1, cls_COLLECTION_STRING_KEYED);
}

void fem_Model::DBWrite(const cls_WriteVisitor& visitor, fem_Save& save) const
{
    if (visitor.StartWrite(CLASS_ID, Uid()) != 0) {
        visitor.Memento()->WriteInt(LAST_PART_ID, m_lastPartId);
        m_materials.DBWrite(cls_WriteVisitor(visitor, MATERIALS, nullptr), save);
        m_parts.DBWrite(cls_WriteVisitor(visitor, PARTS, nullptr), save);
        m_sets.DBWrite(cls_WriteVisitor(visitor, SETS, nullptr), save);
        m_steps.DBWrite(cls_WriteVisitor(visitor, STEPS, nullptr), save);
    }
}

void fem_Model::Describe()
{
    static constexpr methodTable methods[] = {
        {"createMaterial",
         "createMaterial(name: vexomu.Constant, density: float, elasticModulus: float = 0.0) -> Material: density in "
         "t/mm3, modulus in MPa.",
         omu_AsMethod<&fem_Model::CreateMaterial>},
        {"createPart",
         "createPart(name: str, path: str | os.PathLike[str], body: int = 0) -> Part: reads one body of a mesh file, "
         "or all with body 0.",
         omu_AsMethod<&fem_Model::CreatePart>},
        {"createSet",
         "createSet(name: str, elements: dict[str, collections.abc.Sequence[int]] = {}) -> Set: a set of elements, "
         "given as labels by the name of a part.",
         omu_AsMethod<&fem_Model::CreateSet>},
        {"createStep",
         "createStep(name: str, procedure: vexomu.Constant, loads: dict[str, float] = {}) -> Step: loads are "
         "pressures by the name of a set.",
         omu_AsMethod<&fem_Model::CreateStep>},
        {"deletePart", "deletePart(name: str) -> None: its elements leave all sets, too.",
         omu_AsMethod<&fem_Model::DeletePart>},
        {},
    };
    static constexpr memberTable members[] = {
        {"name", "-> str: Unique among the models.", omu_AsGetter<&fem_Model::GetName>, nullptr},
        {"parts", "-> Repository: The parts by name.", omu_AsGetter<&fem_Model::GetParts>, nullptr},
        {"materials", "-> Repository: The materials by constant.", omu_AsGetter<&fem_Model::GetMaterials>, nullptr},
        {"sets", "-> Repository: The sets by name.", omu_AsGetter<&fem_Model::GetSets>, nullptr},
        {"steps", "-> Repository: The steps by name.", omu_AsGetter<&fem_Model::GetSteps>, nullptr},
        {},
    };
    DescribeType("Model", methods, members);
}

fem_Part& fem_Model::PartOfId(int id) const
{
    return *static_cast<fem_Part*>(m_partsById[static_cast<unsigned int>(id)]);
}

const fem_Part* fem_Model::FindPart(int id) const
{
    void* part = nullptr;
    return id > 0 && m_partsById.Get(static_cast<unsigned int>(id), &part) ? static_cast<fem_Part*>(part) : nullptr;
}

void fem_Model::NoteId(fem_Part& part)
{
    if (!m_partsById.Add(static_cast<unsigned int>(part.Id()), &part)) {
        throw std::bad_alloc();
    }
}

const fem_Part& fem_Model::OwnPart(const omu_InterfaceObj& object) const
{
    for (const auto& [name, part] : m_parts.Objects()) {
        if (part.get() == &object) {
            return *part;
        }
    }
    omu_ValueErrorException(object.Repr() + " is no part of " + Repr()).Throw(SOURCE, __LINE__);
}

omu_Primitive* fem_Model::GetParts()
{
    return new omu_ObjectRef(m_parts);
}

omu_Primitive* fem_Model::GetMaterials()
{
    return new omu_ObjectRef(m_materials);
}

omu_Primitive* fem_Model::GetSets()
{
    return new omu_ObjectRef(m_sets);
}

omu_Primitive* fem_Model::GetSteps()
{
    return new omu_ObjectRef(m_steps);
}

omu_Primitive* fem_Model::CreatePart(omu_Arguments& arguments)
{
    omu_BrenowName name;
    cow_String path;
    int body = fem_MeshFile::ALL_BODIES;
    arguments.Begin();
    arguments.Get(name, "name");
    arguments.Get(path, "path");
    arguments.Optional();
    arguments.Get(body, "body");
    arguments.DeprecatedGet(body, "solid", "createPart: solid"); // as the body was called before version 0.1
    arguments.End("createPart");
    m_parts.RequireNew(name.AsString());
    std::unique_ptr<fem_Mesh> mesh = fem_MeshFile::Read(path).MeshOfBody(body);
    if (mesh->ElementRows().Length() == 0) {
        omu_ValueErrorException("'" + path + "' has no elements of body " + cow_String(body)).Throw(SOURCE, __LINE__);
    }
    const int id = m_lastPartId + 1;
    auto part = std::make_unique<fem_Part>(*this, name.AsString(), id, std::move(mesh));
    NoteId(*part);
    m_lastPartId = id;
    return new omu_ObjectRef(m_parts.Add(std::move(part)));
}

omu_Primitive* fem_Model::DeletePart(omu_Arguments& arguments)
{
    cow_String name;
    arguments.Begin();
    arguments.Get(name, "name");
    arguments.End("deletePart");
    const int id = m_parts.Get(name).Id();
    for (const auto& [setName, set] : m_sets.Objects()) {
        set->RemovePart(id);
    }
    m_partsById.Remove(static_cast<unsigned int>(id));
    m_parts.Delete(name);
    return new omu_PrimNone;
}

omu_Primitive* fem_Model::CreateMaterial(omu_Arguments& arguments)
{
    fem_SubstanceConstant name(fem_Substance::STEEL);
    double density = 0.0;
    double elasticModulus = 0.0;
    arguments.Begin();
    arguments.Get(name, "name");
    arguments.Get(density, "density");
    arguments.Optional();
    arguments.Get(elasticModulus, "elasticModulus");
    arguments.End("createMaterial");
    return new omu_ObjectRef(m_materials.Add(std::make_unique<fem_Material>(*this, name, density, elasticModulus)));
}

omu_Primitive* fem_Model::CreateSet(omu_Arguments& arguments)
{
    omu_BrenowName name;
    omu_PrimDictionary<cow_String> elements;
    arguments.Begin();
    arguments.Get(name, "name");
    arguments.Optional();
    arguments.Get(elements, "elements");
    arguments.End("createSet");
    auto set = std::make_unique<fem_Set>(*this, name.AsString());
    for (const cow_String& partName : elements.Keys()) {
        cow_List<int> labels;
        if (elements.Get(labels, partName) == 0) {
            omu_ValueErrorException("the elements of '" + partName + "' must be a sequence of Integers")
                .Throw(SOURCE, __LINE__);
        }
        set->Add(m_parts.Get(partName), labels);
    }
    return new omu_ObjectRef(m_sets.Add(std::move(set)));
}

omu_Primitive* fem_Model::CreateStep(omu_Arguments& arguments)
{
    cow_String name;
    fem_ProcedureConstant procedure(fem_Procedure::STATIC);
    fem_Step::Loads loads;
    arguments.Begin();
    arguments.Get(name, "name");
    arguments.Get(procedure, "procedure");
    arguments.Optional();
    arguments.Get(loads, "loads");
    arguments.End("createStep");
    return new omu_ObjectRef(m_steps.Add(std::make_unique<fem_Step>(*this, name, procedure, loads)));
}
