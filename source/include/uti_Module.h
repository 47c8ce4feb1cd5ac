#pragma once

#include "VEXomu_export.h"
#include "typ_ArchCompEntry.h"

/// Starts the utilities. The calls are counted: the first one raises the caller's `counter`, registers the utilities'
/// component, and takes the users' texts from the message file that the environment variable VEXOMU_MESSAGES names, for
/// this thread and those to come; a broken file is reported on standard error, and the texts stay. Later calls only
/// count. Not to be raced with each other or with uti_finalize.
VEXOMU_API void uti_initialize(int& counter);

/// Undoes one uti_initialize; the last one lowers the caller's `counter`. The component stays registered.
VEXOMU_API void uti_finalize(int& counter);

/// Does nothing: the utilities have nothing to prepare after start-up.
VEXOMU_API void uti_formalize();

/// The rows of component 2: the exceptions of the utilities, and the coordinates.
VEXOMU_API typ_ArchCompEntry uti_ArchEntry();
