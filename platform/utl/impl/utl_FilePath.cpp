#include "utl_FilePath.h"

#include "VEXcrt_File.h"
#include "bio_Ifilter.h"
#include "bio_Ofilter.h"
#include "nex_TextException.h"
#include "pnt_PrettyPrint.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace
{
constexpr bool IS_WINDOWS = std::filesystem::path::preferred_separator != '/';
constexpr std::string_view SEPARATORS = IS_WINDOWS ? "/\\" : "/";
constexpr auto NONE = std::string_view::npos;

constexpr bool IsSeparator(char character)
{
    return SEPARATORS.find(character) != NONE;
}

constexpr bool HasDrive(std::string_view path)
{
    return IS_WINDOWS && path.size() >= 2 && path[1] == ':';
}

/// Length of the part that no Directory() shortens: a drive and the separators that lead the path.
std::size_t RootLength(std::string_view path)
{
    const std::size_t names = path.find_first_not_of(SEPARATORS, HasDrive(path) ? 2 : 0);
    return names == NONE ? path.size() : names;
}

/// A path cut at its last name: [0, directoryEnd) and [nameBegin, nameEnd).
struct Cut
{
    std::size_t directoryEnd;
    std::size_t nameBegin;
    std::size_t nameEnd;
};

Cut CutAtLastName(std::string_view path)
{
    const std::size_t root = RootLength(path);
    std::size_t nameEnd = path.size();
    while (nameEnd > root && IsSeparator(path[nameEnd - 1])) {
        --nameEnd;
    }
    std::size_t nameBegin = nameEnd;
    while (nameBegin > root && !IsSeparator(path[nameBegin - 1])) {
        --nameBegin;
    }
    std::size_t directoryEnd = nameBegin;
    while (directoryEnd > root && IsSeparator(path[directoryEnd - 1])) {
        --directoryEnd;
    }
    return {directoryEnd, nameBegin, nameEnd};
}
} // namespace

bool utl_FilePath::IsAbsolute() const
{
    const std::string_view path = m_path.view();
    if constexpr (IS_WINDOWS) {
        return (HasDrive(path) && path.size() > 2 && IsSeparator(path[2])) ||
               (path.size() > 2 && IsSeparator(path[0]) && IsSeparator(path[1]));
    }
    return path.starts_with('/');
}

bool utl_FilePath::IsExecutable() const
{
    return VEXCRT::IsExecutable(m_path.AsCharPtr());
}

utl_FilePath utl_FilePath::Directory() const
{
    return utl_FilePath(cow_String(m_path.view().substr(0, CutAtLastName(m_path.view()).directoryEnd)));
}

cow_String utl_FilePath::BaseName() const
{
    const Cut cut = CutAtLastName(m_path.view());
    return m_path.view().substr(cut.nameBegin, cut.nameEnd - cut.nameBegin);
}

cow_String utl_FilePath::Extension() const
{
    const cow_String name = BaseName();
    const std::size_t firstLetter = name.view().find_first_not_of('.');
    const std::size_t dot = name.view().rfind('.');
    if (firstLetter == NONE || dot == NONE || dot < firstLetter) {
        return {};
    }
    return name.view().substr(dot);
}

utl_FilePath utl_FilePath::Join(const cow_String& name) const
{
    utl_FilePath below(name);
    if (m_path.IsEmpty() || below.IsAbsolute()) {
        return below;
    }
    cow_String joined = m_path;
    if (!IsSeparator(joined[joined.Length() - 1])) {
        joined.Append(static_cast<char>(std::filesystem::path::preferred_separator));
    }
    joined.Append(name);
    return utl_FilePath(joined);
}

cow_String utl_FilePath::AbsolutePathName() const
{
    if (m_path.IsEmpty() || IsAbsolute()) {
        return m_path;
    }
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(m_path.view(), error);
    if (error) {
        nex_TextException(m_path + ": no absolute path: " + error.message())
            .Throw("platform/utl/impl/utl_FilePath", __LINE__);
    }
    return std::string_view(absolute.string());
}

bio_Ofilter& operator<<(bio_Ofilter& out, const utl_FilePath& path)
{
    return out << path.PathName();
}

bio_Ifilter& operator>>(bio_Ifilter& in, utl_FilePath& path)
{
    cow_String text;
    in >> text;
    path = utl_FilePath(text);
    return in;
}

pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const utl_FilePath& path)
{
    return out << path.PathName();
}
