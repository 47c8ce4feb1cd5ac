#pragma once

#include "omu_InterfaceObj.h"

/// A kernel object that remembers every call, so that a replayed journal can be compared. The caller owns it.
omu_InterfaceObj* NewLedger();

// Containers of crates for the tests of the binding. Scripts may set and delete in the racks: a number under a key makes
// a crate of that size.
omu_InterfaceObj* NewNameRack();   // "a", "b"
omu_InterfaceObj* NewNumberRack(); // 7, -1
omu_InterfaceObj* NewShapeRack();  // QUAD; takes nothing else
/// Five crates, of sizes 0 to 4, of which scripts may remove some.
omu_InterfaceObj* NewRow();
