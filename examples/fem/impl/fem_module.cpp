#include "fem_Session.h"

#include "vexomu_python.h"

PyMODINIT_FUNC PyInit_fem()
{
    return vexomu_NewModule("fem", "A small finite-element kernel.", {{"session", new fem_Session}});
}
