#include "Values.h"
#include "omu_BackwardCompat.h"
#include "omu_Module.h"
#include "omu_TypeRegistryCache.h"

TEST(TextRepr, What_stands_for_an_object_that_is_not_expanded)
{
    const std::string longText(300, 'x');
    const std::pair<std::string, std::string> rows[] = {
        {"%s object", "Part object"},
        {"no name", "no name"},
        {"%s and %s", "Part and %s"},
        {"%8s|", "    Part|"},
        {"%-8s|", "Part    |"},
        {"%.2s|", "Pa|"},
        {"%.s|", "|"},
        {"%6.1s|", "     P|"},
        {"100%% %s", "100% Part"},
        {"%%s %s", "%s Part"},
        {"%d %n %5", "%d %n %5"},
        {"%*s %ls %s", "%*s %ls Part"},
        {"%-", "%-"},
        {longText, longText.substr(0, 255)},
        {longText.substr(0, 253) + "%s", longText.substr(0, 253) + "Pa"},
        {"%99999999999999999999s", std::string(251, ' ') + "Part"},
    };
    const Part part;
    auto& settings = omi_Singleton<omu_TextRepr>::Instance();
    for (const auto& [format, shown] : rows) {
        settings.SetMaxRecursionString(cow_String(format));
        EXPECT_EQ(settings.GetMaxRecursionString(&part), cow_String("'" + shown + "'")) << format;
        EXPECT_EQ(settings.GetMaxRecursionString(nullptr), cow_String(format));
    }
}

TEST(BackwardCompat, The_environment_decides)
{
    const std::tuple<const char*, const char*, bool> rows[] = {
        {nullptr, nullptr, true}, {"0", nullptr, false},  {nullptr, "", true}, {"ON", nullptr, false},
        {nullptr, "OFF", false},  {nullptr, "off", true}, {"1", "ON", true},   {"1", "on", false},
        {"1", "", false},         {nullptr, "ON", true},  {"1", "OFF", false},
    };
    for (const auto& [develMode, deprecated, isOn] : rows) {
        SetVariable("BRENOW_DEVL_MODE", develMode);
        SetVariable("BRENOW_DEPRECATED", deprecated);
        omi_SingletonBase<omu_BackwardCompat>::Finalize();
        EXPECT_EQ(omi_Singleton<omu_BackwardCompat>::Instance().IsOn(), isOn)
            << (develMode ? develMode : "unset") << ", " << (deprecated ? deprecated : "unset");
    }
    SetVariable("BRENOW_DEVL_MODE", nullptr);
    SetVariable("BRENOW_DEPRECATED", nullptr);
    omi_SingletonBase<omu_BackwardCompat>::Finalize();
}

TEST(TypeRegistryCache, Registers_a_name_once_and_owns_what_is_kept_there)
{
    const int before = Part::Living();
    auto& cache = omi_Singleton<omu_TypeRegistryCache>::Instance();
    EXPECT_FALSE(cache.IsRegistered("Kept"));
    EXPECT_TRUE(cache.RegisterTypeName("Kept"));
    EXPECT_EQ(cache.Find("Kept"), nullptr);
    cache.Keep("Kept", new Part);
    EXPECT_FALSE(cache.RegisterTypeName("Kept"));
    EXPECT_NE(cache.Find("Kept"), nullptr);
    cache.Keep("Kept", new Part);
    cache.Keep("Other", new Part);
    EXPECT_EQ(Part::Living(), before + 2);
    omi_SingletonBase<omu_TypeRegistryCache>::Finalize();
    EXPECT_EQ(Part::Living(), before);
    EXPECT_FALSE(omi_Singleton<omu_TypeRegistryCache>::Instance().IsRegistered("Kept"));
}

TEST(Module, Only_the_first_start_and_the_last_end_do_anything)
{
    int shared = 0;
    omu_finalize(shared); // the one start of the test program
    const int layers = -shared;
    EXPECT_EQ(layers, 6);

    int count = 0;
    omi_Singleton<omu_TextRepr>::Instance();
    for (int starts = 0; starts < 3; ++starts) {
        omu_initialize(count);
        EXPECT_EQ(count, layers);
    }
    for (const int expected : {layers, layers, 0}) {
        EXPECT_NE(omi_SingletonBase<omu_TextRepr>::Instance(), nullptr);
        omu_finalize(count);
        EXPECT_EQ(count, expected);
    }
    EXPECT_EQ(omi_SingletonBase<omu_TextRepr>::Instance(), nullptr);
    omu_finalize(count);
    EXPECT_EQ(count, 0) << "one end too many";
    omu_initialize(shared);
    EXPECT_EQ(shared, 0);
}
