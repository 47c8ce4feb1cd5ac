#include "fem_Mesh.h"

#include <algorithm>
#include <cmath>

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

bool fem_Mesh::AddNode(int label, const fem_Point& position)
{
    if (!AddLabel(m_nodeRows, label)) {
        return false;
    }
    m_coordinates.Append(static_cast<float>(position[0]), static_cast<float>(position[1]),
                         static_cast<float>(position[2]));
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
    const float* const xyz = m_coordinates.GetCArray() + std::size_t{3} * nodeRow;
    return {xyz[0], xyz[1], xyz[2]};
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

double fem_Mesh::SixVolumes(const Rows& element) const
{
    const fem_Point origin = Position(element[0]);
    return Dot(Between(origin, Position(element[1])),
               Cross(Between(origin, Position(element[2])), Between(origin, Position(element[3]))));
}

double fem_Mesh::Volume() const
{
    double sum = 0.0;
    for (unsigned int row = 0; row < m_elementRows.Length(); ++row) {
        sum += std::abs(SixVolumes(RowsOf(row)));
    }
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
    for (unsigned int row = 0; row < m_elementRows.Length(); ++row) {
        const Rows element = RowsOf(row);
        for (const auto& [a, b, c] : FACES) {
            const fem_Point first = Position(element[a]);
            const fem_Point normal = Cross(Between(first, Position(element[b])), Between(first, Position(element[c])));
            Face face{{element[a], element[b], element[c]}, 0.5 * std::sqrt(Dot(normal, normal))};
            std::sort(face.corners.begin(), face.corners.end());
            faces.push_back(face);
        }
    }
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

double fem_Mesh::QualityOfRow(unsigned int elementRow) const
{
    const Rows element = RowsOf(elementRow);
    double squaredLengths = 0.0;
    for (const auto& [a, b] : EDGES) {
        const fem_Point edge = Between(Position(element[a]), Position(element[b]));
        squaredLengths += Dot(edge, edge);
    }
    if (squaredLengths == 0.0) {
        return 0.0; // all corners in one point
    }
    const double sixVolumes = SixVolumes(element);
    const double threeVolumes = std::abs(sixVolumes) / 2.0;
    return std::copysign(12.0 * std::cbrt(threeVolumes * threeVolumes) / squaredLengths, sixVolumes);
}

std::vector<fem_ElementQuality> fem_Mesh::WorstElements(std::size_t count) const
{
    std::vector<fem_ElementQuality> elements;
    for (unsigned int row = 0; row < m_elementRows.Length(); ++row) {
        elements.push_back({LabelOf(m_elementRows, row), QualityOfRow(row)});
    }
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
    for (unsigned int row = 0; row < m_elementRows.Length(); ++row) {
        const double quality = QualityOfRow(row);
        if (quality >= low && quality <= high) {
            const double position = (quality - low) / (high - low) * static_cast<double>(bins);
            ++counts[std::min(static_cast<std::size_t>(position), bins - 1)];
        }
    }
    return counts;
}

void fem_Mesh::Translate(const fem_Point& by)
{
    for (unsigned int row = 0; row < m_nodeRows.Length(); ++row) {
        const fem_Point from = Position(row);
        m_coordinates.SetCoord(static_cast<int>(row), static_cast<float>(from[0] + by[0]),
                               static_cast<float>(from[1] + by[1]), static_cast<float>(from[2] + by[2]));
    }
}
