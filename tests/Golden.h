#pragma once

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

/// The bytes of a file in the tests' data that Linux wrote; with VEXOMU_WRITE_GOLDEN in the environment it is first made
/// anew from `bytes`. What every system writes alike, each can read from any other.
inline std::string Golden(const std::string& file, const std::string& bytes)
{
    if (std::getenv("VEXOMU_WRITE_GOLDEN") != nullptr) {
        std::ofstream(file, std::ios::binary) << bytes;
    }
    std::ifstream golden(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(golden), {}};
}
