#pragma once

// What tests of every folder need: the framework, much of the standard library, and the helpers that all share.

#include "VEXCRT.h"
#include "pnt_debugPrint.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

using Texts = std::vector<std::string>;

/// The text of the E that `call` ends with, or empty; anything else that is thrown fails the test.
template <class E = std::exception, class Call> std::string ErrorOf(Call call)
{
    try {
        call();
    } catch (const E& error) {
        return error.what();
    }
    return "";
}

/// What `call` writes to the debugging text.
template <class Call> std::string DebugText(Call call)
{
    std::ostringstream text;
    pnt_debugPrint().SetStream(&text);
    pnt_debugPrint().StartDebug();
    call();
    pnt_debugPrint().EndDebug();
    pnt_debugPrint().SetStream(nullptr);
    return text.str();
}

/// Sets a variable of the process's environment, or removes it (null).
inline void SetVariable(const char* name, const char* value)
{
#ifdef _WIN32
    _putenv_s(name, value != nullptr ? value : "");
#else
    value != nullptr ? setenv(name, value, 1) : unsetenv(name);
#endif
}

/// Records the assertions reported while it lives, in place of printing them. One at a time, on one thread.
class RecordedAssertions
{
public:
    RecordedAssertions()
    {
        s_conditions.clear();
        s_places.clear();
        m_previous = VEXCRT::SetAssertHandler([](const char* condition, const char* source, int line) {
            s_conditions.emplace_back(condition);
            s_places.push_back(std::string(source) + " " + std::to_string(line));
        });
    }
    ~RecordedAssertions() { VEXCRT::SetAssertHandler(m_previous); }
    RecordedAssertions(const RecordedAssertions&) = delete;
    RecordedAssertions& operator=(const RecordedAssertions&) = delete;

    /// The conditions reported since the last Take().
    Texts Take() { return std::exchange(s_conditions, {}); }
    /// Source and line of all that were reported.
    const Texts& Places() const { return s_places; }

private:
    static inline Texts s_conditions, s_places;

    VEXCRT::AssertHandler m_previous;
};

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
