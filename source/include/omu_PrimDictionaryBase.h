#pragma once

#include "omu_Primitive.h"

/// Root of the script's dictionaries, whose keys are all strings or all integers.
class VEXOMU_API omu_PrimDictionaryBase : public omu_Primitive
{
public:
    /// "dictionary".
    cow_String TypeString() const override;
    std::uint32_t DynTypeId() const override;

    /// The kind of the keys: 's' for strings, 'i' for integers.
    virtual char Kind() const = 0;

    static std::uint32_t TypeId();
    /// Reports an assertion and returns null: the class is abstract.
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);

protected:
    omu_PrimDictionaryBase() noexcept : omu_Primitive('{') {}
    explicit omu_PrimDictionaryBase(bio_Ifilter& in) noexcept : omu_Primitive(in, '{') {}
};
