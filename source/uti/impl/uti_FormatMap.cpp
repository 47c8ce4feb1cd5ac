#include "uti_FormatMap.h"

#include "thr_GlobalSingleton.h"
#include "thr_ThrSingletonRegistry.h"

template class thr_ThreadSingletonBase<uti_FormatMap>;
template class thr_ThreadSingleton<uti_FormatMap>;

namespace
{
constexpr auto DESTRUCT_LEVEL = static_cast<thr_ThreadObjectDestructLevel>(17);
} // namespace

uti_FormatMap::uti_FormatMap()
{
    thr_GlobalSingleton<thr_ThrSingletonRegistry>::Instance().SetDestructLevel(&Finalize, DESTRUCT_LEVEL);
    DefaultSettings();
}

void uti_FormatMap::DefaultSettings()
{
    Insert("defaultFormat", {uti_NumFormat::ENGINEERING, 6, 0, true});
    Insert("floatStepFormat", {uti_NumFormat::SCIENTIFIC, 1, 6, true});
    Insert("geometryFormat", {uti_NumFormat::ENGINEERING, 12, 6, false});
    Insert("fieldReportFormat", {uti_NumFormat::ENGINEERING, 6, 0, true});
}

int uti_FormatMap::Finalize()
{
    return thr_ThreadSingletonBase<uti_FormatMap>::Finalize();
}
