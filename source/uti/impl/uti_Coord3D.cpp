#include "uti_Coord3D.h"

#include "cls_ClassRegistrar.h"
#include "cls_MementoRead.h"
#include "cls_MementoWrite.h"
#include "cls_ReadVisitor.h"
#include "cls_WriteVisitor.h"
#include "cow_1DArray.h"
#include "cow_COW.h"
#include "nex_TextException.h"
#include "typ_ArchCompTable.h"

namespace
{
constexpr std::uint32_t TYPE_ID = 0x20007;

cls_FieldHandle CoordinatesField()
{
    return cls_FieldHandle("c");
}
} // namespace

uti_Coord3D::uti_Coord3D(const cls_ReadVisitor& visitor) : m_uid(visitor.GetUid())
{
    if (visitor.Memento() == nullptr) {
        return;
    }
    const cow_1DArray<float> read = visitor.Memento()->ReadFloatArray(CoordinatesField(), {m_x, m_y, m_z});
    if (read.Length() != 3) {
        nex_TextException("uti_Coord3D " + visitor.DbId() + ": " + cow_String(read.Length()) + " coordinates, not 3")
            .Throw("source/uti/impl/uti_Coord3D", __LINE__);
    }
    Set(read[0], read[1], read[2]);
}

// Defined for users of the DLL who bind references to it.
constexpr int uti_Coord3D::CLASS_VERSION;

std::uint32_t uti_Coord3D::DynTypeId() const
{
    return TYPE_ID;
}

bool uti_Coord3D::IsA(std::uint32_t typeId) const
{
    return typ_ArchCompTable::IsParent(DynTypeId(), typeId);
}

void uti_Coord3D::DBWrite(const cls_WriteVisitor& visitor) const
{
    if (visitor.StartWrite(TYPE_ID, m_uid)) {
        visitor.Memento()->WriteFloatArray(CoordinatesField(), {m_x, m_y, m_z});
    }
}

void uti_Coord3D::InitializeMetadata(cls_ClassRegistrar& registrar)
{
    registrar.CreateClassMD("uti_Coord3D", TYPE_ID, CLASS_VERSION, &Ctor, 1)
        .AddDtor(&CowDtor)
        .AddAttribute(CoordinatesField(), cls_ATTRIBUTE_REAL, 1, cls_COLLECTION_NONE);
}

void* uti_Coord3D::Ctor(cls_ReadVisitor& visitor)
{
    return new uti_Coord3D(visitor);
}

void uti_Coord3D::CowDtor(cls_PayloadHolder* payload)
{
    using Holder = cow_COW<uti_Coord3D, cow_Direct<uti_Coord3D>>;
    *reinterpret_cast<Holder*>(payload) = Holder();
}

std::uint32_t uti_Coord3D::TypeId()
{
    return TYPE_ID;
}

void* uti_Coord3D::CtorFunc(bio_Ifilter& in, void* place)
{
    return obj_Construct<uti_Coord3D>(in, place);
}

void uti_Coord3D::DtorFunc(void* object)
{
    obj_Destroy<uti_Coord3D>(object);
}

void uti_Coord3D::ReadData(bio_Ifilter& in, void* object)
{
    float x = 0.0f, y = 0.0f, z = 0.0f;
    in >> x >> y >> z;
    static_cast<uti_Coord3D*>(object)->Set(x, y, z);
}

void uti_Coord3D::WriteData(bio_Ofilter& out, const void* object)
{
    const auto& point = *static_cast<const uti_Coord3D*>(object);
    out << point.m_x << point.m_y << point.m_z;
}

void uti_Coord3D::PrintData(pnt_PrettyPrint& out, const void* object)
{
    const auto& point = *static_cast<const uti_Coord3D*>(object);
    out.Open("uti_Coord3D");
    out.Field(point.m_x);
    out.Field(point.m_y);
    out.Field(point.m_z);
    out.Close();
}
