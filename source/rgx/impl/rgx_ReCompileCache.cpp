#include "rgx_ReCompileCache.h"

#include "VEXCRT.h"
#include "nex_TextException.h"

#include <cstdint>
#include <utility>

template class omi_SingletonBase<rgx_ReCompileCache>;
template class omi_Singleton<rgx_ReCompileCache>;

namespace
{
constexpr const char* SOURCE = "source/rgx/impl/rgx_ReCompileCache";
}

void* rgx_ReCompileCache::Get(const cow_String& pattern)
{
    if (m_latest->pattern != pattern || m_latest->compiled == nullptr) {
        m_latest = &RecentPlace(pattern);
        if (m_latest->pattern != pattern || m_latest->compiled == nullptr) {
            return Find(pattern);
        }
    }
    return m_latest->compiled;
}

void rgx_ReCompileCache::Insert(const cow_String& pattern, real_pcre* compiled)
{
    Compiled owned(compiled);
    if (!owned) {
        VEXCRT::_assert("compiled != 0", SOURCE, __LINE__);
        return;
    }
    auto held = cow_CountedHld<Compiled>::Make(std::move(owned));
    m_recent = {};
    if (IsFull()) {
        for (int i = 0; i < m_capacity / 2; ++i) {
            m_entries.Remove(m_entries.begin()->first);
        }
    }
    m_entries.Insert(pattern, std::move(held));
}

double rgx_ReCompileCache::PercentFull() const noexcept
{
    return m_capacity != 0 ? static_cast<double>(m_entries.Length()) / m_capacity : 0.0;
}

rgx_ReCompileCache::Recent& rgx_ReCompileCache::RecentPlace(const cow_String& pattern) noexcept
{
    // Multiplying carries every byte of the rank into the topmost bits.
    const auto [high, low] = pattern.GetRank();
    const std::uint64_t mixed = (high ^ (low * 0x9E3779B97F4A7C15)) * 0xD6E8FEB86659FD93;
    return m_recent[static_cast<std::size_t>(mixed >> 60)];
}

void* rgx_ReCompileCache::Find(const cow_String& pattern)
{
    const cow_CountedHld<Compiled>* held = m_entries.Find(pattern);
    if (held == nullptr) {
        Insert(pattern, Compile(pattern).release());
        held = m_entries.Find(pattern);
    }
    Recent& recent = RecentPlace(pattern);
    recent = {pattern, (*held)->get()};
    return recent.compiled;
}

rgx_ReCompileCache::Compiled rgx_ReCompileCache::Compile(const cow_String& pattern)
{
    const char* error = nullptr;
    int offset = 0;
    Compiled compiled(rgx_pcre_compile(pattern.AsCharPtr(), 0, &error, &offset));
    if (!compiled) {
        nex_TextException("rgx_match: error in regex at offset" + cow_String(offset) + ": " + error).Throw(SOURCE, 91);
    }
    rgx_pcre_study(compiled.get(), 0, nullptr); // a pattern without machine code is interpreted
    return compiled;
}
