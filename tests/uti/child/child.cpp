#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>
#include <thread>

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

/// Whether this process has a handle of that number.
bool HasHandle(const char* number)
{
    DWORD flags = 0;
    return GetHandleInformation(reinterpret_cast<HANDLE>(std::strtoull(number, nullptr, 10)), &flags) != 0;
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
        std::cout << (HasHandle(argv[2]) ? "inherited" : "none");
#endif
    } else {
        return 99;
    }
    return 0;
}
