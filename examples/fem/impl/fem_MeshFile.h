#pragma once

#include "fem_Mesh.h"

#include "cow_String.h"

#include <memory>
#include <string_view>
#include <vector>

/// What a mesh file holds: nodes, and tetrahedra that each belong to a body.
///
/// Reads the ASCII form of MSH 2.2, the format in which gmsh writes with `-format msh2`. Points, lines and triangles are
/// passed over, and so are sections other than $MeshFormat, $Nodes and $Elements. The body of an element is its second
/// tag, the elementary entity.
///
/// Ownership:  an ordinary value.
/// Complexity: O(size of the file); memory grows with what was read, never with a count that the file merely states.
/// Errors:     uti_SystemException for a file that cannot be read; nex_TextException "<file>:<line>: <what>" for one
///             that is not a whole mesh.
class fem_MeshFile
{
public:
    /// Reads the file at `path`.
    static fem_MeshFile Read(const cow_String& path);
    /// Reads a whole file's text; `name` stands for the file in errors.
    static fem_MeshFile Parse(std::string_view text, const cow_String& name);

    /// The bodies that have elements, ascending.
    std::vector<int> Bodies() const;
    /// The mesh of one body, or of all with ALL_BODIES; without elements when there is no such body. Only nodes that the
    /// elements use are in it.
    static constexpr int ALL_BODIES = 0;
    std::unique_ptr<fem_Mesh> MeshOfBody(int body) const;

private:
    struct Node
    {
        int label;
        fem_Point position;
    };
    struct Element
    {
        int label;
        int body;
        fem_Mesh::Nodes nodes;
    };
    friend class fem_MeshParser;

    std::vector<Node> m_nodes;       // ascending labels
    std::vector<Element> m_elements; // likewise
};
