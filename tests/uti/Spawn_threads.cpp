#if !defined(_WIN32) // the children are programs of POSIX
#include "Test.h"
#include "uti_SpawnSink.h"

#include <sys/wait.h>

TEST(SpawnOnThreads, No_child_holds_the_pipe_of_another)
{
    // A child that had another's end of the pipe would keep that one's "cat" from ending.
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([thread] {
            for (int round = 0; round < 25; ++round) {
                const std::string text = std::to_string(thread) + "." + std::to_string(round);
                uti_SpawnSinkWithSource waiting("cat"), child("cat");
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
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a child is left";
}
#endif
