#pragma once

#include "VEXomu_export.h"
#include "cow_CountedHld.h"
#include "cow_Map.h"
#include "cow_String.h"
#include "omi_Singleton.h"
#include "rgx_pcre.h"

#include <array>
#include <cstddef>
#include <memory>

class rgx_ReCompileCache;
extern template class VEXOMU_API omi_SingletonBase<rgx_ReCompileCache>;
extern template class VEXOMU_API omi_Singleton<rgx_ReCompileCache>;

/// The compiled patterns of the process by their texts, so that repeated use of a pattern compiles it once. When it is
/// full, the first half in the order of the texts goes.
///
/// Ownership:  owns the compiled patterns.
/// Threads:    one thread at a time.
/// Complexity: Get of a pattern used lately O(1), of another one O(log patterns), of a new one its compilation.
/// References: what Get returns dies with the next Insert, which a Get of a new pattern makes too, and with the cache.
/// Avoid for:  patterns made up from data, each used once; they push out the others.
class VEXOMU_API rgx_ReCompileCache : public omi_SingletonBase<rgx_ReCompileCache>
{
public:
    /// The compiled form of the pattern, up to its first zero byte, for rgx_pcre_exec. A pattern that is wrong throws
    /// nex_TextException, and the cache stays as it was.
    void* Get(const cow_String& pattern);

    /// Takes over `compiled` as the compiled form of `pattern`, making room first when the cache is full.
    void Insert(const cow_String& pattern, real_pcre* compiled);

    bool IsFull() const noexcept { return m_entries.Length() == m_capacity; }
    /// How full the cache is: 0 to 1, despite the name; 0 for a cache without capacity.
    double PercentFull() const noexcept;

private:
    friend class omi_Singleton<rgx_ReCompileCache>;
    friend class omi_SingletonBase<rgx_ReCompileCache>;
    rgx_ReCompileCache() = default;
    ~rgx_ReCompileCache() = default;

    struct Release
    {
        void operator()(real_pcre* compiled) const noexcept { rgx_pcre_free(compiled); }
    };
    using Compiled = std::unique_ptr<real_pcre, Release>;

    /// A pattern found lately; the null one is the compiled form of nothing.
    struct Recent
    {
        cow_String pattern;
        real_pcre* compiled = nullptr;
    };
    static constexpr std::size_t RECENT_COUNT = 16;

    Recent& RecentPlace(const cow_String& pattern) noexcept;
    void* Find(const cow_String& pattern);
    static Compiled Compile(const cow_String& pattern);

    int m_capacity = 100;
    cow_Map<cow_String, cow_CountedHld<Compiled>> m_entries;
    std::array<Recent, RECENT_COUNT> m_recent; // invariant: each one that is not null stands in m_entries
    Recent* m_latest = m_recent.data();        // asked for last
};
