#include <gtest/gtest.h>

#include <clocale>

/// As programs with users do, the tests take the locale of their environment: what the library writes and reads is the
/// same in all of them.
int main(int argc, char** argv)
{
    std::setlocale(LC_ALL, "");
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
