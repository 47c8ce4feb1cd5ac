#pragma once

#include "cow_List.h"
#include "omu_Primitive.h"

/// The address of an object in the application's object tree: the names from the root down.
class VEXOMU_API omu_PrimPath : public omu_Primitive
{
public:
    /// The kind of a path that nobody gave another one. A kind travels with the path and is not interpreted here.
    static constexpr char DEFAULT_KIND = 'o';

    omu_PrimPath() noexcept : omu_Primitive('p') {}
    explicit omu_PrimPath(const cow_List<cow_String>& components, char kind = DEFAULT_KIND) noexcept;
    explicit omu_PrimPath(bio_Ifilter& in);

    const cow_List<cow_String>& Components() const noexcept { return m_components; }
    char Kind() const noexcept { return m_kind; }

    /// "path".
    cow_String TypeString() const override;
    /// The components joined by dots, in single quotes; dots at the very end are dropped.
    cow_String AsString(int depth) const override;
    /// Equal components; the kind does not count. Only a path equals a path.
    bool operator==(const omu_Primitive& other) const override;
    void Accept(omu_PrimVisitor* visitor) const override;
    omu_Primitive* Copy() const override;
    std::uint32_t DynTypeId() const override;

    static std::uint32_t TypeId();
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    /// Type code, components, kind.
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);

private:
    char m_kind = DEFAULT_KIND;
    cow_List<cow_String> m_components;
};
