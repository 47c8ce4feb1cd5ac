#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

/// A point or vector, in the length unit of the file.
using fem_Point = std::array<double, 3>;

/// Extent of a mesh, corner to corner.
struct fem_Box
{
    fem_Point low;
    fem_Point high;
};

/// The quality of one element: 1 for the regular tetrahedron, towards 0 for flat ones, negative for inverted ones.
struct fem_ElementQuality
{
    int label;
    double quality;
};

/// A mesh of four-node tetrahedra: nodes and elements with labels, connectivity by node index.
///
/// Ownership:  owns its nodes and elements; an ordinary value.
/// Threads:    one thread at a time.
/// Complexity: measures are O(elements), SurfaceArea O(elements log elements); look-up of a label O(1).
/// Errors:     adding an element with an unknown node or a label that is taken returns false and changes nothing.
class fem_Mesh
{
public:
    static constexpr std::size_t NODES_PER_ELEMENT = 4;
    using Connectivity = std::array<std::uint32_t, NODES_PER_ELEMENT>;

    /// False when the label is taken.
    bool AddNode(int label, const fem_Point& position);
    /// False when the label is taken or a node is unknown.
    bool AddElement(int label, std::span<const int, NODES_PER_ELEMENT> nodeLabels);

    std::size_t NodeCount() const noexcept { return m_positions.size(); }
    std::size_t ElementCount() const noexcept { return m_elements.size(); }
    /// Null when there is no such node.
    const fem_Point* FindNode(int label) const;
    /// In the order in which they were added.
    std::span<const fem_Point> Positions() const noexcept { return m_positions; }
    /// The element's node labels; none when there is no such element.
    std::optional<std::array<int, NODES_PER_ELEMENT>> FindElement(int label) const;
    /// The position of an element that is there, for Quality.
    std::size_t IndexOfElement(int label) const { return m_elementIndex.at(label); }

    /// Of a mesh with nodes.
    fem_Box BoundingBox() const;
    /// Sum of the element volumes, each without its sign.
    double Volume() const;
    /// Area of the faces that belong to one element only.
    double SurfaceArea() const;
    /// Mean ratio 12 (3 V)^(2/3) / sum of squared edge lengths (A. Liu and B. Joe, "On the shape of tetrahedra from
    /// bisection", Mathematics of Computation 63, 1994), with the sign of the volume. `index` counts from 0.
    double Quality(std::size_t index) const;
    /// The `count` elements of lowest quality, worst first; equal ones by label.
    std::vector<fem_ElementQuality> WorstElements(std::size_t count) const;
    /// How many elements fall into each of `bins` intervals of equal width from `low` to `high`; the ends belong to the
    /// first and last interval, elements outside to none.
    std::vector<int> QualityHistogram(std::size_t bins, double low, double high) const;

    void Translate(const fem_Point& by);

private:
    /// Six times the signed volume.
    double SixVolumes(const Connectivity& element) const;

    std::vector<int> m_nodeLabels;
    std::vector<fem_Point> m_positions;
    std::vector<int> m_elementLabels;
    std::vector<Connectivity> m_elements;
    std::unordered_map<int, std::uint32_t> m_nodeIndex;    // label -> position in the vectors above
    std::unordered_map<int, std::uint32_t> m_elementIndex; // the same for elements
};
