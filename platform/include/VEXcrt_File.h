#pragma once

#include "VEXCRT_export.h"

#include <string>

/// What the standard library's files do not give, or not alike on every system.
///
/// Threads: any.
/// Errors:  also for a path with a zero byte.
namespace VEXCRT
{
/// True for a file that this process may run.
VEXCRT_API bool IsExecutable(const char* path) noexcept;

/// Looks whether a file can be opened so: 0, or the number that errno would get. Neither way: whether anything is there.
/// A file that is only to be written to may be a new one in a directory that takes it.
VEXCRT_API int CheckFile(const std::string& path, bool forReading, bool forWriting);

/// Copies a file with its permissions, over what stands at `to`: 0, or the system's error, and then what stood there
/// still does. Holes stay holes. A link at `to` is followed; on POSIX other hard links to it keep the old contents.
VEXCRT_API int CopyFileOver(const std::string& from, const std::string& to);

/// The system's text for an error of the calls above; on Windows not the C library's.
VEXCRT_API std::string SystemErrorText(int error);
} // namespace VEXCRT
