#pragma once

#ifdef VEXUTL_COUNT_CLONES
#include <atomic>
#include <cstdint>
#endif

/// Counts the clones that copy-on-write makes of each type, when the build asks for it (VEXUTL_COUNT_CLONES); the tests
/// assert how many a sequence of operations costs. Otherwise nothing is counted and nothing is paid.
#ifdef VEXUTL_COUNT_CLONES
template <class T> inline std::atomic<std::uint64_t> cow_cloneCount{0};

template <class T> void cow_NoteClone() noexcept
{
    cow_cloneCount<T>.fetch_add(1, std::memory_order_relaxed);
}
#else
template <class T> void cow_NoteClone() noexcept {}
#endif
