#include "VEXcrt_System.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

using VEXCRT::RunAtThreadEnd;
using VEXCRT::ThreadEndStep;

namespace
{
std::string trace;   // what the callbacks of the last thread did
int asksAgain = 0;   // how many times the first callback asks anew
std::uint32_t index; // holds `trace`'s address on the thread under test

void Singletons()
{
    trace += VEXCRT::TlsGetValue(index) == &trace ? 'S' : '?';
    if (asksAgain-- > 0) {
        EXPECT_TRUE(RunAtThreadEnd(ThreadEndStep::SINGLETONS, &Singletons));
    }
}

void Memory()
{
    trace += VEXCRT::TlsGetValue(index) == &trace ? 'M' : '?';
}

std::string TraceOfThread(void (*body)())
{
    trace.clear();
    index = VEXCRT::TlsAlloc();
    std::thread([body] {
        EXPECT_EQ(VEXCRT::TlsGetValue(index), nullptr);
        VEXCRT::TlsSetValue(index, &trace);
        body();
    }).join();
    EXPECT_EQ(VEXCRT::TlsGetValue(index), nullptr) << "a thread sees another one's pointer";
    VEXCRT::TlsFree(index);
    return trace;
}

void AskForBoth()
{
    RunAtThreadEnd(ThreadEndStep::MEMORY, &Memory);
    RunAtThreadEnd(ThreadEndStep::SINGLETONS, &Singletons);
    RunAtThreadEnd(ThreadEndStep::MEMORY, &Memory);
}
} // namespace

TEST(ThreadEnd, Each_step_runs_once_in_order_where_the_pointers_are_still_there)
{
    EXPECT_EQ(TraceOfThread(&AskForBoth), "SM");
}

TEST(ThreadEnd, Only_a_thread_that_asked_runs_anything)
{
    EXPECT_EQ(TraceOfThread([] {}), "");
    EXPECT_EQ(TraceOfThread([] { RunAtThreadEnd(ThreadEndStep::MEMORY, &Memory); }), "M");
}

TEST(ThreadEnd, A_step_asked_for_again_comes_before_later_steps)
{
    asksAgain = 2;
    EXPECT_EQ(TraceOfThread(&AskForBoth), "SSSM");
}

TEST(ThreadEnd, Callbacks_that_ask_for_ever_do_not_keep_the_thread)
{
    asksAgain = 1 << 30;
    EXPECT_LT(TraceOfThread(&AskForBoth).size(), 200u);
    asksAgain = 0;
}
