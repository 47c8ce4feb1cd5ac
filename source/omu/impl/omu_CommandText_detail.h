#pragma once

#include "cow_String.h"

class omu_Arguments;

/// The text of an argument list as a command text writes it, so that running it makes the same call again.
cow_String omu_ArgumentsCommandText(const omu_Arguments& arguments);
