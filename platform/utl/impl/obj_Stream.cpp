#include "obj_Stream.h"

#include "nex_TextException.h"
#include "typ_ArchCompTable.h"

#include <cstdio>

namespace
{
cow_String Unknown(std::uint32_t typeId)
{
    char text[40];
    std::snprintf(text, sizeof text, "unknown type id 0x%X", static_cast<unsigned int>(typeId));
    return text;
}

cow_String WithoutFunctions(const typ_Entry& row)
{
    return "type " + cow_String(row.name) + " has no stream functions";
}

[[noreturn]] void Fail(const cow_String& text)
{
    nex_TextException(text).Throw("platform/utl/impl/obj_Stream", __LINE__);
}

/// The row of an object in memory, which must have the wanted function.
template <class Function> const typ_Entry& RowWith(std::uint32_t typeId, Function typ_Entry::*function)
{
    const typ_Entry* const row = typ_ArchCompTable::Find(typeId);
    if (row == nullptr) {
        Fail(Unknown(typeId));
    }
    if (row->*function == nullptr) {
        Fail(WithoutFunctions(*row));
    }
    return *row;
}

/// The row of an object that the stream announces at `start`, when it may stand where `expectedTypeId` is
/// expected.
const typ_Entry& AnnouncedRow(bio_Ifilter& in, std::uint32_t typeId, std::uint32_t expectedTypeId, std::uint64_t start)
{
    const typ_Entry* const row = typ_ArchCompTable::Find(typeId);
    if (row == nullptr) {
        in.FailAt(Unknown(typeId).AsCharPtr(), start);
    }
    if (expectedTypeId != 0 && !typ_ArchCompTable::IsParent(typeId, expectedTypeId)) {
        const cow_String expected = typ_ArchCompTable::GetName(expectedTypeId);
        in.FailAt(("type " + cow_String(row->name) + " where " + expected + " is expected").AsCharPtr(), start);
    }
    if (row->ctor == nullptr || row->read == nullptr) {
        in.FailAt(WithoutFunctions(*row).AsCharPtr(), start);
    }
    if (row->isAbstract) {
        in.FailAt(("type " + cow_String(row->name) + " is abstract").AsCharPtr(), start);
    }
    return *row;
}
} // namespace

void obj_InputP0Ptr(bio_Ifilter& in, void*& object, std::uint32_t expectedTypeId)
{
    std::uint32_t readTypeId = 0;
    obj_InputP0Ptr(in, object, expectedTypeId, readTypeId);
}

void obj_InputP0Ptr(bio_Ifilter& in, void*& object, std::uint32_t expectedTypeId, std::uint32_t& readTypeId)
{
    object = nullptr;
    readTypeId = 0;
    const std::uint64_t start = in.Offset();
    std::uint32_t typeId = 0;
    in >> typeId;
    if (typeId != 0) {
        object = obj_InputAnnounced(in, typeId, expectedTypeId, start);
        readTypeId = typeId;
    }
}

void* obj_InputAnnounced(bio_Ifilter& in, std::uint32_t typeId, std::uint32_t expectedTypeId, std::uint64_t start)
{
    const bio_Ifilter::Nested nested(in);
    return AnnouncedRow(in, typeId, expectedTypeId, start).ctor(in, nullptr);
}

void obj_InputP0Obj(bio_Ifilter& in, void* object, std::uint32_t typeId)
{
    const std::uint64_t start = in.Offset();
    std::uint32_t readTypeId = 0;
    in >> readTypeId;
    const bio_Ifilter::Nested nested(in);
    const typ_Entry& row = AnnouncedRow(in, readTypeId, typeId, start);
    if (readTypeId != typeId) {
        // A derived class's data does not fit into an object of the base.
        const cow_String exact = typ_ArchCompTable::GetName(typeId);
        in.FailAt(("type " + cow_String(row.name) + " where exactly " + exact + " is expected").AsCharPtr(), start);
    }
    row.read(in, object);
}

void obj_OutputP0Ptr(bio_Ofilter& out, const void* object, std::uint32_t typeId)
{
    if (object == nullptr) {
        out << std::uint32_t{0};
    } else {
        obj_OutputP0Obj(out, object, typeId);
    }
}

void obj_OutputP0Obj(bio_Ofilter& out, const void* object, std::uint32_t typeId)
{
    const typ_Entry& row = RowWith(typeId, &typ_Entry::write);
    const bio_Ofilter::Nested nested(out);
    out << typeId;
    row.write(out, object);
}

void obj_PrintP0Ptr(pnt_PrettyPrint& out, const void* object, std::uint32_t typeId)
{
    if (object == nullptr) {
        out << "(null)";
    } else {
        obj_PrintP0Obj(out, object, typeId);
    }
}

void obj_PrintP0Obj(pnt_PrettyPrint& out, const void* object, std::uint32_t typeId)
{
    RowWith(typeId, &typ_Entry::print).print(out, object);
}

void* obj_DeepCopyP0Ptr(const void* object, std::uint32_t typeId)
{
    if (object == nullptr) {
        return nullptr;
    }
    bio_Ofilter out;
    RowWith(typeId, &typ_Entry::write).write(out, object);
    bio_Ifilter in(out.Data(), out.Size());
    return RowWith(typeId, &typ_Entry::ctor).ctor(in, nullptr);
}
