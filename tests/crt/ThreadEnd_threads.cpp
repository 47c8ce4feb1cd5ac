#include "Test.h"
#include "VEXcrt_System.h"

using VEXCRT::RunAtThreadEnd;
using VEXCRT::ThreadEndStep;

namespace
{
std::string trace;                                                        // one letter for each callback run
int asksAgain = 0;                                                        // how often the first step asks anew
const std::uint32_t indexes[] = {VEXCRT::TlsAlloc(), VEXCRT::TlsAlloc()}; // hold trace's address on the thread

void Trace(char letter)
{
    trace += letter;
    for (const std::uint32_t index : indexes) {
        EXPECT_EQ(VEXCRT::TlsGetValue(index), &trace);
    }
}

void Singletons()
{
    Trace('S');
    if (asksAgain-- > 0) {
        EXPECT_TRUE(RunAtThreadEnd(ThreadEndStep::SINGLETONS, &Singletons));
    }
}

void Memory()
{
    Trace('M');
}

std::string TraceOfThread(bool usesSingletons)
{
    trace.clear();
    std::thread([usesSingletons] {
        for (const std::uint32_t index : indexes) {
            EXPECT_EQ(VEXCRT::TlsGetValue(index), nullptr) << "left by an ended thread";
            VEXCRT::TlsSetValue(index, &trace);
        }
        RunAtThreadEnd(ThreadEndStep::MEMORY, &Memory);
        if (usesSingletons) {
            RunAtThreadEnd(ThreadEndStep::SINGLETONS, &Singletons);
        }
        RunAtThreadEnd(ThreadEndStep::MEMORY, &Memory);
    }).join();
    return trace;
}
} // namespace

TEST(ThreadEnd, The_steps_a_thread_asked_for_run_in_order_where_its_pointers_are_still_there)
{
    EXPECT_EQ(TraceOfThread(true), "SM");
    EXPECT_EQ(TraceOfThread(false), "M");
    asksAgain = 2;
    EXPECT_EQ(TraceOfThread(true), "SSSM");
    asksAgain = 1 << 30;
    EXPECT_LT(TraceOfThread(true).size(), 200u) << "callbacks that ask for ever keep the thread";
    asksAgain = 0;
}
