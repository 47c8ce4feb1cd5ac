#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

/// A folder of the running test's own, empty at first and gone with this object: tests run side by side.
class ScratchFolder
{
public:
    ScratchFolder()
    {
        const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
        m_path = std::filesystem::path(testing::TempDir()) / (std::string(test.test_suite_name()) + "." + test.name());
        std::filesystem::remove_all(m_path);
        std::filesystem::create_directories(m_path);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder() { std::filesystem::remove_all(m_path); }

    const std::filesystem::path& Path() const noexcept { return m_path; }
    std::string operator/(const char* name) const { return (m_path / name).string(); }

private:
    std::filesystem::path m_path;
};
