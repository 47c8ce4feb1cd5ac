#include "fem_Part.h"

#include "fem_Element.h"
#include "fem_Material.h"
#include "fem_Model.h"

#include "cls_ClassRegistrar.h"
#include "cls_MementoRead.h"
#include "cls_MementoWrite.h"
#include "cls_WriteVisitor.h"
#include "cow_1DArrayList.h"
#include "omu_Arguments.h"
#include "omu_KeyErrorException.h"
#include "omu_ObjectRef.h"
#include "omu_PrimArray.h"
#include "omu_PrimList.h"
#include "omu_PrimNone.h"
#include "omu_PrimNumber.h"
#include "omu_PrimString.h"
#include "omu_PrimTuple.h"
#include "omu_RangeChecker.h"
#include "omu_ValueErrorException.h"

#include <memory>
#include <utility>

namespace
{

constexpr const char* SOURCE = "examples/fem/impl/fem_Part";

constexpr int MAX_BINS = 10000;
constexpr double MAX_DISTANCE = 1e9; // coordinates stay far from the limits of single precision

const cls_FieldHandle ID("id");
const cls_FieldHandle DESCRIPTION("description");
const cls_FieldHandle MATERIAL("material");
const cls_FieldHandle MESH("mesh");

omu_PrimTuple PointTuple(const fem_Point& point)
{
    omu_PrimTuple tuple(3);
    for (const double coordinate : point) {
        tuple.Put(coordinate);
    }
    return tuple;
}

omu_Primitive* NodeValue(fem_Part& part, int label)
{
    const fem_Mesh& mesh = part.Mesh();
    return PointTuple(mesh.Position(mesh.NodeRows()[static_cast<unsigned int>(label)])).Copy();
}

omu_Primitive* ElementValue(fem_Part& part, int label)
{
    return new fem_Element(part, label);
}

void NoArguments(omu_Arguments& arguments, const char* method)
{
    arguments.Begin();
    arguments.End(method);
}

} // namespace

fem_Part::fem_Part(const fem_Model& model, const cow_String& name, int id, std::unique_ptr<fem_Mesh> mesh)
    : fem_Part(model, name, cls_Uid::AllocateUid(), id, std::move(mesh))
{}

fem_Part::fem_Part(const fem_Model& model, const cow_String& name, const cls_ReadVisitor& visitor)
    : fem_Part(model, name, visitor.GetUid(), visitor.Memento()->ReadInt(ID, 0),
               std::make_unique<fem_Mesh>(cls_ReadVisitor(visitor, MESH)))
{
    m_description = visitor.Read(DESCRIPTION, "");
    const fem_SubstanceConstant substance(cls_ReadVisitor(visitor, MATERIAL));
    if (!substance.GetString().IsEmpty()) {
        m_material = model.FindMaterial(substance);
        if (m_material == nullptr) {
            fem_FailStored(visitor, "its material " + substance.GetString() + " is not there");
        }
    }
}

void fem_Part::Register(cls_ClassRegistrar& registrar)
{
    registrar.CreateClassMD("Part", CLASS_ID, 1, nullptr, 1)
        .AddAttribute(ID, cls_ATTRIBUTE_INT, 1, cls_COLLECTION_NONE)
        .AddAttribute(DESCRIPTION, cls_ATTRIBUTE_STRING, 1, cls_COLLECTION_NONE)
        .AddAttribute(MATERIAL, cls_ATTRIBUTE_STRING, 1, cls_COLLECTION_NONE)
        .AddAttribute(MESH, cls_ATTRIBUTE_REAL, 1, cls_COLLECTION_NONE);
}

void fem_Part::DBWrite(const cls_WriteVisitor& visitor, fem_Save& save) const
{
    if (visitor.StartWrite(CLASS_ID, Uid()) == 0) {
        return;
    }
    visitor.Memento()->WriteInt(ID, m_id);
    visitor.Memento()->WriteString(DESCRIPTION, m_description);
    if (m_material != nullptr) {
        m_material->Substance().DBWrite(cls_WriteVisitor(visitor, MATERIAL, nullptr)); // with the material's identity
    }
    m_mesh->DBWrite(cls_WriteVisitor(visitor, MESH, nullptr), save);
}

