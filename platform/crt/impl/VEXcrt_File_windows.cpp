#include "VEXcrt_File.h"

#include <cerrno>
#include <io.h>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace
{
constexpr int THERE = 0; // what _access looks for
constexpr int WRITABLE = 2;
constexpr int READABLE = 4;

/// The system would take what stands before it for the path.
bool HasZeroByte(const std::string& path) noexcept
{
    return path.find('\0') != std::string::npos;
}

bool IsDirectory(DWORD attributes)
{
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}
} // namespace

bool VEXCRT::IsExecutable(const char* path) noexcept
{
    const DWORD attributes = GetFileAttributesA(path); // what a file holds decides when it is started
    return attributes != INVALID_FILE_ATTRIBUTES && !IsDirectory(attributes);
}

int VEXCRT::CheckFile(const std::string& path, bool forReading, bool forWriting)
{
    if (HasZeroByte(path)) {
        return EINVAL;
    }
    const DWORD attributes = GetFileAttributesA(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES && forWriting && !forReading && !path.empty()) {
        const std::size_t separator = path.find_last_of("/\\:");
        const std::string directory = separator == std::string::npos ? "." : path.substr(0, separator + 1);
        return IsDirectory(GetFileAttributesA(directory.c_str())) ? 0 : ENOENT;
    }
    if (IsDirectory(attributes) && (forReading || forWriting)) {
        return EISDIR;
    }
    const int mode = THERE | (forReading ? READABLE : 0) | (forWriting ? WRITABLE : 0);
    return _access(path.c_str(), mode) == 0 ? 0 : errno;
}

int VEXCRT::CopyFileOver(const std::string& from, const std::string& to)
{
    if (HasZeroByte(from) || HasZeroByte(to)) {
        return ERROR_INVALID_NAME;
    }
    return CopyFileA(from.c_str(), to.c_str(), FALSE) ? 0 : static_cast<int>(GetLastError());
}

std::string VEXCRT::SystemErrorText(int error)
{
    char* buffer = nullptr;
    const DWORD flags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    const DWORD length =
        FormatMessageA(flags, nullptr, static_cast<DWORD>(error), MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT),
                       reinterpret_cast<char*>(&buffer), 0, nullptr);
    std::string text(buffer ? buffer : "", length);
    LocalFree(buffer);
    text.erase(text.find_last_not_of("\r\n") + 1);
    return text;
}
