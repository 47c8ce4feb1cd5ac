#include "uti_MessageFile.h"

#include "Test.h"
#include "uti_ResourceManager.h"
#include "uti_SystemException.h"
#include "uti_XypException.h"

namespace
{
class MessageFile : public testing::Test
{
protected:
    std::string Loaded(const std::string& contents)
    {
        std::ofstream(m_path, std::ios::binary) << contents;
        std::string text;
        const std::string error = ErrorOf<nex_Exception>([&] {
            const uti_MessageFile file(m_path.c_str());
            text = std::string(file("a", "default").view()) + "|" + std::string(file("b", "default").view());
        });
        return error.empty() ? text : "file" + error.substr(error.find(m_path) + m_path.size());
    }

    const ScratchFolder m_folder;
    const std::string m_path = m_folder / "messages";
};

TEST_F(MessageFile, Lines_are_comments_or_texts)
{
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
        EXPECT_EQ(Loaded(contents), result) << contents;
    }
}

TEST_F(MessageFile, Replaces_the_texts_of_errors_and_a_broken_one_leaves_them)
{
    auto& manager = thr_ThreadSingleton<uti_ResourceManager>::Instance();
    const auto install = [&](const char* contents) {
        std::ofstream(m_path) << contents;
        manager.InstallLookup(uti_MessageFile(m_path.c_str()));
    };
    install("uti_XypException_MSGID_01 = leer\n");
    EXPECT_THROW(install("broken"), nex_Exception);
    EXPECT_EQ(uti_XypException(uti_XYP_NO_DATA, "f").AsString(), "f: leer");
    EXPECT_EQ(uti_XypException(uti_XYP_FAILED, "f").AsString(), "f: operation on X-Y data failed");
    manager.InstallLookup({});
    EXPECT_EQ(ErrorOf<uti_SystemException>([] { uti_MessageFile("no/such/file"); }),
              "IOError: no/such/file: No such file or directory");
}
} // namespace
