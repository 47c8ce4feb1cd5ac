#include "utl_PathFinder.h"

#include "VEXcrt_System.h"

#include <filesystem>
#include <string_view>
#include <system_error>

namespace
{
constexpr char LIST_SEPARATOR = std::filesystem::path::preferred_separator == '/' ? ':' : ';';

bool IsFile(const utl_FilePath& path)
{
    std::error_code error; // a path that cannot be looked at is not found there
    const auto status = std::filesystem::status(path.PathName().view(), error);
    return std::filesystem::exists(status) && !std::filesystem::is_directory(status);
}
} // namespace

utl_FilePath utl_PathFinder::getPath(const cow_String& name, const cow_String& variable, bool currentFirst)
{
    utl_FilePath asGiven(name);
    if (currentFirst || asGiven.IsAbsolute()) {
        if (IsFile(asGiven)) {
            return asGiven;
        }
        if (asGiven.IsAbsolute()) {
            return {};
        }
    }
    const auto list = VEXCRT::GetEnvironment(variable.AsCharPtr());
    if (!list) {
        return {};
    }
    std::string_view rest = *list;
    for (;;) {
        const std::size_t end = rest.find(LIST_SEPARATOR);
        utl_FilePath found = utl_FilePath(cow_String(rest.substr(0, end))).Join(name);
        if (IsFile(found)) {
            return found;
        }
        if (end == std::string_view::npos) {
            return {};
        }
        rest.remove_prefix(end + 1);
    }
}
