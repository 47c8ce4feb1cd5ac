#include "StreamChecks.h"
#include "omn_FixedString.h"
#include "utl_FilePath.h"
#include "utl_PathFinder.h"

namespace
{
constexpr bool IS_WINDOWS = std::filesystem::path::preferred_separator != '/';
} // namespace

TEST(FilePath, Parts_are_cut_at_the_last_name)
{
    // The path, its directory, name and extension, and whether it is absolute.
    using Row = std::tuple<const char*, const char*, const char*, const char*, bool>;
    const Row common[] = {{"", "", "", "", false},
                          {"f", "", "f", "", false},
                          {"a/b.inp", "a", "b.inp", ".inp", false},
                          {"a//b/", "a", "b", "", false},
                          {"../.profile", "..", ".profile", "", false},
                          {"a.b/..", "a.b", "..", "", false},
                          {"a/..x.tar.gz", "a", "..x.tar.gz", ".gz", false},
                          {"a/b.", "a", "b.", ".", false},
                          {"./f", ".", "f", "", false}};
    const Row posix[] = {{"/", "/", "", "", true},        {"/f", "/", "f", "", true},
                         {"//f//", "//", "f", "", true},  {"/a/b", "/a", "b", "", true},
                         {"a\\b", "", "a\\b", "", false}, {"C:/f", "C:", "f", "", false}};
    const Row windows[] = {{"/f", "/", "f", "", false},      {"a\\b.x", "a", "b.x", ".x", false},
                           {"C:f", "C:", "f", "", false},    {"C:\\f", "C:\\", "f", "", true},
                           {"C:/a\\", "C:/", "a", "", true}, {"\\\\host\\share\\f", "\\\\host\\share", "f", "", true}};
    const auto check = [](const Row& row) {
        const auto& [text, directory, name, extension, isAbsolute] = row;
        SCOPED_TRACE(text);
        const utl_FilePath path(text);
        EXPECT_EQ(path.Directory().PathName(), directory);
        EXPECT_EQ(path.BaseName(), name);
        EXPECT_EQ(path.Extension(), extension);
        EXPECT_EQ(path.IsAbsolute(), isAbsolute);
        EXPECT_EQ(path.AbsolutePathName() == path.PathName(), isAbsolute || path.IsEmpty());
    };
    for (const Row& row : common) {
        check(row);
    }
    for (const Row& row : IS_WINDOWS ? windows : posix) {
        check(row);
    }
}

TEST(FilePath, Joining_keeps_what_is_absolute)
{
    const std::string separator(1, static_cast<char>(std::filesystem::path::preferred_separator));
    EXPECT_EQ(utl_FilePath("a").Join("b").PathName(), cow_String("a" + separator + "b"));
    EXPECT_EQ(utl_FilePath("a/").Join("b").PathName(), "a/b");
    EXPECT_EQ(utl_FilePath().Join("b").PathName(), "b");
    EXPECT_EQ(utl_FilePath("a").Join("//host/b").PathName(), "//host/b");
    const std::string here = std::filesystem::current_path().string();
    const char* const leaf = IS_WINDOWS ? "y" : "x/../y"; // Windows never asks whether x is a link
    EXPECT_EQ(utl_FilePath("x/../y").AbsolutePathName(), utl_FilePath(here.c_str()).Join(leaf).PathName());
}

TEST(PathFinder, Files_are_found_in_the_order_of_the_list)
{
    namespace fs = std::filesystem;
    const ScratchFolder scratch;
    const fs::path& folder = scratch.Path();
    for (const char* const file : {"first/tool/x", "second/tool", "third/tool", "third/other"}) {
        fs::create_directories((folder / file).parent_path());
        std::ofstream(folder / file) << "x";
    }
    const auto find = [](const std::string& name, bool currentFirst = false) {
        return fs::path(utl_PathFinder::getPath(name.c_str(), "VEXUTL_TEST_PATH", currentFirst).PathName().view());
    };
    EXPECT_EQ(find("tool"), fs::path()) << "there is no list";
    const std::string separator = IS_WINDOWS ? ";" : ":";
    std::string list = (folder / "missing").string();
    for (const char* const entry : {"first", "second", "third"}) { // "tool" in the first is a folder
        list += separator + (folder / entry).string();
    }
    SetVariable("VEXUTL_TEST_PATH", list.c_str());
    EXPECT_EQ(find("tool"), folder / "second" / "tool");
    EXPECT_EQ(find("other"), folder / "third" / "other");
    EXPECT_EQ(find("nowhere"), fs::path());
    EXPECT_EQ(find((folder / "third" / "tool").string()), folder / "third" / "tool");
    EXPECT_EQ(find((folder / "nowhere").string()), fs::path());

    const fs::path before = fs::current_path();
    fs::current_path(folder / "third");
    EXPECT_EQ(find("tool", /*currentFirst=*/true), fs::path("tool"));
    EXPECT_EQ(find("tool"), folder / "second" / "tool");
    SetVariable("VEXUTL_TEST_PATH", ((folder / "first").string() + separator).c_str());
    EXPECT_EQ(find("tool"), fs::path("tool")); // the empty entry behind the separator
    SetVariable("VEXUTL_TEST_PATH", nullptr);
    fs::current_path(before);
}

TEST(FixedString, Holds_what_fits_and_reads_nothing_longer)
{
    using Text = omn_FixedString<4>;
    Text text("abcdef");
    EXPECT_EQ(text.view(), "abcd");
    EXPECT_STREQ(text.AsCharPtr(), "abcd");
    Text part("ab");
    part.Append(part.view());
    part.Append("x");
    EXPECT_EQ(part.view(), "abab");
    EXPECT_LT(part, text);
    EXPECT_EQ(Text(static_cast<const char*>(nullptr)), Text());

    ExpectStreamed(text);
    EXPECT_EQ(ReadFrom(BytesOf(cow_String("abcde")), part), "a text too long for its field at offset 0");
    EXPECT_EQ(part.view(), "abab");
}
