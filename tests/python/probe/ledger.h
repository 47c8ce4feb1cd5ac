#pragma once

#include "omu_InterfaceObj.h"

/// A kernel object that remembers every call, so that a replayed journal can be compared. The caller owns it.
omu_InterfaceObj* NewLedger();
