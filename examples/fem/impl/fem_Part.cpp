#include "fem_Part.h"

#include "fem_Model.h"

#include "cow_1DArrayList.h"
#include "cow_List.h"
#include "omu_Arguments.h"
#include "omu_KeyErrorException.h"
#include "omu_PrimArray.h"
#include "omu_PrimList.h"
#include "omu_PrimNone.h"
#include "omu_PrimNumber.h"
#include "omu_PrimString.h"
#include "omu_PrimTuple.h"
#include "omu_RangeErrorException.h"
#include "omu_ValueErrorException.h"

#include <memory>
#include <utility>

namespace
{

constexpr const char* SOURCE = "examples/fem/impl/fem_Part";

constexpr int MAX_BINS = 10000;

omu_PrimTuple PointTuple(const fem_Point& point)
{
    omu_PrimTuple tuple(3);
    for (const double coordinate : point) {
        tuple.Put(coordinate);
    }
    return tuple;
}

template <class Integers> omu_PrimTuple IntegerTuple(const Integers& integers)
{
    omu_PrimTuple tuple(static_cast<int>(integers.size()));
    for (const int integer : integers) {
        tuple.Put(integer);
    }
    return tuple;
}

void NoArguments(omu_Arguments& arguments, const char* method)
{
    arguments.Begin();
    arguments.End(method);
}

} // namespace

fem_Part::fem_Part(fem_Model& model, const cow_String& name, fem_Mesh mesh)
    : m_model(model), m_name(name), m_mesh(std::move(mesh))
{
    static constexpr methodTable methods[] = {
        {"boundingBox", "Lowest and highest corner, as two (x, y, z).", omu_AsMethod<&fem_Part::BoundingBox>},
        {"coordinates", "Node coordinates as an array of shape (nodeCount, 3), in the order of nodes in the file.",
         omu_AsMethod<&fem_Part::Coordinates>},
        {"elements", "elements(labels, withQuality=False): (label, nodes) or (label, nodes, quality) of each.",
         omu_AsMethod<&fem_Part::Elements>},
        {"node", "node(label): its (x, y, z).", omu_AsMethod<&fem_Part::Node>},
        {"qualityHistogram", "qualityHistogram(bins=10, limits=[0.0, 1.0]): numbers of elements by mean ratio.",
         omu_AsMethod<&fem_Part::QualityHistogram>},
        {"surfaceArea", "Area of the faces that belong to one element only.", omu_AsMethod<&fem_Part::SurfaceArea>},
        {"translate", "translate(dx=0.0, dy=0.0, dz=0.0): moves all nodes.", omu_AsMethod<&fem_Part::Translate>},
        {"volume", "Volume of all elements.", omu_AsMethod<&fem_Part::Volume>},
        {"worstElements", "worstElements(count=1): (label, mean ratio) of the worst, worst first.",
         omu_AsMethod<&fem_Part::WorstElements>},
        {},
    };
    static constexpr memberTable members[] = {
        {"name", "Unique among the parts of the model.", omu_AsGetter<&fem_Part::GetName>,
         omu_AsMethod<&fem_Part::SetName>},
        {"description", "Free text.", omu_AsGetter<&fem_Part::GetDescription>, omu_AsMethod<&fem_Part::SetDescription>},
        {"nodeCount", "Number of nodes.", omu_AsGetter<&fem_Part::GetNodeCount>, nullptr},
        {"elementCount", "Number of elements.", omu_AsGetter<&fem_Part::GetElementCount>, nullptr},
        {},
    };
    DescribeType("Part", methods, members);
}

cow_String fem_Part::AsString(int depth) const
{
    return m_model.AsString(depth) + ".part(" + omu_PrimString(m_name).AsString(0) + ")";
}

omu_Primitive* fem_Part::GetName()
{
    return new omu_PrimString(m_name);
}

