#pragma once

#include "VEXutl_export.h"
#include "cow_String.h"
#include "utl_FilePath.h"

/// Finds files along the directories that an environment variable lists, as PATH does: separated by ":" (";"
/// on Windows), an empty entry standing for the current directory.
class VEXUTL_API utl_PathFinder
{
public:
    /// The first existing file `name` in the current directory (when `currentFirst`) and the directories of
    /// `variable`, in order; directories do not count as files. Empty when there is none, or no such
    /// variable. An absolute `name` is only looked up where it says.
    static utl_FilePath getPath(const cow_String& name, const cow_String& variable, bool currentFirst);
};
