#include "omu_BackwardCompat.h"

#include "VEXcrt_System.h"

template class omi_SingletonBase<omu_BackwardCompat>;
template class omi_Singleton<omu_BackwardCompat>;

omu_BackwardCompat::omu_BackwardCompat() : m_isOn(!VEXCRT::GetEnvironment("BRENOW_DEVL_MODE"))
{
    const auto deprecated = VEXCRT::GetEnvironment("BRENOW_DEPRECATED");
    if (deprecated == "ON") {
        m_isOn = true;
    } else if (deprecated == "OFF") {
        m_isOn = false;
    }
}
