#include "uti_MessageFile.h"

#include "VEXcrt_File.h"
#include "nex_TextException.h"
#include "uti_SystemException.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <string>
#include <string_view>

namespace
{
constexpr const char* SOURCE = "source/uti/impl/uti_MessageFile";
constexpr std::string_view BLANKS = " \t\r";
constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF"; // some editors start UTF-8 with it

std::string_view Trimmed(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
    return text.substr(0, text.find_last_not_of(BLANKS) + 1);
}

/// The file and the line that is being read, for complaints.
struct Position
{
    const cow_String& path;
    int line;

    [[noreturn]] void Throw(const cow_String& what) const
    {
        nex_TextException(path + ":" + cow_String(line) + ": " + what).Throw(SOURCE, __LINE__);
    }
};

cow_String Unescaped(std::string_view text, const Position& position)
{
    constexpr std::string_view NAMES = "nts\\";
    constexpr std::string_view MEANT = "\n\t \\";
    cow_String plain;
    for (;;) {
        const std::size_t backslash = text.find('\\');
        plain += text.substr(0, backslash);
        if (backslash == std::string_view::npos) {
            return plain;
        }
        const std::string_view escape = text.substr(backslash, 2);
        const std::size_t which = escape.size() == 2 ? NAMES.find(escape[1]) : std::string_view::npos;
        if (which == std::string_view::npos) {
            position.Throw(cow_String("unknown escape ") + escape);
        }
        plain.Append(MEANT[which]);
        text.remove_prefix(backslash + 2);
    }
}
} // namespace

uti_MessageFile::uti_MessageFile(const cow_String& path)
{
    if (const int error = VEXCRT::CheckFile(std::string(path.view()), /*forReading=*/true, /*forWriting=*/false)) {
        uti_SystemException("open", error, path).Throw(SOURCE, __LINE__);
    }
    std::ifstream file(path.AsCharPtr(), std::ios::binary);
    Position position{path, 1};
    for (std::string bytes; std::getline(file, bytes); ++position.line) {
        std::string_view line = bytes;
        if (position.line == 1 && line.starts_with(BYTE_ORDER_MARK)) {
            line.remove_prefix(BYTE_ORDER_MARK.size());
        }
        line = Trimmed(line);
        if (line.empty() || line[0] == '#') {
            continue;
        }
        const std::size_t equals = line.find('=');
        const std::string_view label = Trimmed(line.substr(0, equals));
        if (equals == std::string_view::npos || label.empty() ||
            label.find_first_of(BLANKS) != std::string_view::npos) {
            position.Throw("expected 'label = text'");
        }
        if (!m_texts.Insert(label, Unescaped(Trimmed(line.substr(equals + 1)), position))) {
            position.Throw(cow_String("label stands twice: ") + label);
        }
    }
    if (!file.eof()) {
        uti_SystemException("read", EIO, path).Throw(SOURCE, __LINE__);
    }
}

cow_String uti_MessageFile::operator()(const char* label, const char* defaultText) const
{
    const cow_String* const text = m_texts.Find(std::string_view(label));
    return text ? *text : cow_String(defaultText);
}
