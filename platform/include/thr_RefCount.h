#pragma once

#include "VEXthr_export.h"

#include <atomic>
#include <cstdint>

#if __has_include(<sys/single_threaded.h>)
#include <sys/single_threaded.h>
#endif

/// True while the process certainly has only one thread; then a count needs no locked instruction.
inline bool thr_IsSingleThreaded() noexcept
{
#if __has_include(<sys/single_threaded.h>)
    return __libc_single_threaded != 0;
#else
    return false;
#endif
}

/// Number of holders of a shared representation.
///
/// Threads: distinct holders may be copied and dropped on distinct threads. While the process has one thread the
///          operations are plain loads and stores; the C library says so and only ever changes its answer from true to
///          false before the second thread runs, so no update can be lost.
class thr_RefCount
{
public:
    explicit constexpr thr_RefCount(std::uint32_t count) noexcept : m_count(count) {}
    thr_RefCount(const thr_RefCount&) = delete;
    thr_RefCount& operator=(const thr_RefCount&) = delete;

    std::uint32_t Get() const noexcept { return m_count.load(std::memory_order_relaxed); }

    /// True when this is the only holder; pairs with the release in Lower(), so that a writer sees all that former
    /// holders did.
    bool IsUnique() const noexcept { return m_count.load(std::memory_order_acquire) <= 1; }

    void Raise() noexcept
    {
        if (thr_IsSingleThreaded()) {
            m_count.store(m_count.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
        } else {
            m_count.fetch_add(1, std::memory_order_relaxed);
        }
    }

    /// Drops one holder; true when it was the last one.
    bool Lower() noexcept
    {
        if (m_count.load(std::memory_order_acquire) == 1) {
            m_count.store(0, std::memory_order_relaxed); // no other holder is left to raise it
            return true;
        }
        return LowerShared();
    }

private:
    bool LowerShared() noexcept
    {
        if (thr_IsSingleThreaded()) {
            const std::uint32_t left = m_count.load(std::memory_order_relaxed) - 1;
            m_count.store(left, std::memory_order_relaxed);
            return left == 0;
        }
        return m_count.fetch_sub(1, std::memory_order_acq_rel) == 1;
    }

    std::atomic<std::uint32_t> m_count;
};
