#pragma once

#include "omu_PrimTuple.h"

/// The script's list. It shares the tuple's type code, so that whatever takes a tuple takes a list.
///
/// Ownership, threads, complexity, errors, references: see omu_PrimTuple. A slice of a list is a list.
class VEXOMU_API omu_PrimList : public omu_PrimTuple
{
public:
    explicit omu_PrimList(int size = 0) : omu_PrimTuple(size) {}
    /// `extra` travels with the list and its stream for whoever made it; it is not interpreted here, and does not count
    /// in comparisons.
    omu_PrimList(int size, int extra) : omu_PrimTuple(size), m_extra(extra) {}
    explicit omu_PrimList(bio_Ifilter& in) : omu_PrimTuple(in) {}

    int GetExtra() const noexcept { return m_extra; }

    /// "list".
    cow_String TypeString() const override;
    void Accept(omu_PrimVisitor* visitor) const override;
    omu_Primitive* Copy() const override;
    std::uint32_t DynTypeId() const override;

    omu_PrimSequence* Slice(int low, int high) const override;
    omu_PrimSequence* Repeat(int count) const override;
    omu_PrimSequence* Concat(omu_PrimSequence* other) const override;

    static std::uint32_t TypeId();
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    /// The tuple's data, extra.
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);

private:
    int m_extra = 0;
};
