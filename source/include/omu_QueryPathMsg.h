#pragma once

#include "omu_PrimPath.h"

/// Asks for the object at a path. A message, not a script value: it has an identity and stream functions of its own.
class VEXOMU_API omu_QueryPathMsg
{
public:
    explicit omu_QueryPathMsg(const omu_PrimPath& path) : m_path(path) {}
    explicit omu_QueryPathMsg(bio_Ifilter& in);
    virtual ~omu_QueryPathMsg() = default;

    const omu_PrimPath& Path() const noexcept { return m_path; }

    virtual std::uint32_t DynTypeId() const;

    static std::uint32_t TypeId();
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    /// The path as an object.
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);

private:
    omu_PrimPath m_path;
};
