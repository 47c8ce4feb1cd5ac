#pragma once

#include "fem_Stored.h"

#include "cls_2dArrayPrim.h"
#include "cls_Uid.h"
#include "omu_Table.h"
#include "omu_VaryMatrixUint32.h"
#include "uti_CoordCont3D.h"

#include <array>
#include <cstddef>
#include <vector>

/// A point or vector, in the length unit of the file; measures are computed in double precision.
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

/// A mesh of four-node tetrahedra: nodes and elements with labels above 0, each in a row of its own in the order of the
/// labels, connectivity by rows. Coordinates are held in single precision, once the mesh is saved in the session's file, one
/// block of them in memory.
///
/// Ownership:  owns its nodes and elements; not copied.
/// Threads:    the thread that made it.
/// Complexity: measures are O(elements) and hold all coordinates meanwhile, SurfaceArea O(elements log elements); look-up
///             of a label see omu_Table, of a position cls_ArrayPrim.
/// Errors:     a node or element that cannot be added gives false and changes nothing.
class fem_Mesh
{
public:
    static constexpr std::size_t NODES_PER_ELEMENT = 4;
    using Nodes = std::array<int, NODES_PER_ELEMENT>;
    using Rows = std::array<unsigned int, NODES_PER_ELEMENT>;

    static constexpr std::uint32_t CLASS_ID = fem_MESH;

    fem_Mesh() = default;
    explicit fem_Mesh(const cls_ReadVisitor& visitor);

    static void Register(cls_ClassRegistrar& registrar);
    void DBWrite(const cls_WriteVisitor& visitor, fem_Save& save) const;
    void Restore() const { m_coordinates.Snap(); }

    /// False unless the label is above those before it, or without memory.
    bool AddNode(int label, const fem_Point& position);
    /// The same; the nodes must be there.
    bool AddElement(int label, const Nodes& nodeLabels);

    /// Label -> row.
    const omu_Table<unsigned int>& NodeRows() const noexcept { return m_nodeRows; }
    const omu_Table<unsigned int>& ElementRows() const noexcept { return m_elementRows; }

    // By row.
    /// A copy of all of them.
    uti_CoordCont3D Coordinates() const;
    fem_Point Position(unsigned int nodeRow) const;
    /// Of an element that is there.
    Nodes NodesOf(int elementLabel) const;

    /// Of a mesh with nodes.
    fem_Box BoundingBox() const;
    /// Sum of the element volumes, each without its sign.
    double Volume() const;
    /// Area of the faces that belong to one element only.
    double SurfaceArea() const;
    /// Mean ratio 12 (3 V)^(2/3) / sum of squared edge lengths (A. Liu and B. Joe, "On the shape of tetrahedra from
    /// bisection", Mathematics of Computation 63, 1994), with the sign of the volume. Of an element that is there.
    double Quality(int elementLabel) const;
    /// The `count` elements of lowest quality, worst first; equal ones by label.
    std::vector<fem_ElementQuality> WorstElements(std::size_t count) const;
    /// How many elements fall into each of `bins` intervals of equal width from `low` to `high`; the ends belong to the
    /// first and last interval, elements outside to none.
    std::vector<int> QualityHistogram(std::size_t bins, double low, double high) const;

    /// The coordinates are all in memory then, until the next save.
    void Translate(const fem_Point& by);

private:
    static cls_2dArrayPrim<float> NoCoordinates();
    Rows RowsOf(unsigned int elementRow) const;
    /// Calls `measure` with the corners of each element, in the order of the rows.
    template <class F> void ForEachElement(F measure) const;

    cls_Uid m_uid = cls_Uid::AllocateUid();
    // The entry at position i of a table has row i, because labels ascend.
    omu_Table<unsigned int> m_nodeRows;
    omu_Table<unsigned int> m_elementRows;
    omu_VaryMatrixUint32 m_connectivity{16, NODES_PER_ELEMENT, 2.0, 2.0}; // by row, the rows of its nodes
    mutable cls_2dArrayPrim<float> m_coordinates = NoCoordinates();       // by row; a save changes where it is kept
};
