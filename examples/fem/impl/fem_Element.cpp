#include "fem_Element.h"

#include "fem_Part.h"

#include "omu_PrimNumber.h"
#include "omu_PrimTuple.h"

#include <memory>

fem_Element::fem_Element(fem_Part& part, int label) : m_part(part), m_label(label)
{
    static constexpr memberTable members[] = {
        {"label", "-> int: Its number in the mesh file.", omu_AsGetter<&fem_Element::GetLabel>, nullptr},
        {"nodes", "-> tuple[int, ...]: The labels of its nodes.", omu_AsGetter<&fem_Element::GetNodes>, nullptr},
        {"part", "-> Part: The part that it belongs to.", omu_AsGetter<&fem_Element::GetPart>, nullptr},
        {"quality", "-> float: Mean ratio: 1 for the regular tetrahedron, towards 0 for flat ones.",
         omu_AsGetter<&fem_Element::GetQuality>, nullptr},
        {},
    };
    DescribeType("Element", nullptr, members);
}

cow_String fem_Element::AsString(int depth) const
{
    return m_part.AsString(depth) + ".elements[" + cow_String(m_label) + "]";
}

omu_Primitive* fem_Element::GetLabel()
{
    return new omu_PrimNumber(m_label);
}

omu_Primitive* fem_Element::GetNodes()
{
    auto labels = std::make_unique<omu_PrimTuple>(static_cast<int>(fem_Mesh::NODES_PER_ELEMENT));
    for (const int label : Part().Mesh().NodesOf(m_label)) {
        labels->Put(label);
    }
    return labels.release();
}

omu_Primitive* fem_Element::GetQuality()
{
    return new omu_PrimNumber(Part().Mesh().Quality(m_label));
}

const fem_Part& fem_Element::Part() const
{
    return static_cast<const fem_Part&>(m_part.Target());
}
