#include "VEXcrt_System.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <vector>

TEST(System, An_environment_variable_is_absent_or_has_a_text)
{
    EXPECT_EQ(VEXCRT::GetEnvironment("VEXCRT_NO_SUCH_VARIABLE"), std::nullopt);
    EXPECT_EQ(VEXCRT::GetEnvironment("PATH"), std::getenv("PATH"));
#if !defined(_WIN32)
    setenv("VEXCRT_EMPTY_VARIABLE", "", 1);
    EXPECT_EQ(VEXCRT::GetEnvironment("VEXCRT_EMPTY_VARIABLE"), "");
#endif
}

TEST(System, Error_numbers_have_the_texts_of_the_C_library)
{
    EXPECT_EQ(VEXCRT::ErrorText(ENOENT), "No such file or directory");
    EXPECT_NE(VEXCRT::ErrorText(99999), "");
}

TEST(Slots, Only_a_reserved_index_holds_a_pointer)
{
    int target = 0;
    const std::uint32_t index = VEXCRT::TlsAlloc();
    ASSERT_NE(index, TLS_OUT_OF_INDEXES);
    EXPECT_EQ(VEXCRT::TlsGetValue(index), nullptr);
    EXPECT_TRUE(VEXCRT::TlsSetValue(index, nullptr));
    EXPECT_TRUE(VEXCRT::TlsSetValue(index, &target));
    EXPECT_EQ(VEXCRT::TlsGetValue(index), &target);
    EXPECT_TRUE(VEXCRT::TlsFree(index));
#if !defined(_WIN32) // Windows does not look, to be fast
    EXPECT_EQ(VEXCRT::TlsGetValue(index), nullptr);
    EXPECT_FALSE(VEXCRT::TlsSetValue(index, &target));
#endif
    EXPECT_FALSE(VEXCRT::TlsFree(index));
    EXPECT_EQ(VEXCRT::TlsGetValue(TLS_OUT_OF_INDEXES), nullptr);
    EXPECT_FALSE(VEXCRT::TlsSetValue(TLS_OUT_OF_INDEXES, &target));
    EXPECT_FALSE(VEXCRT::TlsFree(TLS_OUT_OF_INDEXES));
}

TEST(Slots, All_indexes_are_usable_at_once_and_empty_when_reserved_again)
{
    for (int round = 0; round < 2; ++round) {
        std::vector<std::uint32_t> indexes;
        for (std::uint32_t index = 0; (index = VEXCRT::TlsAlloc()) != TLS_OUT_OF_INDEXES;) {
            ASSERT_EQ(VEXCRT::TlsGetValue(index), nullptr) << "round " << round << ", index " << index;
            indexes.push_back(index);
        }
        EXPECT_GT(indexes.size(), 1000u);
        const std::vector<std::uint32_t> targets = indexes;
        for (std::size_t i = targets.size(); i-- > 0;) {
            ASSERT_TRUE(VEXCRT::TlsSetValue(indexes[i], const_cast<std::uint32_t*>(&targets[i])));
        }
        for (std::size_t i = 0; i < targets.size(); ++i) {
            EXPECT_EQ(VEXCRT::TlsGetValue(indexes[i]), &targets[i]);
            EXPECT_TRUE(VEXCRT::TlsFree(indexes[i]));
        }
    }
}
