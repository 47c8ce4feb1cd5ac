#pragma once

/// Counts the clones that copy-on-write makes of each type, when the build asks for it (VEXUTL_COUNT_CLONES); the tests
/// assert how many a sequence of operations costs. Otherwise nothing is counted and nothing is paid.
#ifdef VEXUTL_COUNT_CLONES
#include "VEXutl_export.h"

#include <atomic>
#include <cstdint>
#include <typeinfo>

/// The one counter of a type in the whole process: a variable of a header would be one in every shared library.
VEXUTL_API std::atomic<std::uint64_t>& cow_CloneCounter(const char* typeName);

template <class T> inline std::atomic<std::uint64_t>& cow_cloneCount = cow_CloneCounter(typeid(T).name());

template <class T> void cow_NoteClone() noexcept
{
    cow_cloneCount<T>.fetch_add(1, std::memory_order_relaxed);
}
#else
template <class T> void cow_NoteClone() noexcept {}
#endif
