#include "Test.h"
#include "utl_BlockPool.h"

#if defined(__GLIBC__)
#include <malloc.h>
#endif

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define SKIP_UNDER_SANITIZERS GTEST_SKIP() << "nothing is kept under the sanitizers"
#else
#define SKIP_UNDER_SANITIZERS static_cast<void>(0)
#endif

namespace
{
constexpr std::size_t KEPT = utl_BlockPool::MAX_KEPT_BLOCKS;

/// Allocates `count` blocks and frees them; where they were.
std::vector<void*> Use(std::size_t count, std::size_t bytes)
{
    std::vector<void*> blocks(count);
    std::generate(blocks.begin(), blocks.end(), [bytes] { return utl_BlockPool::Allocate(bytes); });
    std::for_each(blocks.begin(), blocks.end(), [bytes](void* block) { utl_BlockPool::Free(block, bytes); });
    return blocks;
}

/// A block whose bytes all hold the same number until it is freed.
struct Marked
{
    unsigned char* block;
    std::size_t bytes;
    unsigned char mark;
};

void FreeChecked(const Marked& marked)
{
    EXPECT_EQ(std::count(marked.block, marked.block + marked.bytes, marked.mark), std::ptrdiff_t(marked.bytes));
    utl_BlockPool::Free(marked.block, marked.bytes);
}

/// Allocates and frees at random, up to 1000 blocks at once, and gives back those left.
std::vector<Marked> ChurnBlocks(unsigned seed)
{
    std::mt19937 random(seed);
    std::vector<Marked> live;
    for (int step = 0; step < 20000; ++step) {
        if (live.size() == 1000 || (random() % 5 < 2 && !live.empty())) {
            std::swap(live[random() % live.size()], live.back());
            FreeChecked(live.back());
            live.pop_back();
            continue;
        }
        const std::size_t bytes = random() % 300;
        auto* const block = static_cast<unsigned char*>(utl_BlockPool::Allocate(bytes));
        live.push_back({block, bytes, static_cast<unsigned char>(step)});
        std::memset(block, live.back().mark, bytes);
    }
    return live;
}
} // namespace

TEST(BlockPool, Live_blocks_never_overlap_whichever_thread_frees_them)
{
    std::vector<Marked> theirs;
    std::thread other([&theirs] { theirs = ChurnBlocks(1); });
    const std::vector<Marked> mine = ChurnBlocks(2);
    other.join();
    std::thread([&mine] { std::for_each(mine.begin(), mine.end(), &FreeChecked); }).join();
    std::for_each(theirs.begin(), theirs.end(), &FreeChecked);
    utl_BlockPool::Free(nullptr, 16);
}

TEST(BlockPool, A_freed_block_serves_the_next_request_of_its_class_only)
{
    SKIP_UNDER_SANITIZERS;
    const std::tuple<std::size_t, std::size_t, bool> rows[] = {{1, 16, true},    {16, 17, false},   {17, 32, true},
                                                               {256, 241, true}, {240, 241, false}, {256, 240, false},
                                                               {256, 257, false}};
    for (const auto& [freed, requested, isSame] : rows) {
        std::thread([freed, requested, isSame] {
            const std::vector<void*> first = Use(1, freed);
            EXPECT_EQ(Use(1, requested) == first, isSame) << freed << " freed, " << requested << " requested";
        }).join();
    }
}

TEST(BlockPool, A_thread_keeps_a_limited_number_of_blocks)
{
    SKIP_UNDER_SANITIZERS;
    std::thread([] {
        for (int round = 0; round < 2; ++round) {
            const std::vector<void*> given = Use(KEPT + 50, 64);
            const std::vector<void*> again = Use(KEPT, 64);
            EXPECT_TRUE(std::equal(again.rbegin(), again.rend(), given.begin())) << "round " << round;
        }
    }).join();
}

#if defined(__GLIBC__)
TEST(BlockPool, An_ended_thread_gives_its_blocks_back)
{
    SKIP_UNDER_SANITIZERS;
    const auto useThreads = [] {
        for (int i = 0; i < 20; ++i) {
            std::thread([] { Use(KEPT, 256); }).join();
        }
        return mallinfo2().uordblks;
    };
    const std::size_t before = useThreads();
    EXPECT_LT(useThreads(), before + KEPT * 256) << "20 threads keep as much as one does, or more";
}
#endif
