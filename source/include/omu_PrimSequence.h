#pragma once

#include "omu_Primitive.h"

/// Root of the script's sequences: tuples, lists, numeric arrays.
class VEXOMU_API omu_PrimSequence : public omu_Primitive
{
public:
    /// "sequence".
    cow_String TypeString() const override;
    std::uint32_t DynTypeId() const override;

    /// Number of items.
    virtual int Length() const = 0;
    /// The item at `index`; each class says how long it lives. Null where the class says so.
    virtual const omu_Primitive* Index(int index) const = 0;
    /// Items `low` up to but not including `high`, copied; the caller owns the result.
    virtual omu_PrimSequence* Slice(int low, int high) const = 0;
    /// The items `count` times over, copied; the caller owns the result.
    virtual omu_PrimSequence* Repeat(int count) const = 0;
    /// These items followed by those of `other`, copied; the caller owns the result.
    virtual omu_PrimSequence* Concat(omu_PrimSequence* other) const = 0;

    static std::uint32_t TypeId();
    /// Reports an assertion and returns null: the class is abstract.
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);

protected:
    using omu_Primitive::omu_Primitive;
};
