#include "cow_CloneCount.h"

#ifdef VEXUTL_COUNT_CLONES
#include <map>
#include <mutex>
#include <string>

std::atomic<std::uint64_t>& cow_CloneCounter(const char* typeName)
{
    static std::mutex mutex;
    static auto& counters = *new std::map<std::string, std::atomic<std::uint64_t>>; // outlives all static objects
    const std::lock_guard lock(mutex);
    return counters[typeName];
}
#endif
