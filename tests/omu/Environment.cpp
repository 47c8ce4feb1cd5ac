#include "Test.h"
#include "omu_Module.h"

namespace
{

/// Values ask the type tables what they are, so the library is up while the tests of this folder run.
class StartedLibrary : public testing::Environment
{
public:
    void SetUp() override { omu_initialize(m_count); }
    void TearDown() override { omu_finalize(m_count); }

private:
    int m_count = 0;
};

[[maybe_unused]] const testing::Environment* const startedLibrary =
    testing::AddGlobalTestEnvironment(new StartedLibrary);

} // namespace
