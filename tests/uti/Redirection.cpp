#include "uti_Redirection.h"

#include "Test.h"
#include "VEXcrt_Process.h"
#include "uti_SpawnSource.h"
#include "uti_SystemException.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace
{
/// Starts with a redirection that is there before.
class Starter : public uti_SpawnSource
{
public:
    Starter() = default;
    void Start(uti_Redirection&& redirection)
    {
        spawnSource("none", utl_FilePath("/no/such/program"), ArgumentList(), redirection, Environment());
    }
};

TEST(Redirection, What_cannot_be_meant_is_refused)
{
    const std::pair<const char*, const char*> rows[] = {
        {"< a > b 2>> c", ""},
        {"< a > b 2> c <", "Two many redirection arguments"},
        {"< a >", "Redirection arguments must be paired"},
        {"1> a", "Unrecognized redirector symbol"},
        {"< a < b", "Stream stdin has already redirected."},
        {">> a >& b", "Stream stdout has already redirected."},
        {">& a 2> b", "Stream stderr has already redirected."},
        {"2>> a >>& b", "Stream stderr has already redirected."},
    };
    for (const auto& [text, refusal] : rows) {
        cow_1DArrayList<cow_String, cow_String> arguments;
        std::istringstream words(text);
        for (std::string word; words >> word;) {
            arguments.Append(cow_String(word));
        }
        EXPECT_EQ(ErrorOf([&] { uti_Redirection from(arguments); }), refusal) << text;
        if (arguments.Length() < 7) {
            EXPECT_EQ(ErrorOf([&] { uti_Redirection from((cow_String(text))); }), refusal) << text;
        }
    }
    for (const char* text : {"> a b", "'>'", "A=1"}) {
        EXPECT_EQ(ErrorOf([&] { uti_Redirection from((cow_String(text))); }), "Unrecognized redirector symbol") << text;
    }
    EXPECT_EQ(ErrorOf([] { uti_Redirection("<", "a").CreateSink(); }), "Stream stdin has already redirected.");
    EXPECT_EQ(ErrorOf([] { uti_Redirection(">>", "a").CreateSource(); }), "Stream stdout has already redirected.");
    EXPECT_EQ(ErrorOf([] { uti_Redirection("<", "no/such/file").OpenAll(); }),
              "IOError: : " + std::string(std::strerror(ENOENT)));
}

TEST(Redirection, A_descriptor_that_is_not_open_is_reported_by_the_result_of_the_call)
{
    try {
        uti_Redirection("2>", 1000);
        ADD_FAILURE();
    } catch (const uti_SystemException& exception) {
        EXPECT_EQ(exception.Function(), "fstat");
        EXPECT_EQ(exception.ErrorNumber(), -1);
        EXPECT_EQ(exception.Line(), 206);
    }
}

TEST(Redirection, Owns_its_descriptors_once)
{
    VEXCRT::Pipe pipe;
    ASSERT_TRUE(VEXCRT::MakePipe(pipe, /*isText=*/false));
    EXPECT_NE(ErrorOf([&] { uti_Redirection("<", pipe.readEnd, "?", "a"); }), ""); // and it stays open
    {
        uti_Redirection all("<", pipe.readEnd, ">", pipe.writeEnd, "2>", pipe.writeEnd);
        all.Nullify();
    }
    EXPECT_FALSE(VEXCRT::IsOpenDescriptor(pipe.readEnd));
    EXPECT_FALSE(VEXCRT::IsOpenDescriptor(pipe.writeEnd));
}

TEST(Redirection, Closes_the_streams_of_this_process_unless_a_start_was_tried)
{
    uti_Redirection("<", 0);
    EXPECT_FALSE(VEXCRT::IsOpenDescriptor(0));
    ASSERT_NE(std::freopen(VEXCRT::NullDevice(), "r", stdin), nullptr);
    EXPECT_NE(ErrorOf([] { uti_Spawn::AndWait("no-such-program 2>&1"); }), "");
    EXPECT_NE(ErrorOf([] { uti_SpawnSource("no-such-program > a 2>&1"); }), "");
    EXPECT_NE(ErrorOf([] { Starter().Start(uti_Redirection("<", 0, ">&", 1)); }), "") << "no room for the pipe";
    EXPECT_NE(ErrorOf([] { Starter().Start(uti_Redirection("<", 0, "2>", 1)); }), "") << "no program";
    EXPECT_TRUE(VEXCRT::IsOpenDescriptor(0));
    EXPECT_TRUE(VEXCRT::IsOpenDescriptor(1));
}

TEST(Redirection, Files_are_those_of_the_directory_at_construction)
{
    namespace fs = std::filesystem;
    const fs::path start = fs::current_path();
    const ScratchFolder scratch;
    const fs::path& folder = scratch.Path();
    fs::create_directories(folder / "below");
    fs::current_path(folder);
    std::ofstream("old") << "12345";
    std::ofstream("longer") << "12345";
    {
        uti_Redirection files(">>", "longer", "<", "old");
        uti_Redirection emptied(">", "old");
        fs::current_path(folder / "below");
        files.OpenAll();
        emptied.OpenAll();
    }
    EXPECT_EQ(fs::file_size(folder / "old"), 0u);
    EXPECT_EQ(fs::file_size(folder / "longer"), 5u);
    EXPECT_TRUE(fs::is_empty(folder / "below"));
    fs::current_path(start);
}
} // namespace
