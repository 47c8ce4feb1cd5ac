#include "uti_FileUtils.h"

#include "Test.h"
#include "uti_SystemException.h"

#include <cerrno>

namespace fs = std::filesystem;

namespace
{
class FileUtils : public testing::Test
{
protected:
    FileUtils()
    {
        fs::create_directories(m_folder / "folder");
        Write("source", "new contents");
        Write("target", "old");
    }

    std::string Path(const std::string& name) const { return m_scratch.Path().string() + "/" + name; }
    void Write(const char* name, const std::string& contents) const { std::ofstream(Path(name)) << contents; }
    std::string Contents(const char* name) const
    {
        std::ifstream file(Path(name));
        return {std::istreambuf_iterator<char>(file), {}};
    }
    bool Copy(const std::string& from, const std::string& to) const
    {
        return uti_fileCopy(cow_String(Path(from)), cow_String(Path(to)));
    }
    std::ptrdiff_t Files() const { return std::distance(fs::directory_iterator(m_folder), {}); }

    const ScratchFolder m_scratch;
    const fs::path& m_folder = m_scratch.Path();
};

TEST_F(FileUtils, A_copy_replaces_the_target_and_a_failed_one_leaves_it)
{
    EXPECT_FALSE(Copy("source", "target"));
    EXPECT_EQ(Contents("target"), "new contents");
    using namespace std::string_literals;
    const std::pair<std::string, std::string> failing[] = {{"none", "target"},        {"folder", "target"},
                                                           {"source", "folder"},      {"source", "none/x"},
                                                           {"source\0x"s, "target"s}, {"source"s, "other\0x"s}};
    for (const auto& [from, to] : failing) {
        testing::internal::CaptureStderr();
        EXPECT_TRUE(Copy(from, to)) << from << " " << to;
        const std::string report = testing::internal::GetCapturedStderr();
        EXPECT_TRUE(report.starts_with("Copy file failed: ")) << report;
        EXPECT_EQ(report.find('\n'), report.size() - 1);
    }
    EXPECT_EQ(Contents("target"), "new contents");
    EXPECT_EQ(Files(), 3) << "something was left behind";
}

#if !defined(_WIN32)
TEST_F(FileUtils, A_copy_keeps_permissions_and_holes_and_follows_links)
{
    const auto odd = fs::perms::owner_all | fs::perms::group_exec | fs::perms::others_write;
    fs::permissions(Path("source"), odd);
    EXPECT_FALSE(Copy("source", "other"));
    EXPECT_EQ(fs::status(Path("other")).permissions(), odd);
    EXPECT_FALSE(Copy("other", "other"));
    EXPECT_EQ(Contents("other"), "new contents");

    std::fstream sparse(Path("sparse"), std::ios::out);
    constexpr std::streamoff FAR = std::streamoff{5} << 30; // past 32 bits
    sparse.seekp(FAR) << "end";
    sparse.close();
    fs::resize_file(Path("sparse"), FAR + 100000);
    fs::create_symlink("target", Path("link"));
    EXPECT_FALSE(Copy("sparse", "link"));
    EXPECT_TRUE(fs::is_symlink(Path("link")));
    EXPECT_EQ(fs::file_size(Path("target")), std::uintmax_t{FAR} + 100000);
    char bytes[4] = {};
    std::ifstream(Path("target")).seekg(FAR - 1).read(bytes, 4);
    EXPECT_EQ(std::string(bytes, 4), std::string("\0end", 4));

    fs::create_symlink("nowhere", Path("astray"));
    testing::internal::CaptureStderr();
    EXPECT_TRUE(Copy("source", "astray"));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Copy file failed: No such file or directory\n");
    EXPECT_TRUE(fs::is_symlink(Path("astray")));

    EXPECT_FALSE(uti_fileCopy("/proc/self/status", Path("other").c_str()));
    EXPECT_NE(Contents("other").find("Pid:"), std::string::npos) << "the system says it has no bytes";
    EXPECT_FALSE(uti_fileCopy(Path("source").c_str(), "/dev/null"));
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}
#endif

TEST_F(FileUtils, A_file_is_checked_before_it_is_opened)
{
    const std::tuple<const char*, uti_AccessModeEnm, int> rows[] = {
        {"source", uti_ACCESS_READ_WRITE, 0}, {"none", uti_ACCESS_WRITE, 0},
        {"folder", uti_ACCESS_EXISTS, 0},     {"none", uti_ACCESS_EXISTS, ENOENT},
        {"none", uti_ACCESS_READ, ENOENT},    {"none", uti_ACCESS_READ_WRITE, ENOENT},
        {"none/x", uti_ACCESS_WRITE, ENOENT}, {"folder", uti_ACCESS_READ, EISDIR},
        {"folder", uti_ACCESS_WRITE, EISDIR},
    };
    for (const auto& [name, mode, error] : rows) {
        const cow_String path = Path(name).c_str();
        try {
            EXPECT_EQ(uti_PreCheckFile(path, mode, "the mesh"), path);
            EXPECT_EQ(error, 0) << name << " " << mode;
        } catch (const uti_SystemException& exception) {
            EXPECT_EQ(exception.ErrorNumber(), error) << name << " " << mode;
            EXPECT_EQ(exception.Function(), "PreCheckFile");
            EXPECT_EQ(exception.FileName(), "the mesh");
        }
    }
}

TEST(SplitPath, The_results_may_replace_the_path)
{
    cow_String first = "a/b/c", second;
    uti_SplitPath(first, first, second);
    EXPECT_EQ(first, "a/b");
    EXPECT_EQ(second, "c");
}
} // namespace
