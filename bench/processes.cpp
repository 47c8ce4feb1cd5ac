// A trivial program started and waited for by a process that holds a gigabyte, and a gigabyte copied from file to file.

#include "uti_FileUtils.h"
#include "uti_Spawn.h"

#include <benchmark/benchmark.h>

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
constexpr int CHILDREN = 200; // started at a time

/// Either in turn, of which one is measured: a busy machine then slows both alike. What a child does takes no time of
/// this process, so the clock on the wall counts.
void InTurn(benchmark::State& state, bool (*measured)(), bool (*other)())
{
    for (auto _ : state) {
        const auto start = Clock::now();
        const bool isMeasured = measured();
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - start).count());
        if (!isMeasured || !other()) {
            state.SkipWithError("failed");
        }
    }
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

void Spawn(benchmark::State& state, bool (*measured)(), bool (*other)())
{
    HoldGigabyte();
    InTurn(state, measured, other);
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
    InTurn(state, measured, other);
    std::filesystem::remove_all(SCRATCH_FOLDER);
}

BENCHMARK_CAPTURE(Spawn, kernel, RunByKernel, RunByPosixSpawn)
    ->Unit(benchmark::kMicrosecond)
    ->UseManualTime()
    ->Iterations(CHILDREN);
BENCHMARK_CAPTURE(Spawn, posix_spawn, RunByPosixSpawn, RunByKernel)
    ->Unit(benchmark::kMicrosecond)
    ->UseManualTime()
    ->Iterations(CHILDREN);
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
