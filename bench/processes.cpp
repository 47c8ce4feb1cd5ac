// A trivial program started and waited for by a process that holds a gigabyte, and a gigabyte copied from file to file.

#include "uti_FileUtils.h"
#include "uti_Spawn.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace
{
using Clock = std::chrono::steady_clock;

constexpr std::size_t GIGABYTE = std::size_t{1} << 30;
constexpr int COPIES = 5;     // of a gigabyte
constexpr int CHILDREN = 200; // started for one time

double Seconds(bool (*action)(), benchmark::State& state)
{
    const auto start = Clock::now();
    if (!action()) {
        state.SkipWithError("failed");
    }
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// Memory that this process has touched, so that its page tables are large.
void HoldGigabyte()
{
    static std::vector<char> memory(GIGABYTE, 'x');
    benchmark::DoNotOptimize(memory.data());
}

bool RunByKernel()
{
    return uti_Spawn::AndWait("/bin/true") == 0;
}

bool RunByPosixSpawn()
{
    char name[] = "/bin/true";
    char* arguments[] = {name, nullptr};
    pid_t child = 0;
    int status = -1;
    return posix_spawn(&child, name, nullptr, nullptr, arguments, environ) == 0 &&
           waitpid(child, &status, 0) == child && status == 0;
}

// Either is done in turn, of which one is measured, so that a busy machine slows both alike; by the clock on the wall, for
// what a child does takes no time of this process.

/// Of the children's times the tenth part up: the longer ones tell how busy the machine was.
void Spawn(benchmark::State& state, bool (*measured)(), bool (*other)())
{
    HoldGigabyte();
    for (auto _ : state) {
        std::vector<double> times;
        for (int i = 0; i < CHILDREN; ++i) {
            times.push_back(Seconds(measured, state));
            other();
        }
        std::sort(times.begin(), times.end());
        state.SetIterationTime(times[CHILDREN / 10]);
    }
}

constexpr const char* FROM = SCRATCH_FOLDER "/from"; // without holes
constexpr const char* TO = SCRATCH_FOLDER "/to";

bool CopyByKernel()
{
    return std::filesystem::remove(TO) && !uti_fileCopy(FROM, TO);
}

bool CopyByCp()
{
    return std::filesystem::remove(TO) && std::system("cp " SCRATCH_FOLDER "/from " SCRATCH_FOLDER "/to") == 0;
}

void Copy(benchmark::State& state, bool (*measured)(), bool (*other)())
{
    std::filesystem::create_directories(SCRATCH_FOLDER);
    const std::string block(1 << 20, 'x');
    std::ofstream file(FROM, std::ios::binary);
    for (std::size_t written = 0; written < GIGABYTE; written += block.size()) {
        file << block;
    }
    file.close();
    std::ofstream(TO).close();
    other(); // from now on each replaces what the other left
    for (auto _ : state) {
        state.SetIterationTime(Seconds(measured, state));
        other();
    }
    std::filesystem::remove_all(SCRATCH_FOLDER);
}

BENCHMARK_CAPTURE(Spawn, kernel, RunByKernel, RunByPosixSpawn)
    ->Unit(benchmark::kMicrosecond)
    ->UseManualTime()
    ->Iterations(1);
BENCHMARK_CAPTURE(Spawn, posix_spawn, RunByPosixSpawn, RunByKernel)
    ->Unit(benchmark::kMicrosecond)
    ->UseManualTime()
    ->Iterations(1);
BENCHMARK_CAPTURE(Copy, kernel, CopyByKernel, CopyByCp)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(1)
    ->Repetitions(COPIES);
BENCHMARK_CAPTURE(Copy, cp, CopyByCp, CopyByKernel)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(1)
    ->Repetitions(COPIES);
} // namespace
