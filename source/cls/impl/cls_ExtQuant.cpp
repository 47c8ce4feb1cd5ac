#include "cls_ExtQuant.h"

#include "thr_ThrSingletonRegistry.h"

#include <cstdio>
#include <cstdlib>
#include <limits>

template class thr_ThreadSingletonBase<cls_ExtQuant>;
template class thr_ThreadSingleton<cls_ExtQuant>;

namespace
{
constexpr thr_ThreadObjectDestructLevel DESTRUCT_LEVEL{3};

int QuantumFromEnvironment(const char* name, int defaultQuantum)
{
    const char* const text = std::getenv(name);
    const long long quantum = text != nullptr ? std::strtoll(text, nullptr, 10) : defaultQuantum;
    return quantum >= 1 && quantum <= std::numeric_limits<int>::max() ? static_cast<int>(quantum) : defaultQuantum;
}
} // namespace

cls_ExtQuant::cls_ExtQuant()
{
    thr_GlobalSingleton<thr_ThrSingletonRegistry>::Instance().SetDestructLevel(&Finalize, DESTRUCT_LEVEL);
}

cls_ExtQuant::~cls_ExtQuant() = default;

int cls_ExtQuant::Finalize()
{
    return thr_ThreadSingletonBase<cls_ExtQuant>::Finalize();
}

int cls_ExtQuant::ExtentQuantum(const cow_String& name, int defaultQuantum)
{
    if (m_override == Override::UNDECIDED) {
        m_override = std::getenv("EXTENT_QUANTUM_OVERRIDE") != nullptr ? Override::ON : Override::OFF;
        if (m_override == Override::ON) {
            std::printf("***** EXTENT_QUANTUM_OVERRIDE activated.\n");
        }
    }
    if (m_override == Override::OFF) {
        return defaultQuantum;
    }
    if (const int* const known = m_quanta.Find(name.view())) {
        return *known;
    }
    const int quantum = QuantumFromEnvironment(name.AsCharPtr(), defaultQuantum);
    std::printf("***** %s = %d\n", name.AsCharPtr(), quantum);
    m_quanta.Insert(name, quantum);
    return quantum;
}
