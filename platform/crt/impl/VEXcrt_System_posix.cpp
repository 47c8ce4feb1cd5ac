#include "VEXcrt_System.h"
#include "VEXcrt_ThreadEnd_detail.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <memory>
#include <pthread.h>
#include <sys/mman.h>
#include <unistd.h>

namespace
{
// The system's own keys are no good as slots: as a thread ends, it clears them in an order that nobody chooses, while
// the callbacks at the end of the thread must still find all of them.
constexpr std::uint32_t MAX_SLOTS = 1088; // as many as Windows has
constexpr std::uint32_t SLOT_STEP = 16;   // a thread's table grows by this

// Odd while the index is reserved. A value stored under an earlier reservation no longer counts.
constinit std::atomic<std::uint32_t> reservations[MAX_SLOTS] = {};

struct Slot
{
    void* value;
    std::uint32_t reservation;
};

[[gnu::tls_model("initial-exec")]] constinit thread_local Slot* slots = nullptr;
[[gnu::tls_model("initial-exec")]] constinit thread_local std::uint32_t slotCount = 0;

// Known after the first question, 0 before it and in a new child: stores ask at every operation, and the system's answer
// takes longer than some of those.
constinit std::atomic<std::uint32_t> processId = 0;

void ForgetProcessId()
{
    processId.store(0, std::memory_order_relaxed);
}

const bool isForkWatched = pthread_atfork(nullptr, nullptr, &ForgetProcessId) == 0;

constexpr bool IsReserved(std::uint32_t reservation)
{
    return reservation % 2 != 0;
}

// Beside the steps' bits: the thread has a table of slots to free.
constexpr std::uintptr_t HAS_SLOTS = 4;

void EndThread(void* pending)
{
    crt_detail::RunPendingSteps(reinterpret_cast<std::uintptr_t>(pending));
    std::free(slots);
    slots = nullptr;
    slotCount = 0;
}

struct EndKey
{
    EndKey() noexcept : isMade(pthread_key_create(&key, &EndThread) == 0)
    {
        if (isMade) {
            VEXCRT::KeepLoaded(reinterpret_cast<const void*>(&EndThread));
        }
    }

    pthread_key_t key = 0;
    bool isMade;
};

const EndKey& ThreadEndKey() noexcept
{
    static const EndKey key;
    return key;
}

bool GrowSlots(std::uint32_t index) noexcept
{
    const std::uint32_t count = (index / SLOT_STEP + 1) * SLOT_STEP;
    auto* const grown = static_cast<Slot*>(std::realloc(slots, count * sizeof(Slot)));
    if (!grown) {
        return false;
    }
    std::memset(grown + slotCount, 0, (count - slotCount) * sizeof(Slot));
    slots = grown;
    slotCount = count;
    return crt_detail::SetPendingSteps(crt_detail::PendingSteps() | HAS_SLOTS);
}
} // namespace

std::uintptr_t crt_detail::PendingSteps() noexcept
{
    const EndKey& end = ThreadEndKey();
    return end.isMade ? reinterpret_cast<std::uintptr_t>(pthread_getspecific(end.key)) : 0;
}

bool crt_detail::SetPendingSteps(std::uintptr_t steps) noexcept
{
    const EndKey& end = ThreadEndKey();
    return end.isMade && pthread_setspecific(end.key, reinterpret_cast<void*>(steps)) == 0;
}

std::uint32_t VEXCRT::ProcessId() noexcept
{
    const std::uint32_t known = processId.load(std::memory_order_relaxed);
    if (known != 0) {
        return known;
    }
    const auto id = static_cast<std::uint32_t>(getpid());
    if (isForkWatched) {
        processId.store(id, std::memory_order_relaxed);
    }
    return id;
}

std::optional<std::string> VEXCRT::GetEnvironment(const char* name)
{
    const char* const value = std::getenv(name);
    return value ? std::optional<std::string>(value) : std::nullopt;
}

std::string VEXCRT::ErrorText(int error)
{
    char buffer[256];
    return strerror_r(error, buffer, sizeof buffer);
}

std::uint32_t VEXCRT::TlsAlloc() noexcept
{
    for (std::uint32_t index = 0; index < MAX_SLOTS; ++index) {
        std::uint32_t reservation = reservations[index].load();
        if (!IsReserved(reservation) && reservations[index].compare_exchange_strong(reservation, reservation + 1)) {
            return index;
        }
    }
    return TLS_OUT_OF_INDEXES;
}

void* VEXCRT::TlsGetValue(std::uint32_t index) noexcept
{
    if (index >= slotCount) {
        return nullptr;
    }
    const Slot& slot = slots[index];
    return slot.reservation == reservations[index].load(std::memory_order_relaxed) ? slot.value : nullptr;
}

bool VEXCRT::TlsSetValue(std::uint32_t index, void* value) noexcept
{
    if (index >= MAX_SLOTS) {
        return false;
    }
    const std::uint32_t reservation = reservations[index].load();
    if (!IsReserved(reservation)) {
        return false;
    }
    if (index >= slotCount && (!value || !GrowSlots(index))) {
        return !value;
    }
    slots[index] = {value, reservation};
    return true;
}

bool VEXCRT::TlsFree(std::uint32_t index) noexcept
{
    if (index >= MAX_SLOTS) {
        return false;
    }
    std::uint32_t reservation = reservations[index].load();
    return IsReserved(reservation) && reservations[index].compare_exchange_strong(reservation, reservation + 1);
}

void VEXCRT::PreferLargePages(void* memory, std::size_t bytes) noexcept
{
    const auto pageSize = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    if (std::align(pageSize, pageSize, memory, bytes) != nullptr) {
        madvise(memory, bytes - bytes % pageSize, MADV_HUGEPAGE);
    }
}

void VEXCRT::KeepLoaded(const void* code) noexcept
{
    Dl_info library;
    if (dladdr(code, &library) != 0) {
        dlopen(library.dli_fname, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
    }
}
