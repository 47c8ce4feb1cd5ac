#include "Test.h"
#include "uti_SpawnSink.h"

TEST(SpawnOnThreads, No_child_holds_the_pipe_of_another)
{
    // A child that had another's end of the pipe would keep that one's "cat" from ending.
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([thread] {
            for (int round = 0; round < 12; ++round) {
                const std::string text = std::to_string(thread) + "." + std::to_string(round);
                uti_SpawnSinkWithSource waiting(VEXOMU_TEST_CHILD " cat"), child(VEXOMU_TEST_CHILD " cat");
                child.Write(text);
                child.CloseSink();
                EXPECT_EQ(child.ReadAll(), text);
                EXPECT_EQ(child.Reap(0), 0);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}
