#pragma once

#include "VEXomu_export.h"
#include "cow_Map.h"
#include "cow_String.h"
#include "thr_ThreadSingleton.h"

#include <cstdint>

class cls_ExtQuant;
extern template class VEXOMU_API thr_ThreadSingletonBase<cls_ExtQuant>;
extern template class VEXOMU_API thr_ThreadSingleton<cls_ExtQuant>;

/// By how many records the tables of a store grow at a time, for five classes of size.
///
/// While the environment variable EXTENT_QUANTUM_OVERRIDE exists, whatever its value, a variable named after the class
/// may give another number; each one used is reported on standard output.
///
///     EXTENT_QUANTUM_TINY      4        EXTENT_QUANTUM_LARGE   2048
///     EXTENT_QUANTUM_SMALL   512        EXTENT_QUANTUM_HUGE    4096
///     EXTENT_QUANTUM_MEDIUM 1024
///
/// Threads:    one instance per thread; each decides, reads and reports for itself.
/// Complexity: the environment is read once per name and thread, the switch once per thread.
/// Errors:     std::bad_alloc. A number that is none, below 1 or beyond an int gives the default.
/// Example:    thr_ThreadSingleton<cls_ExtQuant>::Instance().ExtentQuantumConstSmall();
class VEXOMU_API cls_ExtQuant : public thr_ThreadSingletonBase<cls_ExtQuant>
{
public:
    cls_ExtQuant(const cls_ExtQuant&) = delete;
    cls_ExtQuant& operator=(const cls_ExtQuant&) = delete;
    ~cls_ExtQuant();

    /// The quantum of the class of size that the environment variable `name` stands for.
    int ExtentQuantum(const cow_String& name, int defaultQuantum);

    int ExtentQuantumConstTiny() { return ExtentQuantum("EXTENT_QUANTUM_TINY", 4); }
    int ExtentQuantumConstSmall() { return ExtentQuantum("EXTENT_QUANTUM_SMALL", 512); }
    int ExtentQuantumConstMedium() { return ExtentQuantum("EXTENT_QUANTUM_MEDIUM", 1024); }
    int ExtentQuantumConstLarge() { return ExtentQuantum("EXTENT_QUANTUM_LARGE", 2048); }
    int ExtentQuantumConstHuge() { return ExtentQuantum("EXTENT_QUANTUM_HUGE", 4096); }

private:
    friend class thr_ThreadSingleton<cls_ExtQuant>;

    enum class Override : std::int32_t
    {
        OFF = 0,
        ON = 1,
        UNDECIDED = 2
    };

    cls_ExtQuant();
    static int Finalize();

    Override m_override = Override::UNDECIDED;
    cow_Map<cow_String, int> m_quanta; // by the variable's name, those reported
};
