#pragma once

#include "cow_String.h"

#include <cstdint>

class cls_ClassRegistrar;
class cls_ReadVisitor;
class cls_WriteVisitor;
class fem_Save;

/// The kernel's classes in a store. A file knows them by name and version; the numbers belong to this program.
///
/// A class has its layout in `Register`, writes itself in `DBWrite` and is read by the constructor that takes a
/// cls_ReadVisitor. Whoever changes what a class stores registers the new layout as a further version, and leaves those
/// before it as they are: files have them. The reading constructor gives a default for what an old version lacks.
enum fem_ClassId : std::uint32_t
{
    fem_SESSION = (1000U << 16) + 1,
    fem_MODEL,
    fem_PART,
    fem_MESH,
    fem_MATERIAL,
    fem_SET,
    fem_STEP,
    fem_FIELD,
    fem_REPOSITORY
};

/// Registers all of them.
void fem_RegisterClasses(cls_ClassRegistrar& registrar);

/// Throws nex_TextException "'file' record 12 (Part): what".
[[noreturn]] void fem_FailStored(const cls_ReadVisitor& visitor, const cow_String& what);
