#include "cls_Module.h"

#include "cls_xip1DArrayList.h"
#include "typ_ArchCompTable.h"

#include <iterator>

namespace
{
// Rows without functions are identities: their objects are stored, never streamed.
constexpr typ_Entry ROWS[] = {
    {},
    typ_EntryOf<cls_xip1DArrayList<float>>(typ_VALUE, "cls_xip1DArrayList", typ_ROOT),
    {.kind = typ_VALUE, .name = "cls_PC", .parent = typ_ROOT},
    {.kind = typ_VALUE, .name = "cls_ArrayPrim", .parent = cls_TypeIdOf(cls_PC_ROW)},
    {.kind = typ_VALUE, .name = "cls_2dArrayPrim", .parent = cls_TypeIdOf(cls_ARRAY_PRIM_ROW)},
};
static_assert(std::size(ROWS) == cls_ROW_COUNT);

int calls = 0;
} // namespace

void cls_initialize(int& count)
{
    if (calls++ == 0) {
        ++count;
        typ_ArchCompTable::InsertEntry(cls_COMPONENT, cls_ArchEntry());
    }
}

void cls_finalize(int& count)
{
    if (calls != 0 && --calls == 0) {
        --count;
    }
}

typ_ArchCompEntry cls_ArchEntry()
{
    return {ROWS, cls_ROW_COUNT};
}
