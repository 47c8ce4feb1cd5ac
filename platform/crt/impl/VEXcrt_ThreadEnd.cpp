#include "VEXcrt_System.h"
#include "VEXcrt_ThreadEnd_detail.h"

#include <atomic>
#include <bit>
#include <cstddef>

namespace
{
constexpr std::size_t STEPS = 2;
constexpr std::uintptr_t ALL_STEPS = (1 << STEPS) - 1; // a system may keep bits of its own above these
constexpr int MAX_RUNS = 16;                           // ends a thread whose callbacks ask for each other for ever

constinit std::atomic<void (*)()> callbacks[STEPS] = {};
} // namespace

bool VEXCRT::RunAtThreadEnd(ThreadEndStep step, void (*callback)()) noexcept
{
    const auto index = static_cast<std::size_t>(step);
    const std::uintptr_t bit = std::uintptr_t{1} << index;
    const std::uintptr_t pending = crt_detail::PendingSteps();
    if ((pending & bit) != 0) {
        return true;
    }
    if (callbacks[index].exchange(callback) != callback) {
        KeepLoaded(reinterpret_cast<const void*>(callback));
    }
    return crt_detail::SetPendingSteps(pending | bit);
}

void crt_detail::RunPendingSteps(std::uintptr_t steps) noexcept
{
    steps &= ALL_STEPS;
    for (int run = 0; steps != 0 && run < MAX_RUNS; ++run) {
        SetPendingSteps(steps & (steps - 1));
        callbacks[static_cast<std::size_t>(std::countr_zero(steps))].load()();
        steps = PendingSteps() & ALL_STEPS;
    }
    SetPendingSteps(0);
}
