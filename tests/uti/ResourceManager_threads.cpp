#include "uti_ResourceManager.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

TEST(ResourceManager, A_thread_has_its_own_lookup_and_takes_it_along_when_it_ends)
{
    std::weak_ptr<int> held;
    cow_String there;
    std::thread([&] {
        const auto token = std::make_shared<int>(0);
        held = token;
        auto& manager = thr_ThreadSingleton<uti_ResourceManager>::Instance();
        manager.InstallLookup([token](const char*, const char*) { return cow_String("translated"); });
        there = manager.Text("label", "default");
    }).join();
    EXPECT_EQ(there, "translated");
    EXPECT_EQ(thr_ThreadSingleton<uti_ResourceManager>::Instance().Text("label", "default"), "default");
    EXPECT_TRUE(held.expired()) << "the ended thread's manager still holds its lookup";
}
