#include "uti_MessageFile.h"

#include "Test.h"
#include "uti_SystemException.h"

namespace
{
/// The texts of "a" and "b" in a file, or why it is refused.
std::string Loaded(const std::string& path, const std::string& contents)
{
    std::ofstream(path, std::ios::binary) << contents;
    std::string text;
    const std::string error = ErrorOf<nex_Exception>([&] {
        const uti_MessageFile file(path.c_str());
        text = std::string(file("a", "default").view()) + "|" + std::string(file("b", "default").view());
    });
    return error.empty() ? text : "file" + error.substr(error.find(path) + path.size());
}

TEST(MessageFile, Lines_are_comments_or_texts)
{
    const ScratchFolder folder;
    const std::pair<const char*, const char*> rows[] = {
        {"", "default|default"},
        {"\xEF\xBB\xBF# x\r\n\r\n \ta\t= \tx = y \r\nb=", "x = y|"},
        {"a = \\sx\\n\\ty\\\\z\\s\n  # b = 1", " x\n\ty\\z |default"},
        {"a = 1\n\nb", "file:3: expected 'label = text'"},
        {"= 1", "file:1: expected 'label = text'"},
        {"a b = 1", "file:1: expected 'label = text'"},
        {"a = 1\nb = 2\na = 1", "file:3: label stands twice: a"},
        {"a = \\d", "file:1: unknown escape \\d"},
        {"a = x\\", "file:1: unknown escape \\"},
    };
    for (const auto& [contents, result] : rows) {
        EXPECT_EQ(Loaded(folder / "messages", contents), result) << contents;
    }
    EXPECT_EQ(ErrorOf<uti_SystemException>([] { uti_MessageFile("no/such/file"); }),
              "IOError: no/such/file: No such file or directory");
}
} // namespace
