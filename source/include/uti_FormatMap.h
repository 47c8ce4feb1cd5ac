#pragma once

#include "VEXomu_export.h"
#include "cow_Map.h"
#include "cow_String.h"
#include "thr_ThreadSingleton.h"
#include "thr_ThreadSingletonBase.h"
#include "uti_NumFormat.h"

class uti_FormatMap;
extern template class VEXOMU_API thr_ThreadSingletonBase<uti_FormatMap>;
extern template class VEXOMU_API thr_ThreadSingleton<uti_FormatMap>;

/// The named formats of a thread, so that a user changes one in one place.
///
///     name                   notation       precision   zero decimals   padding kept
///     "defaultFormat"        engineering    6           0               yes
///     "floatStepFormat"      scientific     1           6               yes
///     "geometryFormat"       engineering    12          6               no
///     "fieldReportFormat"    engineering    6           0               yes
///
/// Ownership:  one instance for each thread, made on first use and destroyed when the thread ends.
/// Threads:    every thread has its own formats.
/// References: a format found dies with the next change to the map.
/// Example:    thr_ThreadSingleton<uti_FormatMap>::Instance().Find("defaultFormat")->Format(stress)
class VEXOMU_API uti_FormatMap : public thr_ThreadSingletonBase<uti_FormatMap>
{
public:
    /// The format of that name, or null.
    const uti_NumFormat* Find(const cow_String& name) const { return m_formats.Find(name); }
    /// The same, to be changed.
    uti_NumFormat* Get(const cow_String& name) { return m_formats.Get(name); }
    /// Adds a format, or replaces the one of that name.
    void Insert(const cow_String& name, const uti_NumFormat& format) { m_formats.Insert(name, format); }
    bool Remove(const cow_String& name) { return m_formats.Remove(name); }
    const cow_Map<cow_String, uti_NumFormat>& Formats() const noexcept { return m_formats; }

    /// Sets the four formats above; others stay.
    void DefaultSettings();

private:
    friend class thr_ThreadSingleton<uti_FormatMap>;

    uti_FormatMap();
    static int Finalize();

    cow_Map<cow_String, uti_NumFormat> m_formats;
};
