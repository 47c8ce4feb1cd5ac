#pragma once

#include "VEXCRT.h"

#include <string>
#include <vector>

/// Records the assertions reported while it lives, in place of printing them. One at a time, on one thread.
class RecordedAssertions
{
public:
    RecordedAssertions()
    {
        Texts().clear();
        m_previous =
            VEXCRT::SetAssertHandler([](const char* condition, const char*, int) { Texts().emplace_back(condition); });
    }
    ~RecordedAssertions() { VEXCRT::SetAssertHandler(m_previous); }
    RecordedAssertions(const RecordedAssertions&) = delete;
    RecordedAssertions& operator=(const RecordedAssertions&) = delete;

    /// The conditions reported since the last Take().
    std::vector<std::string> Take()
    {
        std::vector<std::string> taken;
        taken.swap(Texts());
        return taken;
    }

private:
    static std::vector<std::string>& Texts()
    {
        static std::vector<std::string> texts;
        return texts;
    }

    VEXCRT::AssertHandler m_previous;
};
