#include "VEXCRT.h"

#include "VEXcrt_System.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace
{
void WriteLine(const char* condition, const char* source, int line)
{
    std::fprintf(stderr, "Assertion failed: %s, file %s, line %d\n", condition, source, line);
    std::fflush(stderr);
    if (VEXCRT::GetEnvironment("VEXCRT_ABORT_ON_ASSERT")) {
        std::abort();
    }
}

constinit std::atomic<VEXCRT::AssertHandler> installed{&WriteLine};
} // namespace

void VEXCRT::_assert(const char* condition, const char* source, int line)
{
    installed.load()(condition, source, line);
}

VEXCRT::AssertHandler VEXCRT::SetAssertHandler(AssertHandler handler)
{
    return installed.exchange(handler ? handler : &WriteLine);
}
