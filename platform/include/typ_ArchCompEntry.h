#pragma once

#include "VEXutl_export.h"

#include <cstdint>

class bio_Ifilter;
class bio_Ofilter;
class pnt_PrettyPrint;

/// Kinds of rows: what the run-time tables hold about a persistable class.
enum typ_KindEnm : std::uint32_t
{
    typ_EMPTY = 0,
    typ_EXCEPTION = 4,
    typ_VALUE = 7
};

/// The parent of a class that has none in its library.
inline constexpr std::uint32_t typ_ROOT = 1;

/// One persistable class: its identity and the static functions that build, stream, print and delete its objects.
/// A row without functions has an identity only.
struct typ_Entry
{
    using CtorFn = void* (*)(bio_Ifilter& in, void* place);
    using ReadFn = void (*)(bio_Ifilter& in, void* object);
    using WriteFn = void (*)(bio_Ofilter& out, const void* object);
    using PrintFn = void (*)(pnt_PrettyPrint& out, const void* object);
    using DtorFn = void (*)(void* object);

    std::uint32_t kind = typ_EMPTY;
    const char* name = nullptr;
    std::uint32_t parent = 0; ///< type id of the base class, or typ_ROOT
    CtorFn ctor = nullptr;
    ReadFn read = nullptr;
    WriteFn write = nullptr;
    PrintFn print = nullptr;
    DtorFn dtor = nullptr;
    bool isAbstract = false; ///< no stream may announce an object of the class
};

/// The row of class C with all its static functions.
template <class C>
constexpr typ_Entry typ_EntryOf(typ_KindEnm kind, const char* name, std::uint32_t parent, bool isAbstract = false)
{
    return {kind, name, parent, C::CtorFunc, C::ReadData, C::WriteData, C::PrintData, C::DtorFunc, isAbstract};
}

/// The rows of one component; row r of component c has type id (c << 16) + r. Row 0 is always empty.
/// Ownership: refers to a static array of the component's library.
struct typ_ArchCompEntry
{
    const typ_Entry* rows = nullptr;
    std::uint32_t count = 0;
};
