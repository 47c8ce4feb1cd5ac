#include "VEXcrt_System.h"
#include "VEXcrt_ThreadEnd_detail.h"

#include <cstring>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace
{
// Made as the library is loaded: a static local would be made under a lock that an ending thread might wait for.
const DWORD pendingIndex = ::TlsAlloc();
} // namespace

/// Called by the system, also in every thread that ends, whoever started it. The callback of a fibre-local index would be
/// called there, too; but with it threads that started and ended at once hung under Wine now and then.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID)
{
    if (reason == DLL_PROCESS_ATTACH) {
        VEXCRT::KeepLoaded(reinterpret_cast<const void*>(&DllMain));
    } else if (reason == DLL_THREAD_DETACH) {
        crt_detail::RunPendingSteps(crt_detail::PendingSteps());
    }
    return TRUE;
}

std::uintptr_t crt_detail::PendingSteps() noexcept
{
    return reinterpret_cast<std::uintptr_t>(::TlsGetValue(pendingIndex));
}

bool crt_detail::SetPendingSteps(std::uintptr_t steps) noexcept
{
    return ::TlsSetValue(pendingIndex, reinterpret_cast<void*>(steps)) != 0;
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

void VEXCRT::PreferLargePages(void*, std::size_t) noexcept {}

void VEXCRT::KeepLoaded(const void* code) noexcept
{
    HMODULE library = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       static_cast<const char*>(code), &library);
}