fem_Part::fem_Part(const fem_Model& model, const cow_String& name, const cls_Uid& uid, int id,
                   std::unique_ptr<fem_Mesh> mesh)
    : fem_Named(model, "parts", name, uid), m_model(model), m_id(id), m_mesh(std::move(mesh)),
      m_nodes(*this, "nodes", m_mesh->NodeRows(), &NodeValue),
      m_elements(*this, "elements", m_mesh->ElementRows(), &ElementValue)
{
    static constexpr methodTable methods[] = {
        {"boundingBox", "boundingBox() -> tuple[tuple[float, ...], ...]: lowest and highest corner, as (x, y, z).",
         omu_AsMethod<&fem_Part::BoundingBox>},
        {"coordinates",
         "coordinates() -> numpy.ndarray[Any, Any]: of the nodes, in an array of shape (nodes, 3), by label.",
         omu_AsMethod<&fem_Part::Coordinates>},
        {"mass", "mass() -> float: volume by density of the material.", omu_AsMethod<&fem_Part::Mass>},
        {"qualityHistogram",
         "qualityHistogram(bins: int = 10, limits: collections.abc.Sequence[float] = (0.0, 1.0)) -> tuple[int, ...]: "
         "numbers of elements by mean ratio.",
         omu_AsMethod<&fem_Part::QualityHistogram>},
        {"surfaceArea", "surfaceArea() -> float: area of the faces that belong to one element only.",
         omu_AsMethod<&fem_Part::SurfaceArea>},
        {"translate", "translate(dx: float = 0.0, dy: float = 0.0, dz: float = 0.0) -> None: moves all nodes.",
         omu_AsMethod<&fem_Part::Translate>},
        {"volume", "volume() -> float: volume of all elements.", omu_AsMethod<&fem_Part::Volume>},
        {"worstElements", "worstElements(count: int = 1) -> list[Element]: those of lowest mean ratio, worst first.",
         omu_AsMethod<&fem_Part::WorstElements>},
        {},
    };
    static constexpr memberTable members[] = {
        {"name", "-> str: Unique among the parts of the model.", omu_AsGetter<&fem_Part::GetName>, nullptr},
        {"description", "-> str: Free text.", omu_AsGetter<&fem_Part::GetDescription>,
         omu_AsMethod<&fem_Part::SetDescription>},
        {"material", "-> vexomu.Constant | None: One of the model's materials.", omu_AsGetter<&fem_Part::GetMaterial>,
         omu_AsMethod<&fem_Part::SetMaterial>},
        {"nodes", "-> Repository: The (x, y, z) of each node, by label.", omu_AsGetter<&fem_Part::GetNodes>, nullptr},
        {"elements", "-> Repository: The elements by label.", omu_AsGetter<&fem_Part::GetElements>, nullptr},
        {},
    };
    static constexpr deprecatedMethodTable deprecated[] = {
        {"node", "node(label: int) -> tuple[float, ...]: its (x, y, z).", omu_AsMethod<&fem_Part::Node>, "nodes[label]",
         "0.1"},
        {},
    };
    DescribeType("Part", methods, members, deprecated);
    // A journal holds what changes the model.
    for (const char* const query :
         {"boundingBox", "coordinates", "mass", "node", "qualityHistogram", "surfaceArea", "volume", "worstElements"}) {
        DoNotJournal(query);
    }
}

omu_Primitive* fem_Part::GetDescription()
{
    return new omu_PrimString(m_description);
}

omu_Primitive* fem_Part::SetDescription(omu_Arguments& arguments)
{
    cow_String description;
    arguments.Begin();
    arguments.Get(description);
    arguments.End("description");
    m_description = description;
    return new omu_PrimNone;
}

omu_Primitive* fem_Part::GetMaterial()
{
    return m_material != nullptr ? m_material->Substance().Copy() : new omu_PrimNone;
}

omu_Primitive* fem_Part::SetMaterial(omu_Arguments& arguments)
{
    fem_SubstanceConstant substance(fem_Substance::STEEL);
    arguments.Begin();
    arguments.Get(substance);
    arguments.End("material");
    m_material = &m_model.Material(substance);
    return new omu_PrimNone;
}

omu_Primitive* fem_Part::GetNodes()
{
    return new omu_ObjectRef(m_nodes);
}

omu_Primitive* fem_Part::GetElements()
{
    return new omu_ObjectRef(m_elements);
}

