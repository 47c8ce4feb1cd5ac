#pragma once

#include <cstdint>

/// The end of a thread: what the systems share, and the two functions each system gives.
namespace crt_detail
{
/// The calling thread's pending steps, one bit each; zero when it has none.
std::uintptr_t PendingSteps() noexcept;

/// Sets the pending steps; when any is left as the thread ends, the system calls RunPendingSteps.
bool SetPendingSteps(std::uintptr_t steps) noexcept;

/// Runs the calling thread's steps in their order, and again those that are asked for meanwhile.
void RunPendingSteps(std::uintptr_t steps) noexcept;
} // namespace crt_detail
