#pragma once

#include "VEXomu_export.h"
#include "omi_Singleton.h"

class omu_BackwardCompat;
extern template class VEXOMU_API omi_SingletonBase<omu_BackwardCompat>;
extern template class VEXOMU_API omi_Singleton<omu_BackwardCompat>;

/// Whether scripts may still use deprecated names. The environment decides, once, on first use: on by default, off when
/// BRENOW_DEVL_MODE is set; BRENOW_DEPRECATED overrides both when it is exactly "ON" or "OFF".
///
/// Threads: first used before other threads start; reading is safe from any thread afterwards.
/// Example: if (omi_Singleton<omu_BackwardCompat>::Instance().IsOn()) { ... }
class VEXOMU_API omu_BackwardCompat : public omi_SingletonBase<omu_BackwardCompat>
{
public:
    bool IsOn() const noexcept { return m_isOn; }

private:
    friend class omi_Singleton<omu_BackwardCompat>;
    friend class omi_SingletonBase<omu_BackwardCompat>;
    omu_BackwardCompat();
    ~omu_BackwardCompat() = default;

    bool m_isOn;
};