omu_Primitive* fem_Part::BoundingBox(omu_Arguments& arguments)
{
    NoArguments(arguments, "boundingBox");
    const fem_Box box = m_mesh->BoundingBox();
    auto result = std::make_unique<omu_PrimTuple>(2);
    result->Put(PointTuple(box.low));
    result->Put(PointTuple(box.high));
    return result.release();
}

omu_Primitive* fem_Part::SurfaceArea(omu_Arguments& arguments)
{
    NoArguments(arguments, "surfaceArea");
    return new omu_PrimNumber(m_mesh->SurfaceArea());
}

omu_Primitive* fem_Part::Volume(omu_Arguments& arguments)
{
    NoArguments(arguments, "volume");
    return new omu_PrimNumber(m_mesh->Volume());
}

omu_Primitive* fem_Part::Mass(omu_Arguments& arguments)
{
    NoArguments(arguments, "mass");
    if (m_material == nullptr) {
        omu_ValueErrorException(Repr() + " has no material").Throw(SOURCE, __LINE__);
    }
    return new omu_PrimNumber(m_mesh->Volume() * m_material->Density());
}

omu_Primitive* fem_Part::WorstElements(omu_Arguments& arguments)
{
    int count = 1;
    arguments.Begin();
    arguments.Optional();
    arguments.Get(count, "count");
    arguments.End("worstElements");
    omu_RangeChecker::CheckGreaterThan("count", 1, /*inclusive=*/true, count);
    const std::vector<fem_ElementQuality> worst = m_mesh->WorstElements(static_cast<std::size_t>(count));
    auto result = std::make_unique<omu_PrimList>(static_cast<int>(worst.size()));
    for (const fem_ElementQuality& element : worst) {
        result->Put(ElementValue(*this, element.label));
    }
    return result.release();
}

omu_Primitive* fem_Part::QualityHistogram(omu_Arguments& arguments)
{
    int bins = 10;
    cow_1DArrayList<double, double> limits{0.0, 1.0};
    arguments.Begin();
    arguments.Optional();
    arguments.Get(bins, "bins");
    arguments.Get(limits, "limits");
    arguments.End("qualityHistogram");
    omu_RangeChecker::CheckInRange("bins", 1, /*lowerInclusive=*/true, bins, MAX_BINS, /*higherInclusive=*/true);
    if (limits.Length() != 2 || !(limits[0] < limits[1])) {
        omu_ValueErrorException("limits must be two numbers in ascending order").Throw(SOURCE, __LINE__);
    }
    auto result = std::make_unique<omu_PrimTuple>(bins);
    for (const int count : m_mesh->QualityHistogram(static_cast<std::size_t>(bins), limits[0], limits[1])) {
        result->Put(count);
    }
    return result.release();
}

omu_Primitive* fem_Part::Coordinates(omu_Arguments& arguments)
{
    NoArguments(arguments, "coordinates");
    const uti_CoordCont3D coordinates = m_mesh->Coordinates();
    const std::array<int, 2> dimensions{coordinates.Length(), 3};
    return new omu_PrimArray(2, dimensions.data(), omu_PrimNumber::REAL32, coordinates.GetCArray());
}

omu_Primitive* fem_Part::Translate(omu_Arguments& arguments)
{
    fem_Point by{};
    arguments.Begin();
    arguments.Optional();
    arguments.Get(by[0], "dx");
    arguments.Get(by[1], "dy");
    arguments.Get(by[2], "dz");
    arguments.End("translate");
    for (const auto& [name, distance] : {std::pair("dx", by[0]), std::pair("dy", by[1]), std::pair("dz", by[2])}) {
        omu_RangeChecker::CheckInRange(name, -MAX_DISTANCE, /*lowerInclusive=*/true, distance, MAX_DISTANCE,
                                       /*higherInclusive=*/true);
    }
    m_mesh->Translate(by);
    return new omu_PrimNone;
}

omu_Primitive* fem_Part::Node(omu_Arguments& arguments)
{
    int label = 0;
    arguments.Begin();
    arguments.Get(label, "label");
    arguments.End("node");
    omu_Primitive* const position = m_nodes.Value(label);
    if (position == nullptr) {
        const cow_String key(label);
        omu_KeyErrorException(Repr() + " has no node " + key, key).Throw(SOURCE, __LINE__);
    }
    return position;
}
