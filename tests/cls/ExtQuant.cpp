#include "Test.h"
#include "cls_ExtQuant.h"

namespace
{
/// All five quanta, asked for twice, as a thread does that asks for the first time.
std::string Quanta(std::string& printed)
{
    thr_ThreadSingletonBase<cls_ExtQuant>::Finalize();
    testing::internal::CaptureStdout();
    std::string texts;
    for (int round = 0; round < 2; ++round) {
        cls_ExtQuant& quanta = thr_ThreadSingleton<cls_ExtQuant>::Instance();
        for (const int quantum :
             {quanta.ExtentQuantumConstTiny(), quanta.ExtentQuantumConstSmall(), quanta.ExtentQuantumConstMedium(),
              quanta.ExtentQuantumConstLarge(), quanta.ExtentQuantumConstHuge()}) {
            texts += std::to_string(quantum) + ' ';
        }
    }
    printed = testing::internal::GetCapturedStdout();
    return texts;
}

TEST(ExtQuant, Takes_overrides_only_under_the_switch_and_reports_each_once)
{
    SetVariable("EXTENT_QUANTUM_SMALL", "100");
    SetVariable("EXTENT_QUANTUM_MEDIUM", "0");
    SetVariable("EXTENT_QUANTUM_LARGE", "many");
    SetVariable("EXTENT_QUANTUM_HUGE", "99999999999");
    std::string printed;
    EXPECT_EQ(Quanta(printed), "4 512 1024 2048 4096 4 512 1024 2048 4096 ");
    EXPECT_EQ(printed, "");
    SetVariable("EXTENT_QUANTUM_OVERRIDE", "0");
    EXPECT_EQ(Quanta(printed), "4 100 1024 2048 4096 4 100 1024 2048 4096 ");
    EXPECT_EQ(printed, "***** EXTENT_QUANTUM_OVERRIDE activated.\n"
                       "***** EXTENT_QUANTUM_TINY = 4\n"
                       "***** EXTENT_QUANTUM_SMALL = 100\n"
                       "***** EXTENT_QUANTUM_MEDIUM = 1024\n"
                       "***** EXTENT_QUANTUM_LARGE = 2048\n"
                       "***** EXTENT_QUANTUM_HUGE = 4096\n");
}
} // namespace
