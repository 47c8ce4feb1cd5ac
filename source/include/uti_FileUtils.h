#pragma once

#include "VEXomu_export.h"
#include "cow_String.h"

/// How a file is meant to be used.
enum uti_AccessModeEnm : int
{
    uti_ACCESS_EXISTS = 0, ///< also a directory
    uti_ACCESS_READ = 1,
    uti_ACCESS_WRITE = 2, ///< a file that is there, or a new one in a directory that takes it
    uti_ACCESS_READ_WRITE = 3
};

/// Copies a file with its permissions over what may stand at `to`. True means that it failed: that sense is promised, and
/// it must stay. Then the system's reason is written to standard error, and what stood at `to` still does. Holes stay
/// holes; on POSIX other hard links to an old file at `to` keep its contents.
VEXOMU_API bool uti_fileCopy(const cow_String& from, const cow_String& to);

/// The path as it is: promised, and it must stay.
VEXOMU_API cow_String uti_realpath(const cow_String& path);

/// Checks that a file can be used as `mode` says, before it is opened; the result is the path to open. Otherwise throws
/// uti_SystemException for "PreCheckFile" with the system's reason, about `shownName`, or `path` when that is empty.
VEXOMU_API cow_String uti_PreCheckFile(const cow_String& path, uti_AccessModeEnm mode,
                                       const cow_String& shownName = {});

/// Splits a path at its last separator, separators at its end not counted: "a/b/" gives "a" and "b", "/f" gives "/" and
/// "f", "f" gives "" and "f". On Windows both kinds separate.
VEXOMU_API void uti_SplitPath(const cow_String& path, cow_String& directory, cow_String& name);
