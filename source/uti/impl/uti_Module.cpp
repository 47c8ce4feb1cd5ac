#include "uti_Module.h"

#include "VEXcrt_System.h"
#include "typ_ArchCompTable.h"
#include "uti_CmdFailedException.h"
#include "uti_Coord3D.h"
#include "uti_CoordCont3D.h"
#include "uti_InterruptedException.h"
#include "uti_MessageFile.h"
#include "uti_NotExecutableException.h"
#include "uti_NotOnPathException.h"
#include "uti_ResourceManager.h"
#include "uti_SystemException.h"
#include "uti_XypException.h"

#include <cstdint>
#include <cstdio>
#include <iterator>

namespace
{

constexpr std::uint32_t COMPONENT = 2;

constexpr std::uint32_t PLAIN = 0x1F0001;   // nex_Exception
constexpr std::uint32_t TEXT = 0x1F0002;    // nex_TextException
constexpr std::uint32_t COMMAND = 0x1F0003; // nex_CommandException

// Frozen: the ids stand in streams.
constexpr typ_Entry ROWS[] = {
    {},
    typ_EntryOf<uti_SystemException>(typ_EXCEPTION, "uti_SystemException", PLAIN),
    typ_EntryOf<uti_NotOnPathException>(typ_EXCEPTION, "uti_NotOnPathException", TEXT),
    typ_EntryOf<uti_NotExecutableException>(typ_EXCEPTION, "uti_NotExecutableException", TEXT),
    typ_EntryOf<uti_CmdFailedException>(typ_EXCEPTION, "uti_CmdFailedException", PLAIN),
    typ_EntryOf<uti_InterruptedException>(typ_EXCEPTION, "uti_InterruptedException", PLAIN),
    typ_EntryOf<uti_XypException>(typ_EXCEPTION, "uti_XypException", COMMAND),
    typ_EntryOf<uti_Coord3D>(typ_VALUE, "uti_Coord3D", typ_ROOT),
    typ_EntryOf<uti_CoordCont3D>(typ_VALUE, "uti_CoordCont3D", typ_ROOT),
};

int users = 0;

void LoadMessages()
{
    const auto path = VEXCRT::GetEnvironment("VEXOMU_MESSAGES");
    if (!path || path->empty()) {
        return;
    }
    try {
        const uti_MessageFile messages(path->c_str());
        thr_ThreadSingleton<uti_ResourceManager>::Instance().InstallLookup(messages);
        uti_ResourceManager::InstallForNewThreads(messages);
    } catch (const nex_Exception& exception) {
        std::fprintf(stderr, "VEXOMU_MESSAGES: %s\n", exception.what());
    }
}

} // namespace

void uti_initialize(int& counter)
{
    if (users++ == 0) {
        ++counter;
        typ_ArchCompTable::InsertEntry(COMPONENT, uti_ArchEntry());
        LoadMessages();
    }
}

void uti_finalize(int& counter)
{
    if (users > 0 && --users == 0) {
        --counter;
    }
}

void uti_formalize() {}

typ_ArchCompEntry uti_ArchEntry()
{
    return {ROWS, static_cast<std::uint32_t>(std::size(ROWS))};
}
