#pragma once

#include "VEXutl_export.h"
#include "bio_Ifilter.h"
#include "bio_Ofilter.h"
#include "pnt_PrettyPrint.h"

#include <concepts>
#include <cstdint>
#include <memory>
#include <new>

/// Generic streaming of objects through the run-time type tables. Every call takes the object's address as its class's
/// static functions know it.
///
/// Ownership:  what obj_InputP0Ptr and obj_DeepCopyP0Ptr return belongs to the caller (delete it, or call the
///             destructor function of its type).
/// Errors:     nex_TextException: with the offset for an id that is unknown, unrelated to what is expected, or has no
///             functions; without one for writing or copying an object whose type has none.

/// Reads an id and the object it announces; null for id 0. The object's class must be `expectedTypeId` or derive from it.
VEXUTL_API void obj_InputP0Ptr(bio_Ifilter& in, void*& object, std::uint32_t expectedTypeId);
/// The same; `readTypeId` receives the id found in the stream (0 for null). An `expectedTypeId` of 0 accepts any type.
VEXUTL_API void obj_InputP0Ptr(bio_Ifilter& in, void*& object, std::uint32_t expectedTypeId, std::uint32_t& readTypeId);
/// Reads the object that the id `typeId`, not 0 and read at offset `start`, announced.
VEXUTL_API void* obj_InputAnnounced(bio_Ifilter& in, std::uint32_t typeId, std::uint32_t expectedTypeId,
                                    std::uint64_t start);
/// Reads into an existing object; the id in the stream must be exactly `typeId`.
VEXUTL_API void obj_InputP0Obj(bio_Ifilter& in, void* object, std::uint32_t typeId);
/// Writes id 0 for null, else the id and the object's data.
VEXUTL_API void obj_OutputP0Ptr(bio_Ofilter& out, const void* object, std::uint32_t typeId);
VEXUTL_API void obj_OutputP0Obj(bio_Ofilter& out, const void* object, std::uint32_t typeId);
/// Dumps the object; "(null)" for null.
VEXUTL_API void obj_PrintP0Ptr(pnt_PrettyPrint& out, const void* object, std::uint32_t typeId);
VEXUTL_API void obj_PrintP0Obj(pnt_PrettyPrint& out, const void* object, std::uint32_t typeId);
/// A deep copy of an object known only by its type id, made through its stream functions; null for null.
VEXUTL_API void* obj_DeepCopyP0Ptr(const void* object, std::uint32_t typeId);

/// A class with an identity and stream functions of its own.
template <class C>
concept obj_Persistable = requires(const C& object, C* target, bio_Ifilter& in, bio_Ofilter& out) {
    {
        C::TypeId()
    } -> std::convertible_to<std::uint32_t>;
    {
        object.DynTypeId()
    } -> std::convertible_to<std::uint32_t>;
    C::ReadData(in, target);
    C::WriteData(out, &object);
};

template <obj_Persistable C> bio_Ifilter& operator>>(bio_Ifilter& in, C*& object)
{
    void* read = nullptr;
    obj_InputP0Ptr(in, read, C::TypeId());
    object = static_cast<C*>(read);
    return in;
}

template <obj_Persistable C> bio_Ifilter& operator>>(bio_Ifilter& in, C& object)
{
    obj_InputP0Obj(in, &object, object.DynTypeId());
    return in;
}

template <obj_Persistable C> bio_Ofilter& operator<<(bio_Ofilter& out, const C* object)
{
    obj_OutputP0Ptr(out, object, object != nullptr ? object->DynTypeId() : 0);
    return out;
}

template <obj_Persistable C> bio_Ofilter& operator<<(bio_Ofilter& out, const C& object)
{
    obj_OutputP0Obj(out, &object, object.DynTypeId());
    return out;
}

template <obj_Persistable C> pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const C* object)
{
    obj_PrintP0Ptr(out, object, object != nullptr ? object->DynTypeId() : 0);
    return out;
}

template <obj_Persistable C> pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const C& object)
{
    obj_PrintP0Obj(out, &object, object.DynTypeId());
    return out;
}

/// What a class's CtorFunc does: builds a C from the stream, in `place` or (null) in new memory. Nothing is left behind
/// when reading throws.
template <class C> void* obj_Construct(bio_Ifilter& in, void* place)
{
    if (place == nullptr) {
        auto object = std::make_unique<C>(in);
        C::ReadData(in, object.get());
        return object.release();
    }
    C* const object = ::new (place) C(in);
    try {
        C::ReadData(in, object);
    } catch (...) {
        object->~C();
        throw;
    }
    return object;
}

/// What a class's DtorFunc does: deletes through the virtual destructor; null is allowed.
template <class C> void obj_Destroy(void* object)
{
    delete static_cast<C*>(object);
}
