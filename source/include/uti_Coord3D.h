#pragma once

#include "VEXomu_export.h"
#include "cls_PayloadHolder.h"
#include "cls_Uid.h"
#include "obj_Stream.h"

#include <cstdint>

class cls_ClassRegistrar;
class cls_ReadVisitor;
class cls_WriteVisitor;

/// A point with an identity in the store.
///
/// Stream: x, y, z, 32 bits each; the identity is no part of it. Stored as "c", the array of the three.
/// Ownership:  a copy shares the identity.
/// Threads:    one thread at a time; the identity binds it to a thread, see cls_Uid.
/// Errors:     nex_TextException for a stored record that holds another number of coordinates.
/// Avoid for:  many points: see uti_CoordCont3D.
class VEXOMU_API uti_Coord3D
{
public:
    using cow_Relocatable = uti_Coord3D;
    static constexpr int CLASS_VERSION = 203;

    uti_Coord3D() = default;
    uti_Coord3D(float x, float y, float z) : m_x(x), m_y(y), m_z(z) {}
    /// For ReadData to fill.
    explicit uti_Coord3D(bio_Ifilter&) {}
    explicit uti_Coord3D(const cls_ReadVisitor& visitor);
    uti_Coord3D(const uti_Coord3D&) = default;
    uti_Coord3D& operator=(const uti_Coord3D&) = default;
    virtual ~uti_Coord3D() = default;

    virtual std::uint32_t DynTypeId() const;
    /// True when the object is of the class or of one derived from it.
    virtual bool IsA(std::uint32_t typeId) const;
    virtual void DBWrite(const cls_WriteVisitor& visitor) const;

    float X() const noexcept { return m_x; }
    float Y() const noexcept { return m_y; }
    float Z() const noexcept { return m_z; }
    void Set(float x, float y, float z) noexcept
    {
        m_x = x;
        m_y = y;
        m_z = z;
    }
    const cls_Uid& Uid() const noexcept { return m_uid; }

    /// Compares the coordinates alone.
    friend bool operator==(const uti_Coord3D& left, const uti_Coord3D& right) noexcept
    {
        return left.m_x == right.m_x && left.m_y == right.m_y && left.m_z == right.m_z;
    }

    static void InitializeMetadata(cls_ClassRegistrar& registrar);
    static void* Ctor(cls_ReadVisitor& visitor);
    static void CowDtor(cls_PayloadHolder* payload);

    static std::uint32_t TypeId();
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);

private:
    float m_x = 0.0f;
    float m_y = 0.0f;
    float m_z = 0.0f;
    cls_Uid m_uid = cls_Uid::AllocateUid();
};
