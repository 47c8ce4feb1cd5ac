#include "uti_ResourceManager.h"

#include "Test.h"
#include "uti_Module.h"
#include "uti_XypException.h"

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

TEST(ResourceManager, An_installation_names_a_message_file_for_every_thread)
{
    const ScratchFolder folder;
    const std::string path = folder / "messages";
    const auto shown = [&](const char* contents) {
        std::ofstream(path) << contents;
        int users = 0;
        uti_initialize(users);
        uti_finalize(users);
        cow_String here = uti_XypException(uti_XYP_NO_DATA, "").AsString(), there;
        std::thread([&] { there = uti_XypException(uti_XYP_NO_DATA, "").AsString(); }).join();
        return std::string((here + "|" + there).view());
    };
    SetVariable("VEXOMU_MESSAGES", path.c_str());
    EXPECT_EQ(shown("uti_XypException_MSGID_01 = leer"), "leer|leer");
    testing::internal::CaptureStderr();
    EXPECT_EQ(shown("\nbroken"), "leer|leer");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "VEXOMU_MESSAGES: " + path + ":2: expected 'label = text'\n");
    SetVariable("VEXOMU_MESSAGES", "");
    uti_ResourceManager::InstallForNewThreads({});
    thr_ThreadSingleton<uti_ResourceManager>::Instance().InstallLookup({});
}
