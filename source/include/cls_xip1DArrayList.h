#pragma once

#include "VEXomu_export.h"
#include "bio_Ifilter.h"
#include "bio_Ofilter.h"
#include "cls_xp1DArrayList.h"
#include "pnt_PrettyPrint.h"

#include <concepts>
#include <cstdint>

/// The binary stream form of a cls_xp1DArrayList: a 32-bit count of arrays, then each array as its 32-bit count and its
/// items. The identity is not part of it: a list that is built from a stream gets one of its own, and one that is read
/// into keeps the one it has. The functions are those of the list's row in the run-time type tables, which has lists of
/// floats only.
template <std::same_as<float> T> class cls_xip1DArrayList
{
public:
    static std::uint32_t TypeId();
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);
};

extern template class VEXOMU_API cls_xip1DArrayList<float>;

/// Null comes back as null; what is read belongs to the caller.
VEXOMU_API bio_Ifilter& operator>>(bio_Ifilter& in, cls_xp1DArrayList<float>*& list);
VEXOMU_API bio_Ifilter& operator>>(bio_Ifilter& in, cls_xp1DArrayList<float>& list);
VEXOMU_API bio_Ofilter& operator<<(bio_Ofilter& out, const cls_xp1DArrayList<float>* list);
VEXOMU_API bio_Ofilter& operator<<(bio_Ofilter& out, const cls_xp1DArrayList<float>& list);
VEXOMU_API pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const cls_xp1DArrayList<float>* list);
VEXOMU_API pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const cls_xp1DArrayList<float>& list);
