#include "VEXcrt_System.h"
#include "VEXcrt_ThreadEnd_detail.h"

#include <cstring>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace
{
// When the process ends, its other threads are already gone, perhaps with a lock held: nothing may wait for one.
bool IsProcessEnding()
{
    using Query = BOOLEAN(NTAPI*)();
    const HMODULE system = GetModuleHandleA("ntdll.dll");
    const FARPROC query = system ? GetProcAddress(system, "RtlDllShutdownInProgress") : nullptr;
    return query && reinterpret_cast<Query>(reinterpret_cast<void*>(query))() != 0;
}

void WINAPI EndThread(void* pending)
{
    if (!IsProcessEnding()) {
        crt_detail::RunPendingSteps(reinterpret_cast<std::uintptr_t>(pending));
    }
}

// A fibre-local index: unlike a thread-local one it has a callback.
DWORD ThreadEndIndex() noexcept
{
    static const DWORD index = [] {
        VEXCRT::KeepLoaded(reinterpret_cast<const void*>(&EndThread));
        return FlsAlloc(&EndThread);
    }();
    return index;
}
} // namespace

std::uintptr_t crt_detail::PendingSteps() noexcept
{
    return reinterpret_cast<std::uintptr_t>(FlsGetValue(ThreadEndIndex()));
}

bool crt_detail::SetPendingSteps(std::uintptr_t steps) noexcept
{
    return FlsSetValue(ThreadEndIndex(), reinterpret_cast<void*>(steps)) != 0;
}

std::uint32_t VEXCRT::ProcessId() noexcept
{
    return GetCurrentProcessId();
}

std::optional<std::string> VEXCRT::GetEnvironment(const char* name)
{
    std::string value;
    SetLastError(ERROR_SUCCESS); // an empty value leaves no other trace
    DWORD size = GetEnvironmentVariableA(name, nullptr, 0);
    while (size > value.size()) {
        value.resize(size);
        size = GetEnvironmentVariableA(name, value.data(), size);
    }
    if (size == 0 && GetLastError() == ERROR_ENVVAR_NOT_FOUND) {
        return std::nullopt;
    }
    value.resize(size);
    return value;
}

std::string VEXCRT::ErrorText(int error)
{
    char buffer[256] = "";
    strerror_s(buffer, sizeof buffer, error);
    return buffer;
}

std::uint32_t VEXCRT::TlsAlloc() noexcept
{
    return ::TlsAlloc();
}

void* VEXCRT::TlsGetValue(std::uint32_t index) noexcept
{
    return ::TlsGetValue(index);
}

bool VEXCRT::TlsSetValue(std::uint32_t index, void* value) noexcept
{
    return ::TlsSetValue(index, value) != 0;
}

bool VEXCRT::TlsFree(std::uint32_t index) noexcept
{
    return ::TlsFree(index) != 0;
}

void VEXCRT::KeepLoaded(const void* code) noexcept
{
    HMODULE library = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       static_cast<const char*>(code), &library);
}
