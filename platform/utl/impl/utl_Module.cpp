#include "utl_Module.h"

#include "nex_CommandException.h"
#include "nex_Exception.h"
#include "nex_TextException.h"
#include "typ_ArchCompTable.h"

#include <iterator>

namespace
{
constexpr std::uint32_t COMPONENT = 31;

// Frozen: the ids stand in streams and in the parent columns of other components.
constexpr typ_Entry ROWS[] = {
    {},
    typ_EntryOf<nex_Exception>(typ_EXCEPTION, "nex_Exception", typ_ROOT),
    typ_EntryOf<nex_TextException>(typ_EXCEPTION, "nex_TextException", 0x1F0001),
    typ_EntryOf<nex_CommandException>(typ_EXCEPTION, "nex_CommandException", 0x1F0001),
};

int users = 0;
} // namespace

void utl_initialize(int& count)
{
    if (users++ == 0) {
        ++count;
        typ_ArchCompTable::InsertEntry(COMPONENT, utl_ArchEntry());
    }
}

void utl_finalize(int& count)
{
    if (users == 0) {
        return;
    }
    if (--users == 0) {
        --count;
    }
}

typ_ArchCompEntry utl_ArchEntry()
{
    return {ROWS, static_cast<std::uint32_t>(std::size(ROWS))};
}
