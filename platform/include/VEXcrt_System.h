#pragma once

#include "VEXCRT_export.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

// The Windows headers define the same name as a macro. Written without a qualifier it means the same number whichever
// header comes first.
#if !defined(TLS_OUT_OF_INDEXES)
/// The thread-local index that stands for none.
inline constexpr std::uint32_t TLS_OUT_OF_INDEXES = 0xFFFFFFFF;
#endif

/// The operating system as the libraries above see it, alike on every system.
///
/// Threads: every function is safe from any thread; reading the environment must not meet a thread that changes it.
namespace VEXCRT
{
VEXCRT_API std::uint32_t ProcessId() noexcept;

/// The value of an environment variable; none when it is not set.
VEXCRT_API std::optional<std::string> GetEnvironment(const char* name);

/// The C library's text for one of its error numbers (a value of errno).
VEXCRT_API std::string ErrorText(int error);

/// Reserves an index at which each thread has one pointer, null at first; TLS_OUT_OF_INDEXES when none is left, which
/// is after about a thousand.
VEXCRT_API std::uint32_t TlsAlloc() noexcept;

/// The calling thread's pointer at `index`; null for an index that is not reserved.
VEXCRT_API void* TlsGetValue(std::uint32_t index) noexcept;

/// Sets the calling thread's pointer; false when the index is not reserved or memory is short.
VEXCRT_API bool TlsSetValue(std::uint32_t index, void* value) noexcept;

/// Gives the index back; false when it was not reserved. What the threads' pointers point to is not touched.
VEXCRT_API bool TlsFree(std::uint32_t index) noexcept;

/// What an ending thread does, in this order.
enum class ThreadEndStep
{
    SINGLETONS,
    MEMORY
};

/// Has `callback` run on the calling thread when that thread ends, whoever started it; false when the system refuses.
/// Each step has one callback, the same for every thread that asks. A callback may ask again for its own or another
/// step, a bounded number of times; its thread's pointers (TlsGetValue) are still there. The end of the process is not
/// the end of its main thread: nothing runs then.
VEXCRT_API bool RunAtThreadEnd(ThreadEndStep step, void (*callback)()) noexcept;

/// Asks for large pages for memory that is about to be written, where the system gives them to those who ask; without
/// effect elsewhere. Whole pages of a few MiB only can be large.
VEXCRT_API void PreferLargePages(void* memory, std::size_t bytes) noexcept;

/// Keeps the library that holds `code` loaded until the process ends: for functions that will be called then.
VEXCRT_API void KeepLoaded(const void* code) noexcept;
} // namespace VEXCRT
