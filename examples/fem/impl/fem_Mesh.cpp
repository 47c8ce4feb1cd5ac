#include "fem_Mesh.h"

#include "fem_Save.h"

#include "cls_ClassRegistrar.h"
#include "cls_MementoRead.h"
#include "cls_MementoWrite.h"
#include "cls_ReadVisitor.h"
#include "cow_2DArray.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace
{

// Corners of the faces of a tetrahedron, and of its edges.
constexpr std::array<std::array<std::size_t, 3>, 4> FACES{{{1, 2, 3}, {0, 3, 2}, {0, 1, 3}, {0, 2, 1}}};
constexpr std::array<std::array<std::size_t, 2>, 6> EDGES{{{0, 1}, {0, 2}, {0, 3}, {1, 2}, {1, 3}, {2, 3}}};

fem_Point Between(const fem_Point& from, const fem_Point& to)
{
    return {to[0] - from[0], to[1] - from[1], to[2] - from[2]};
}

fem_Point Cross(const fem_Point& a, const fem_Point& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double Dot(const fem_Point& a, const fem_Point& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

using Corners = std::array<fem_Point, fem_Mesh::NODES_PER_ELEMENT>;

/// Six times the signed volume.
double SixVolumes(const Corners& element)
{
    return Dot(Between(element[0], element[1]),
               Cross(Between(element[0], element[2]), Between(element[0], element[3])));
}

double QualityOf(const Corners& element)
{
    double squaredLengths = 0.0;
    for (const auto& [a, b] : EDGES) {
        const fem_Point edge = Between(element[a], element[b]);
        squaredLengths += Dot(edge, edge);
    }
    if (squaredLengths == 0.0) {
        return 0.0; // all corners in one point
    }
    const double sixVolumes = SixVolumes(element);
    const double threeVolumes = std::abs(sixVolumes) / 2.0;
    return std::copysign(12.0 * std::cbrt(threeVolumes * threeVolumes) / squaredLengths, sixVolumes);
}

const cls_FieldHandle NODES("nodes");
const cls_FieldHandle COORDINATES("coordinates");
const cls_FieldHandle ELEMENTS("elements");
const cls_FieldHandle CONNECTIVITY("connectivity");

cow_1DArray<int> LabelsOf(const omu_Table<unsigned int>& rows)
{
    cow_1DArray<int> labels(static_cast<int>(rows.Length()));
    int* const to = labels.Write();
    unsigned int label = 0;
    unsigned int row = 0;
    for (unsigned int i = 0; rows.GetEntry(i, label, row); ++i) {
        to[i] = static_cast<int>(label);
    }
    return labels;
}

int LabelOf(const omu_Table<unsigned int>& rows, unsigned int row)
{
    unsigned int label = 0;
    rows.GetEntry(row, label, row);
    return static_cast<int>(label);
}

/// Gives a label the next row; false unless it is above those before it.
bool AddLabel(omu_Table<unsigned int>& rows, int label)
{
    const unsigned int row = rows.Length();
    const int last = row != 0 ? LabelOf(rows, row - 1) : 0;
    return label > last && rows.Add(static_cast<unsigned int>(label), row);
}

} // namespace

fem_Mesh::fem_Mesh(const cls_ReadVisitor& visitor) : m_uid(visitor.GetUid())
{
    if (visitor.Memento() == nullptr) {
        fem_FailStored(visitor, "a part has no mesh");
    }
    m_coordinates = cls_2dArrayPrim<float>(cls_ReadVisitor(visitor, COORDINATES));
    m_coordinates.SetRowLength(3);
    for (const int label : visitor.Memento()->ReadIntArray(NODES, {})) {
        if (!AddLabel(m_nodeRows, label)) {
            fem_FailStored(visitor, "node " + cow_String(label) + " is out of order");
        }
    }
    const cow_1DArray<int> labels = visitor.Memento()->ReadIntArray(ELEMENTS, {});
    const cow_2DArray<int> nodes = visitor.Memento()->ReadIntMatrix(CONNECTIVITY, {});
    if (std::int64_t{m_coordinates.Size()} != std::int64_t{3} * m_nodeRows.Length() ||
        nodes.Rows() != labels.Length() ||
        (nodes.Rows() > 0 && nodes.Columns() != static_cast<int>(NODES_PER_ELEMENT))) {
        fem_FailStored(visitor, "its arrays differ in length");
    }
    for (int row = 0; row < labels.Length(); ++row) {
        if (!AddElement(labels[row], {nodes(row, 0), nodes(row, 1), nodes(row, 2), nodes(row, 3)})) {
            fem_FailStored(visitor,
                           "element " + cow_String(labels[row]) + " is out of order, or a node of it is not there");
        }
    }
}

void fem_Mesh::Register(cls_ClassRegistrar& registrar)
{
    const auto labels = cls_CollectionTypeFix(cls_COLLECTION_ARRAY, static_cast<int*>(nullptr));
    registrar.CreateClassMD("Mesh", CLASS_ID, 1, nullptr, 1)
        .AddAttribute(NODES, cls_ATTRIBUTE_INT, 1, labels)
        .AddAttribute(COORDINATES, cls_ATTRIBUTE_REAL, 3,
                      cls_CollectionTypeFix(cls_COLLECTION_2D_ARRAY, static_cast<float*>(nullptr)))
        .AddAttribute(ELEMENTS, cls_ATTRIBUTE_INT, 1, labels)
        .AddAttribute(CONNECTIVITY, cls_ATTRIBUTE_INT, NODES_PER_ELEMENT,
                      cls_CollectionTypeFix(cls_COLLECTION_2D_ARRAY, static_cast<int*>(nullptr)));
}

void fem_Mesh::DBWrite(const cls_WriteVisitor& visitor, fem_Save& save) const
{
    if (visitor.StartWrite(CLASS_ID, m_uid) == 0) {
        return;
    }
    const cow_1DArray<int> labels = LabelsOf(m_elementRows);
    cow_2DArray<int> nodes(labels.Length(), NODES_PER_ELEMENT);
    int* to = nodes.Write();
    for (const int label : labels) {
        to = std::ranges::copy(NodesOf(label), to).out;
    }
    visitor.Memento()->WriteIntArray(NODES, LabelsOf(m_nodeRows));
    visitor.Memento()->WriteIntArray(ELEMENTS, labels);
    visitor.Memento()->WriteIntMatrix(CONNECTIVITY, nodes);
    save.Write(visitor, COORDINATES, m_coordinates);
}

cls_2dArrayPrim<float> fem_Mesh::NoCoordinates()
{
    cls_2dArrayPrim<float> none;
    none.SetRowLength(3);
    return none;
}

bool fem_Mesh::AddNode(int label, const fem_Point& position)
{
    if (!AddLabel(m_nodeRows, label)) {
        return false;
    }
    for (const double coordinate : position) {
        m_coordinates.Append(static_cast<float>(coordinate));
    }
    return true;
}

bool fem_Mesh::AddElement(int label, const Nodes& nodeLabels)
{
    Rows rows{};
    for (std::size_t corner = 0; corner < NODES_PER_ELEMENT; ++corner) {
        const int node = nodeLabels[corner];
        if (node < 1 || !m_nodeRows.Get(static_cast<unsigned int>(node), &rows[corner])) {
            return false;
        }
    }
    const unsigned int elementRow = m_connectivity.NumRows();
    if (!m_connectivity.AddRow()) {
        return false;
    }
    const bool isWhole =
        std::all_of(rows.begin(), rows.end(), [&](unsigned int row) { return m_connectivity.Add(elementRow, row); });
    if (!isWhole || !AddLabel(m_elementRows, label)) {
        m_connectivity.RemoveRow(elementRow);
        return false;
    }
    return true;
}

fem_Point fem_Mesh::Position(unsigned int nodeRow) const
{
    const int row = static_cast<int>(nodeRow);
    return {m_coordinates.ConstGet(row, 0), m_coordinates.ConstGet(row, 1), m_coordinates.ConstGet(row, 2)};
}

uti_CoordCont3D fem_Mesh::Coordinates() const
{
    const cls_ArrayPrim<float>& flat = m_coordinates;
    auto copied = std::make_unique<float[]>(static_cast<std::size_t>(flat.Size()));
    for (int i = 0; i < flat.Size(); ++i) {
        copied[static_cast<std::size_t>(i)] = flat.ConstGet(i);
    }
    return {copied.release(), flat.Size(), 3};
}

template <class F> void fem_Mesh::ForEachElement(F measure) const
{
    const uti_CoordCont3D coordinates = Coordinates();
    const float* const xyz = coordinates.GetCArray();
    for (unsigned int element = 0; element < m_elementRows.Length(); ++element) {
        Corners corners{};
        std::ranges::transform(RowsOf(element), corners.begin(), [xyz](unsigned int row) {
            const float* const corner = xyz + std::size_t{3} * row;
            return fem_Point{corner[0], corner[1], corner[2]};
        });
        measure(element, corners);
    }
}

fem_Mesh::Nodes fem_Mesh::NodesOf(int elementLabel) const
{
    const Rows rows = RowsOf(m_elementRows[static_cast<unsigned int>(elementLabel)]);
    Nodes labels{};
    std::transform(rows.begin(), rows.end(), labels.begin(),
                   [this](unsigned int row) { return LabelOf(m_nodeRows, row); });
    return labels;
}

fem_Mesh::Rows fem_Mesh::RowsOf(unsigned int elementRow) const
{
    Rows rows{};
    for (unsigned int corner = 0; corner < NODES_PER_ELEMENT; ++corner) {
        rows[corner] = m_connectivity.Get(elementRow, corner);
    }
    return rows;
}

fem_Box fem_Mesh::BoundingBox() const
{
    fem_Box box{Position(0), Position(0)};
    for (unsigned int row = 1; row < m_nodeRows.Length(); ++row) {
        const fem_Point position = Position(row);
        for (std::size_t axis = 0; axis < position.size(); ++axis) {
            box.low[axis] = std::min(box.low[axis], position[axis]);
            box.high[axis] = std::max(box.high[axis], position[axis]);
        }
    }
    return box;
}

double fem_Mesh::Volume() const
{
    double sum = 0.0;
    ForEachElement([&sum](unsigned int, const Corners& corners) { sum += std::abs(SixVolumes(corners)); });
    return sum / 6.0;
}

double fem_Mesh::SurfaceArea() const
{
    struct Face
    {
        std::array<unsigned int, 3> corners; // ascending, so that the same face of two elements compares equal
        double area;
    };
    std::vector<Face> faces;
    faces.reserve(FACES.size() * m_elementRows.Length());
    ForEachElement([&](unsigned int row, const Corners& corners) {
        const Rows nodes = RowsOf(row);
        for (const auto& [a, b, c] : FACES) {
            const fem_Point normal = Cross(Between(corners[a], corners[b]), Between(corners[a], corners[c]));
            Face face{{nodes[a], nodes[b], nodes[c]}, 0.5 * std::sqrt(Dot(normal, normal))};
            std::sort(face.corners.begin(), face.corners.end());
            faces.push_back(face);
        }
    });
    std::sort(faces.begin(), faces.end(), [](const Face& a, const Face& b) { return a.corners < b.corners; });
    double area = 0.0;
    for (std::size_t i = 0; i < faces.size();) {
        std::size_t next = i + 1;
        while (next < faces.size() && faces[next].corners == faces[i].corners) {
            ++next;
        }
        area += next == i + 1 ? faces[i].area : 0.0;
        i = next;
    }
    return area;
}

double fem_Mesh::Quality(int elementLabel) const
{
    Corners corners{};
    std::ranges::transform(RowsOf(m_elementRows[static_cast<unsigned int>(elementLabel)]), corners.begin(),
                           [this](unsigned int row) { return Position(row); });
    return QualityOf(corners);
}

std::vector<fem_ElementQuality> fem_Mesh::WorstElements(std::size_t count) const
{
    std::vector<fem_ElementQuality> elements;
    ForEachElement([&](unsigned int row, const Corners& corners) {
        elements.push_back({LabelOf(m_elementRows, row), QualityOf(corners)});
    });
    const std::size_t wanted = std::min(count, elements.size());
    std::partial_sort(elements.begin(), elements.begin() + static_cast<std::ptrdiff_t>(wanted), elements.end(),
                      [](const fem_ElementQuality& a, const fem_ElementQuality& b) {
                          return a.quality != b.quality ? a.quality < b.quality : a.label < b.label;
                      });
    elements.resize(wanted);
    return elements;
}

std::vector<int> fem_Mesh::QualityHistogram(std::size_t bins, double low, double high) const
{
    std::vector<int> counts(bins, 0);
    ForEachElement([&](unsigned int, const Corners& corners) {
        const double quality = QualityOf(corners);
        if (quality >= low && quality <= high) {
            const double position = (quality - low) / (high - low) * static_cast<double>(bins);
            ++counts[std::min(static_cast<std::size_t>(position), bins - 1)];
        }
    });
    return counts;
}

void fem_Mesh::Translate(const fem_Point& by)
{
    const cls_ArrayPrim<float>& flat = m_coordinates;
    cls_2dArrayPrim<float> moved = NoCoordinates(); // in place, a file that cannot be written would stop it halfway
    for (int i = 0; i < flat.Size(); ++i) {
        moved.Append(static_cast<float>(flat.ConstGet(i) + by[static_cast<std::size_t>(i % 3)]));
    }
    m_coordinates = moved;
}
