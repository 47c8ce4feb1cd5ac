#include "uti_CommandText_detail.h"

#include "nex_TextException.h"

#include <algorithm>
#include <filesystem>
#include <utility>

using uti_detail::CommandPiece;

namespace
{
constexpr const char* SOURCE = "source/uti/impl/uti_CommandText";
constexpr bool HAS_BACKSLASH = std::filesystem::path::preferred_separator == '/'; // elsewhere it separates directories
constexpr std::string_view BLANKS = " \t\r\n";
constexpr std::string_view DIGITS = "0123456789";
constexpr std::string_view JOIN = "2>&1";
constexpr std::string_view GUARDED_IN_QUOTES = "\\\"$`";

bool IsName(std::string_view text)
{
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; };
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    return !text.empty() && !isDigit(text[0]) &&
           std::all_of(text.begin(), text.end(), [&](char c) { return isLetter(c) || isDigit(c); });
}

class CommandCutter
{
public:
    explicit CommandCutter(std::string_view text) : m_rest(text) {}

    std::vector<CommandPiece> Run()
    {
        bool isLeading = true; // overrides may still come
        for (SkipBlanks(); !m_rest.empty(); SkipBlanks()) {
            const bool isJoin = IsJoin();
            cow_String symbol = TakeSymbol();
            if (!symbol.IsEmpty()) {
                TakeRedirection(isJoin, std::move(symbol));
                continue;
            }
            CommandPiece word = TakeWord();
            isLeading = isLeading && word.kind == CommandPiece::OVERRIDE;
            if (!isLeading) {
                word.kind = CommandPiece::WORD;
            }
            m_pieces.push_back(std::move(word));
        }
        return std::move(m_pieces);
    }

private:
    void SkipBlanks() { m_rest.remove_prefix(std::min(m_rest.find_first_not_of(BLANKS), m_rest.size())); }
    cow_String Take(std::size_t length)
    {
        const cow_String taken = m_rest.substr(0, length);
        m_rest.remove_prefix(length);
        return taken;
    }

    /// Empty where a word stands.
    cow_String TakeSymbol()
    {
        const std::size_t arrow = std::min(m_rest.find_first_not_of(DIGITS), m_rest.size());
        const std::size_t end = std::min(m_rest.find_first_not_of("<>", arrow), m_rest.size());
        if (end == arrow) {
            return {};
        }
        const bool hasAnd = end < m_rest.size() && m_rest[end] == '&' && !IsJoin();
        return Take(hasAnd ? end + 1 : end);
    }

    /// True at "2>&1", which is the symbol "2>" and the stream that it joins.
    bool IsJoin() const
    {
        return m_rest.starts_with(JOIN) && (m_rest.size() == JOIN.size() || IsEnd(m_rest[JOIN.size()]));
    }

    void TakeRedirection(bool isJoin, cow_String symbol)
    {
        SkipBlanks();
        m_rest.remove_prefix(isJoin ? 1 : 0);
        const bool hasWord = !m_rest.empty() && !IsEnd(m_rest[0]);
        const CommandPiece target = hasWord ? TakeWord() : CommandPiece{};
        if (target.text.IsEmpty()) {
            nex_TextException("Redirection arguments must be paired").Throw(SOURCE, __LINE__);
        }
        m_pieces.push_back({isJoin ? CommandPiece::STREAM : CommandPiece::FILE, target.text, std::move(symbol)});
    }

    CommandPiece TakeWord()
    {
        CommandPiece word{CommandPiece::WORD, {}};
        bool isPlain = true; // so far nothing was quoted
        while (!m_rest.empty() && !IsEnd(m_rest[0])) {
            const char first = m_rest[0];
            if (first == '=' && isPlain && IsName(word.text)) {
                word.kind = CommandPiece::OVERRIDE;
            }
            const bool isBackslash = HAS_BACKSLASH && first == '\\' && m_rest.size() > 1;
            isPlain = isPlain && first != '\'' && first != '"' && !isBackslash;
            if (first == '\'' || first == '"') {
                m_rest.remove_prefix(1);
                TakeQuoted(first, word.text);
            } else {
                m_rest.remove_prefix(isBackslash ? 1 : 0);
                word.text += Take(1);
            }
        }
        return word;
    }

    static bool IsEnd(char character)
    {
        return BLANKS.find(character) != std::string_view::npos || character == '<' || character == '>';
    }

    void TakeQuoted(char mark, cow_String& text)
    {
        while (!m_rest.empty() && m_rest[0] != mark) {
            const bool isGuard = HAS_BACKSLASH && mark == '"' && m_rest[0] == '\\' && m_rest.size() > 1 &&
                                 GUARDED_IN_QUOTES.find(m_rest[1]) != std::string_view::npos;
            m_rest.remove_prefix(isGuard ? 1 : 0);
            text += Take(1);
        }
        if (m_rest.empty()) {
            nex_TextException(cow_String("Quote without end: ") + cow_String(mark) + text).Throw(SOURCE, __LINE__);
        }
        m_rest.remove_prefix(1);
    }

    std::string_view m_rest;
    std::vector<CommandPiece> m_pieces;
};
} // namespace

std::vector<CommandPiece> uti_detail::CutCommand(std::string_view text)
{
    return CommandCutter(text).Run();
}
