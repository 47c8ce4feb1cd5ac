#include "uti_LabelMap.h"

#include "Test.h"
#include "uti_ResourceManager.h"

namespace
{

enum Fruit : int
{
    APPLE = 7,
    PEAR = 2,
    PLUM = 9,
    UNLISTED = 4
};

using Strings = cow_List<cow_String>;

void Install(uti_ResourceManager::Lookup lookup)
{
    thr_ThreadSingleton<uti_ResourceManager>::Instance().InstallLookup(std::move(lookup));
}

} // namespace

template <>
const uti_LabelEntry uti_LabelMap<Fruit>::ENTRIES[] = {
    {APPLE, "Fruit_07", "apple"}, {PEAR, "Fruit_02", "pear"}, {APPLE, "Fruit_07b", "second apple"},
    {PLUM, "Fruit_09", "pear"},   {0, nullptr, nullptr},
};

template <> const uti_LabelEntry uti_LabelMap<Fruit, 1>::ENTRIES[] = {{0, nullptr, nullptr}};

using Fruits = uti_LabelMap<Fruit>;
using NoFruits = uti_LabelMap<Fruit, 1>;

TEST(LabelMap, The_first_entry_of_a_key_and_of_a_text_counts)
{
    EXPECT_EQ(Fruits::LabelString(APPLE), "apple");
    EXPECT_STREQ(Fruits::ResourceName(APPLE), "Fruit_07");
    EXPECT_EQ(Fruits::LabelKey("pear"), PEAR);
    EXPECT_EQ(Fruits::DefaultLabelKey("pear"), PEAR);
    EXPECT_EQ(Fruits::ResourceKey("Fruit_07b"), APPLE);
    EXPECT_EQ(Fruits::DefaultLabelStrings(), (Strings{"apple", "pear", "second apple", "pear"}));
    EXPECT_EQ(Fruits::ResourceNames(), (Strings{"Fruit_07", "Fruit_02", "Fruit_07b", "Fruit_09"}));
}

TEST(LabelMap, An_absent_key_has_null_texts_and_an_absent_text_is_an_assertion)
{
    RecordedAssertions assertions;
    Install([](const char*, const char*) { return cow_String("asked for what is absent"); });
    EXPECT_EQ(Fruits::LabelString(UNLISTED), "");
    EXPECT_EQ(Fruits::DefaultLabelString(UNLISTED), nullptr);
    EXPECT_EQ(Fruits::ResourceName(UNLISTED), nullptr);
    EXPECT_EQ(NoFruits::LabelString(static_cast<Fruit>(0)), "") << "the closing entry is no entry";
    EXPECT_EQ(NoFruits::LabelStrings().Length(), 0);
    EXPECT_EQ(assertions.Take(), Texts());
    Install({});

    EXPECT_EQ(Fruits::LabelKey("Apple"), Fruits::NO_KEY);
    EXPECT_EQ(Fruits::DefaultLabelKey("app"), Fruits::NO_KEY);
    EXPECT_EQ(Fruits::ResourceKey("apple"), Fruits::NO_KEY);
    const std::string label = "Unable to find key given label string";
    const std::string resource = "Unable to find key given resource string";
    EXPECT_EQ(assertions.Take(), (Texts{label, label, resource}));
}

TEST(LabelMap, An_installed_lookup_gives_the_label_strings_only_while_it_stands)
{
    RecordedAssertions assertions;
    Install([](const char* label, const char* defaultText) {
        return cow_String(std::string_view(label) == "Fruit_07" ? "Apfel" : defaultText);
    });
    EXPECT_EQ(Fruits::LabelStrings(), (Strings{"Apfel", "pear", "second apple", "pear"}));
    EXPECT_EQ(Fruits::LabelKey("Apfel"), APPLE);
    EXPECT_EQ(Fruits::LabelKey("apple"), Fruits::NO_KEY);
    EXPECT_EQ(Fruits::DefaultLabelKey("apple"), APPLE);
    EXPECT_STREQ(Fruits::DefaultLabelString(APPLE), "apple");
    Install({});
    EXPECT_EQ(Fruits::LabelString(APPLE), "apple");
}
