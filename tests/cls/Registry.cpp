#include "cls_ClassRegistrar.h"
#include "cls_CollectionType.h"
#include "cls_Module.h"
#include "typ_ArchCompTable.h"
#include "utl/StreamChecks.h"

namespace
{
void* Build(cls_ReadVisitor&)
{
    return nullptr;
}

TEST(ClassRegistrar, The_first_registration_stays_current_and_the_latest_answers_for_its_version)
{
    cls_ClassRegistrar registrar;
    const auto& one = registrar.CreateClassMD("Part", 7, 1, Build, 1);
    const auto& three = registrar.CreateClassMD("Part", 7, 3, Build, 1);
    const auto& two = registrar.CreateClassMD("Part", 7, 2, Build, 1);
    EXPECT_EQ(&registrar.ConstGet(7), &one);
    EXPECT_EQ(&registrar.GetClassMetadata(7, 2), &two);
    EXPECT_EQ(&registrar.GetClassMetadata(7, 3), &three);
    EXPECT_EQ(registrar.GetLastClassVersionNumber(7), 3);

    const auto& again = registrar.CreateClassMD("Part", 7, 1, Build, 1);
    const auto& third = registrar.CreateClassMD("Part", 7, 1, Build, 1);
    EXPECT_NE(&again, &third);
    EXPECT_EQ(&registrar.GetClassMetadata(7, 1), &third);
    EXPECT_EQ(&registrar.ConstGet(7), &one);
    EXPECT_EQ(one.Name(), "Part");
}

TEST(ClassRegistrar, A_name_belongs_to_the_first_class_that_takes_it)
{
    cls_ClassRegistrar registrar;
    registrar.CreateClassMD("Part", 7, 1, Build, 1);
    registrar.CreateClassMD("Part", 8, 1, Build, 1);
    EXPECT_EQ(registrar.GetClassID("Part"), 7u);

    registrar.CreateClassMD("Other", 7, 2, Build, 1); // the class is known already: its new name is not taken
    EXPECT_NE(RefusalOf([&] { registrar.GetClassID("Other"); }), "");

    registrar.DeleteClass("Part", 9);
    registrar.DeleteClass("Gone", 9);
    EXPECT_EQ(registrar.GetClassID("Part"), 7u);
    EXPECT_EQ(registrar.GetClassID("Gone"), 9u);
    EXPECT_NE(RefusalOf([&] { registrar.ConstGet(9); }), "");
}

TEST(ClassRegistrar, Failures_have_their_exact_texts)
{
    int count = 0;
    cls_initialize(count);
    cls_ClassRegistrar registrar;
    EXPECT_EQ(typ_ArchCompTable::GetName(0x230001), "cls_xip1DArrayList");
    EXPECT_TRUE(typ_ArchCompTable::IsParent(0x230004, 0x230002));
    EXPECT_EQ(typ_ArchCompTable::Find(0x230005), nullptr);
    registrar.CreateClassMD("array", 0x230003, 1, Build, 1);
    const std::tuple<const char*, std::function<void()>, std::string, std::string> rows[] = {
        {"ConstGet", [&] { registrar.ConstGet(0x230004); },
         "cls_ClassRegistrar::ConstGet failed: Class ID 2293764 is not declared in metadata.",
         "class Name=cls_2dArrayPrim\n"},
        {"an id above the signed range", [&] { registrar.ConstGet(0xFFFFFFFF); },
         "cls_ClassRegistrar::ConstGet failed: Class ID -1 is not declared in metadata.", "class Name=\n"},
        {"GetClassMetadata", [&] { registrar.GetClassMetadata(0x230004, 1); },
         "cls_ClassRegistrar::GetClassMetadata failed: Class ID 2293764 (cls_2dArrayPrim) is not declared in metadata.",
         "cidName:\ncls_2dArrayPrim\n"},
        {"version", [&] { registrar.GetClassMetadata(0x230003, 2); },
         "cls_ClassRegistrar::GetClassMetadata failed: Class ID 2293763 (cls_ArrayPrim) is not declared in metadata "
         "for "
         "version 2.",
         "version:2\n"},
        {"GetClassID", [&] { registrar.GetClassID("nobody"); },
         "cls_ClassRegistrar::GetClassID failed: Class ID can't be retrieved from class name nobody.", ""},
        {"empty name", [&] { registrar.GetClassID(cow_String()); },
         "cls_ClassRegistrar::GetClassID failed: Class ID can't be retrieved from class name .", ""},
        {"GetLastClassVersionNumber", [&] { registrar.GetLastClassVersionNumber(3); },
         "cls_ClassRegistrar::GetLastClassVersionNumber failed: Class ID 3 is not declared in metadata.", ""},
    };
    for (const auto& [name, call, message, diagnostic] : rows) {
        SCOPED_TRACE(name);
        EXPECT_EQ(DebugText([&] { EXPECT_EQ(RefusalOf(call), message); }), diagnostic);
    }
    const cow_String longName(std::string(600, 'n'));
    EXPECT_EQ(RefusalOf([&] { registrar.GetClassID(longName); }).size(), 499u);
    cls_finalize(count);
}

TEST(ClassMetadata, Attributes_stand_in_the_order_of_their_names)
{
    cls_FieldHandle numbered("b");
    numbered.SetFieldID(4);
    cls_ClassMetadata metadata("Part", 7, 203, Build, 1);
    EXPECT_EQ(metadata.MaxFieldID(), -1);
    metadata.AddAttribute(numbered, cls_ATTRIBUTE_REAL, 3, static_cast<cls_CollectionType>(83))
        .AddAttribute(cls_FieldHandle("a"), cls_ATTRIBUTE_INT, 1, cls_COLLECTION_NONE)
        .AddAttribute(cls_FieldHandle("B"), cls_ATTRIBUTE_STRING, 1, cls_COLLECTION_NONE)
        .AddAttribute(cls_FieldHandle("a"), cls_ATTRIBUTE_REAL, 9, cls_COLLECTION_ARRAY);
    EXPECT_EQ(metadata.MaxFieldID(), 4);
    std::string text;
    for (const auto* attribute : metadata.Attributes()) {
        text += std::string(attribute->FieldName().view()) + std::to_string(attribute->FieldID()) + ',' +
                std::to_string(attribute->Type()) + ',' + std::to_string(attribute->Count()) + ',' +
                std::to_string(attribute->Collection()) + ' ';
        EXPECT_EQ(metadata.FindAttribute(attribute->FieldName()), attribute);
    }
    EXPECT_EQ(text, "B-1,11,1,0 a-1,5,1,0 b4,15,3,83 ");
    EXPECT_EQ(metadata.FindAttribute("c"), nullptr);
}

template <class T> int Fix(int code)
{
    return static_cast<int>(cls_CollectionTypeFix(static_cast<cls_CollectionType>(code), static_cast<T*>(nullptr)));
}

TEST(CollectionTypeFix, Adds_the_element_to_the_generic_codes_only)
{
    const std::tuple<int (*)(int), int> rows[] = {{Fix<bool>, 5}, {Fix<double>, 5},     {Fix<float>, 5},
                                                  {Fix<int>, 3},  {Fix<cow_String>, 2}, {Fix<unsigned int>, 5}};
    const std::set<int> generic{50, 60, 70, 80, 90, 100};
    for (int element = 1; element <= 6; ++element) {
        const auto& [fix, keyed] = rows[element - 1];
        for (int code = 0; code <= 120; ++code) {
            const int expected = code == 5 ? keyed : generic.contains(code) ? code + element : code;
            EXPECT_EQ(fix(code), expected) << element << ' ' << code;
        }
    }
}

} // namespace
