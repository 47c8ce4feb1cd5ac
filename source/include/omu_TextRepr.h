#pragma once

#include "VEXomu_export.h"
#include "cow_String.h"
#include "omi_Singleton.h"

#include <limits>

class omu_InterfaceObj;
class omu_TextRepr;
extern template class VEXOMU_API omi_SingletonBase<omu_TextRepr>;
extern template class VEXOMU_API omi_Singleton<omu_TextRepr>;

/// How kernel objects and repositories are shown to scripts. The texts of plain values do not depend on these settings.
///
/// Threads: the application's main thread.
/// Errors:  a setter stores what it is given; those who read a setting make sense of it.
class VEXOMU_API omu_TextRepr : public omi_SingletonBase<omu_TextRepr>
{
public:
    int GetSimpleStyle() const noexcept { return m_simpleStyle; }
    void SetSimpleStyle(int style) noexcept { m_simpleStyle = style; }
    /// How many levels of nested objects are expanded.
    int GetMaxRecursion() const noexcept { return m_maxRecursion; }
    void SetMaxRecursion(int levels) noexcept { m_maxRecursion = levels; }
    int GetMaxElementsInSequence() const noexcept { return m_maxElementsInSequence; }
    void SetMaxElementsInSequence(int count) noexcept { m_maxElementsInSequence = count; }
    int GetMaxReprStringSizeMB() const noexcept { return m_maxReprStringSizeMB; }
    void SetMaxReprStringSizeMB(int megabytes) noexcept { m_maxReprStringSizeMB = megabytes; }
    double GetZeroTolerance() const noexcept { return m_zeroTolerance; }
    void SetZeroTolerance(double tolerance) noexcept { m_zeroTolerance = tolerance; }
    int GetSignificantDigits() const noexcept { return m_significantDigits; }
    void SetSignificantDigits(int digits) noexcept { m_significantDigits = digits; }

    /// What stands for an object that is not expanded: the text set, with the object's exposed type name in place of the
    /// first "%s" (flags, width and precision as printf takes them), at most 255 bytes of it in single quotes. "%%" is a
    /// percent sign, and every other "%" stands as it is. For null: the text set.
    cow_String GetMaxRecursionString(const omu_InterfaceObj* object) const;
    void SetMaxRecursionString(const cow_String& text) { m_maxRecursionString = text; }

private:
    friend class omi_Singleton<omu_TextRepr>;
    friend class omi_SingletonBase<omu_TextRepr>;
    omu_TextRepr() = default;
    ~omu_TextRepr() = default;

    int m_simpleStyle = 0;
    int m_maxRecursion = 1;
    int m_maxElementsInSequence = std::numeric_limits<std::int32_t>::max();
    int m_maxReprStringSizeMB = 1;
    double m_zeroTolerance = 1e-06;
    int m_significantDigits = 3;
    cow_String m_maxRecursionString = "%s object";
};
