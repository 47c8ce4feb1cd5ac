#include "Test.h"
#include "VEXcrt_System.h"

TEST(System, Slots_are_all_usable_at_once_empty_when_reserved_again_and_nothing_when_free)
{
    int target = 0;
    for (int round = 0; round < 2; ++round) {
        std::vector<std::uint32_t> indexes;
        for (std::uint32_t index = 0; (index = VEXCRT::TlsAlloc()) != TLS_OUT_OF_INDEXES;) {
            ASSERT_EQ(VEXCRT::TlsGetValue(index), nullptr) << "round " << round << ", index " << index;
            ASSERT_TRUE(VEXCRT::TlsSetValue(index, &target + (index & 1)));
            indexes.push_back(index);
        }
        EXPECT_GT(indexes.size(), 1000u);
        for (const std::uint32_t index : indexes) {
            EXPECT_EQ(VEXCRT::TlsGetValue(index), &target + (index & 1));
            EXPECT_TRUE(VEXCRT::TlsFree(index));
            EXPECT_FALSE(VEXCRT::TlsFree(index));
#if !defined(_WIN32) // Windows does not look, to be fast
            EXPECT_EQ(VEXCRT::TlsGetValue(index), nullptr);
            EXPECT_FALSE(VEXCRT::TlsSetValue(index, &target));
#endif
        }
    }
    EXPECT_EQ(VEXCRT::TlsGetValue(TLS_OUT_OF_INDEXES), nullptr);
    EXPECT_FALSE(VEXCRT::TlsSetValue(TLS_OUT_OF_INDEXES, &target));
    EXPECT_FALSE(VEXCRT::TlsFree(TLS_OUT_OF_INDEXES));
}

TEST(System, Memory_keeps_its_bytes_when_large_pages_are_asked_for)
{
    std::vector<char> memory(5 << 20, 'x');
    for (const std::size_t bytes : {std::size_t{0}, std::size_t{1}, std::size_t{5000}, memory.size() - 1}) {
        VEXCRT::PreferLargePages(memory.data() + 1, bytes);
    }
    EXPECT_EQ(std::count(memory.begin(), memory.end(), 'x'), 5 << 20);
}
