#include "fem_Model.h"

#include "fem_MeshFile.h"

#include "omu_Arguments.h"

#include <new>

namespace
{

constexpr const char* SOURCE = "examples/fem/impl/fem_Model";

} // namespace

fem_Model::fem_Model(const omu_InterfaceObj& session, const cow_String& name)
    : fem_Named(session, "models", name), m_parts(*this, "parts"), m_materials(*this, "materials"),
      m_sets(*this, "sets"), m_steps(*this, "steps")
{
    static constexpr methodTable methods[] = {
        {"createMaterial", "createMaterial(name: vexomu.Constant, density: float) -> Material: the density in t/mm3.",
         omu_AsMethod<&fem_Model::CreateMaterial>},
        {"createPart",
         "createPart(name: str, path: str | os.PathLike[str], body: int = 0) -> Part: reads one body of a mesh file, "
         "or all with body 0.",
         omu_AsMethod<&fem_Model::CreatePart>},
        {"createSet",
         "createSet(name: str, elements: dict[str, collections.abc.Sequence[int]] = {}) -> Set: of labels by the name "
         "of a part.",
         omu_AsMethod<&fem_Model::CreateSet>},
        {"createStep",
         "createStep(name: str, procedure: vexomu.Constant, loads: dict[str, float] = {}) -> Step: with pressures by "
         "the name of a set.",
         omu_AsMethod<&fem_Model::CreateStep>},
        {"deletePart", "deletePart(name: str) -> None: takes its elements out of all sets, too.",
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
    if (!m_partsById.Add(static_cast<unsigned int>(id), part.get())) {
        throw std::bad_alloc();
    }
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
    arguments.Begin();
    arguments.Get(name, "name");
    arguments.Get(density, "density");
    arguments.End("createMaterial");
    return new omu_ObjectRef(m_materials.Add(std::make_unique<fem_Material>(*this, name, density)));
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
