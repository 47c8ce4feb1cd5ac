#include "../measured_object.h"
#include "vexomu_python.h"

PyMODINIT_FUNC PyInit_bench_kernel()
{
    return vexomu_NewModule("bench_kernel", "The kernel object that the benchmark calls.",
                            {{"measured", new Measured}});
}