omu_Primitive* fem_Part::SetName(omu_Arguments& arguments)
{
    cow_String name;
    arguments.Begin();
    arguments.Get(name);
    arguments.End("name");
    m_model.RenamePart(m_name, name);
    m_name = name;
    return new omu_PrimNone;
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

omu_Primitive* fem_Part::GetNodeCount()
{
    return new omu_PrimNumber(static_cast<int>(m_mesh.NodeCount()));
}

omu_Primitive* fem_Part::GetElementCount()
{
    return new omu_PrimNumber(static_cast<int>(m_mesh.ElementCount()));
}

omu_Primitive* fem_Part::BoundingBox(omu_Arguments& arguments)
{
    NoArguments(arguments, "boundingBox");
    const fem_Box box = m_mesh.BoundingBox();
    auto result = std::make_unique<omu_PrimTuple>(2);
    result->Put(PointTuple(box.low));
    result->Put(PointTuple(box.high));
    return result.release();
}

omu_Primitive* fem_Part::SurfaceArea(omu_Arguments& arguments)
{
    NoArguments(arguments, "surfaceArea");
    return new omu_PrimNumber(m_mesh.SurfaceArea());
}

omu_Primitive* fem_Part::Volume(omu_Arguments& arguments)
{
    NoArguments(arguments, "volume");
    return new omu_PrimNumber(m_mesh.Volume());
}

omu_Primitive* fem_Part::WorstElements(omu_Arguments& arguments)
{
    int count = 1;
    arguments.Begin();
    arguments.Optional();
    arguments.Get(count, "count");
    arguments.End("worstElements");
    if (count < 1) {
        omu_RangeErrorException("count", 1, omu_INCLUSIVE, 0, omu_NO_RANGE).Throw(SOURCE, __LINE__);
    }
    const std::vector<fem_ElementQuality> worst = m_mesh.WorstElements(static_cast<std::size_t>(count));
    auto result = std::make_unique<omu_PrimList>(static_cast<int>(worst.size()));
    for (const auto& [label, quality] : worst) {
        omu_PrimTuple element(2);
        element.Put(label);
        element.Put(quality);
        result->Put(element);
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
    if (bins < 1 || bins > MAX_BINS) {
        omu_RangeErrorException("bins", 1, omu_INCLUSIVE, MAX_BINS, omu_INCLUSIVE).Throw(SOURCE, __LINE__);
    }
    if (limits.Length() != 2 || !(limits[0] < limits[1])) {
        omu_ValueErrorException("limits must be two numbers in ascending order").Throw(SOURCE, __LINE__);
    }
    return IntegerTuple(m_mesh.QualityHistogram(static_cast<std::size_t>(bins), limits[0], limits[1])).Copy();
}

omu_Primitive* fem_Part::Node(omu_Arguments& arguments)
{
    int label = 0;
    arguments.Begin();
    arguments.Get(label, "label");
    arguments.End("node");
    const fem_Point* const position = m_mesh.FindNode(label);
    if (position == nullptr) {
        ThrowNo("node", label);
    }
    return PointTuple(*position).Copy();
}

omu_Primitive* fem_Part::Elements(omu_Arguments& arguments)
{
    cow_List<int> labels;
    bool withQuality = false;
    arguments.Begin();
    arguments.Get(labels, "labels");
    arguments.Optional();
    arguments.Get(withQuality, "withQuality");
    arguments.End("elements");
    auto result = std::make_unique<omu_PrimList>(labels.Length());
    for (const int label : labels) {
        const auto nodes = m_mesh.FindElement(label);
        if (!nodes) {
            ThrowNo("element", label);
        }
        omu_PrimTuple element(withQuality ? 3 : 2);
        element.Put(label);
        element.Put(IntegerTuple(*nodes));
        if (withQuality) {
            element.Put(m_mesh.Quality(m_mesh.IndexOfElement(label)));
        }
        result->Put(element);
    }
    return result.release();
}

omu_Primitive* fem_Part::Coordinates(omu_Arguments& arguments)
{
    NoArguments(arguments, "coordinates");
    const std::span<const fem_Point> positions = m_mesh.Positions();
    const std::array<int, 2> dimensions{static_cast<int>(positions.size()), 3};
    return new omu_PrimArray(2, dimensions.data(), omu_PrimNumber::REAL64, positions.data());
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
    m_mesh.Translate(by);
    return new omu_PrimNone;
}

void fem_Part::ThrowNo(const char* kind, int label) const
{
    omu_KeyErrorException("part '" + m_name + "' has no " + kind + " " + cow_String(label)).Throw(SOURCE, __LINE__);
}
