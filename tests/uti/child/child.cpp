#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>
#include <thread>

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

/// Writes to a handle of that number, if this process has it.
void WriteTo(const char* number)
{
    DWORD written = 0;
    WriteFile(reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(std::strtoul(number, nullptr, 10))), "inherited", 9,
              &written, nullptr);
}
#endif

/// The child that tests start: it does what its first argument says.
int main(int argc, char** argv)
{
    const std::string_view task = argc > 1 ? argv[1] : "";
    if (task == "args") {
        for (int i = 2; i < argc; ++i) {
            std::cout << '[' << argv[i] << ']';
        }
    } else if (task == "cat") {
        std::cout << std::cin.rdbuf();
    } else if (task == "both") {
        std::cout << "out" << std::endl;
        std::cerr << "err" << std::endl;
    } else if (task == "fill") {
        std::cout << std::string(std::strtoul(argv[2], nullptr, 10), 'x');
    } else if (task == "env") {
        for (int i = 2; i < argc; ++i) {
            const char* const value = std::getenv(argv[i]);
            std::cout << argv[i] << '=' << (value ? value : "(none)") << '\n';
        }
    } else if (task == "where") {
        std::cout << std::filesystem::current_path().filename().string();
    } else if (task == "sleep") {
        std::this_thread::sleep_for(std::chrono::hours(1));
    } else if (task == "exit") {
        return std::atoi(argv[2]);
#if defined(_WIN32)
    } else if (task == "handle") {
        WriteTo(argv[2]);
#endif
    } else {
        return 99;
    }
    return 0;
}
