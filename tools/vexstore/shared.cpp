#include "vexstore.h"

#include "cls_WriteVisitor.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <memory>
#include <unistd.h>

namespace
{
constexpr std::int64_t LONG_WORK = 20000; // rows

bool IsTerminal(int stream) noexcept
{
    return isatty(stream) != 0;
}

constexpr char DIGITS[] = "0123456789abcdef";

std::string HexText(char byte)
{
    return {DIGITS[static_cast<unsigned char>(byte) >> 4], DIGITS[byte & 15]};
}

bool IsControl(char byte) noexcept
{
    return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F;
}

/// The dimensions of a matrix, which are taken off its bytes.
std::string TakeShape(std::string_view& bytes)
{
    const std::vector<std::string> shape = ItemsOf(sql_Kind::UNSIGNED, bytes.substr(0, 2 * sizeof(std::uint32_t)));
    bytes.remove_prefix(2 * sizeof(std::uint32_t));
    return shape[0] + " x " + shape[1] + " ";
}

std::string RealText(double number, bool isFloat)
{
    if (!std::isfinite(number)) {
        return std::isnan(number) ? "\"nan\"" : number > 0 ? "\"inf\"" : "\"-inf\"";
    }
    std::array<char, 40> text{};
    const auto end = isFloat ? std::to_chars(text.begin(), text.end(), static_cast<float>(number))
                             : std::to_chars(text.begin(), text.end(), number);
    return {text.data(), end.ptr};
}

template <class T> std::vector<std::string> ItemTexts(std::string_view bytes)
{
    const std::int64_t count = sql_CountItems<T>(bytes);
    std::vector<std::string> texts;
    if (count > 0) {
        const auto items = std::make_unique<T[]>(static_cast<std::size_t>(count));
        if (sql_ReadItems(bytes, items.get(), static_cast<std::size_t>(count))) {
            for (std::int64_t i = 0; i < count; ++i) {
                texts.push_back(ScalarText(sql_ToCell(items[static_cast<std::size_t>(i)])));
            }
        }
    }
    return texts;
}
} // namespace

Progress::Progress(std::int64_t total) : m_total(total), m_isOn(total >= LONG_WORK && IsTerminal(STDERR_FILENO)) {}

Progress::~Progress()
{
    if (m_isOn) {
        std::fputs("\r\033[K", stderr);
    }
}

void Progress::Step(std::int64_t count)
{
    m_done += count;
    if (m_isOn && m_done * 100 / m_total != m_shown) {
        m_shown = m_done * 100 / m_total;
        Draw();
    }
}

void Progress::Draw() const
{
    constexpr int width = 40;
    const int filled = static_cast<int>(std::min<std::int64_t>(m_shown, 100) * width / 100);
    std::fprintf(stderr, "\r[%s%s] %3d %%", std::string(static_cast<std::size_t>(filled), '#').c_str(),
                 std::string(static_cast<std::size_t>(width - filled), ' ').c_str(), static_cast<int>(m_shown));
}

std::int64_t WorkOf(sql_RecordFile& file)
{
    return Count(file, "SELECT (SELECT count(*) FROM record) + (SELECT count(*) FROM block)");
}

std::string Printable(std::string_view text)
{
    const bool isPlain = sql_IsPlainText(text);
    std::string printable;
    for (const char byte : text) {
        if (IsControl(byte) || (!isPlain && static_cast<unsigned char>(byte) >= 0x80)) {
            printable += "\\x" + HexText(byte);
        } else {
            printable += byte;
        }
    }
    return printable;
}

std::string Coloured(int colour, const std::string& text)
{
    static const bool isOn = IsTerminal(STDOUT_FILENO);
    return isOn ? "\033[" + std::to_string(colour) + "m" + text + "\033[0m" : text;
}

std::int64_t Count(sql_RecordFile& file, const char* query)
{
    sql_Statement statement(file.Connection(), query);
    sql_Rows rows(statement);
    return rows.Next() ? rows.Int(0) : 0;
}

std::string Quoted(const cow_String& text)
{
    std::string quoted;
    if (!sql_IsPlainText(text)) {
        for (const char byte : text) {
            quoted += HexText(byte);
        }
        return "{\"hex\": \"" + quoted + "\"}";
    }
    for (const char byte : text) {
        if (byte == '"' || byte == '\\') {
            quoted += '\\';
            quoted += byte;
        } else if (IsControl(byte)) {
            quoted += "\\u00" + HexText(byte);
        } else {
            quoted += byte;
        }
    }
    return '"' + quoted + '"';
}

std::string ScalarText(const sql_Cell& cell)
{
    if (const auto* number = std::get_if<std::int64_t>(&cell.data)) {
        return cell.kind == sql_Kind::BOOL ? (*number != 0 ? "true" : "false") : std::to_string(*number);
    }
    if (const auto* real = std::get_if<double>(&cell.data)) {
        return RealText(*real, cell.kind == sql_Kind::FLOAT);
    }
    return Quoted(std::get<cow_String>(cell.data));
}

std::vector<std::string> ItemsOf(sql_Kind element, std::string_view bytes)
{
    switch (element) {
    case sql_Kind::BOOL:
        return ItemTexts<bool>(bytes);
    case sql_Kind::DOUBLE:
        return ItemTexts<double>(bytes);
    case sql_Kind::FLOAT:
        return ItemTexts<float>(bytes);
    case sql_Kind::INT:
        return ItemTexts<int>(bytes);
    case sql_Kind::STRING:
        return ItemTexts<cow_String>(bytes);
    case sql_Kind::UNSIGNED:
        return ItemTexts<std::uint32_t>(bytes);
    case sql_Kind::OBJECT:
    case sql_Kind::ARRAY:
    case sql_Kind::MATRIX:
        break;
    }
    return {};
}

std::string CellText(const sql_Cell& cell)
{
    constexpr std::size_t most = 8;
    const int code = static_cast<int>(cell.kind);
    if (code < static_cast<int>(sql_Kind::ARRAY)) {
        return ScalarText(cell);
    }
    std::string_view bytes = std::get<cow_String>(cell.data);
    std::string text = (code > static_cast<int>(sql_Kind::MATRIX) ? TakeShape(bytes) : "") + "[";
    const std::vector<std::string> items = ItemsOf(static_cast<sql_Kind>(code % 10), bytes);
    for (std::size_t i = 0; i < std::min(items.size(), most); ++i) {
        text += (i != 0 ? ", " : "") + items[i];
    }
    return text + (items.size() > most ? ", ... " + std::to_string(items.size()) + " in all]" : "]");
}

sql_Record ChildOf(sql_RecordFile& file, std::int64_t owner, const sql_Cell& cell)
{
    const auto child = file.FindRecord(cell.Record());
    if (!child || child->owner != owner) {
        file.FailDamaged("record " + std::to_string(owner) + " holds record " + std::to_string(cell.Record()) +
                         (child ? ", which belongs elsewhere" : ", which is missing"));
    }
    return *child;
}

std::int64_t BlockCount(const sql_Record& record)
{
    return (record.length + sql_Records::BLOCK_LENGTH - 1) / sql_Records::BLOCK_LENGTH;
}

std::string BlockOf(sql_RecordFile& file, const sql_Record& record, std::int64_t block)
{
    std::string bytes;
    if (!file.ReadBlock(record.id, block, [&](std::string_view read) { bytes = read; })) {
        file.FailDamaged("block " + std::to_string(block) + " of record " + std::to_string(record.id) + " is missing");
    }
    return bytes;
}

void CheckDepth(sql_RecordFile& file, int depth)
{
    if (depth > sql_Records::MAX_DEPTH) {
        file.FailDamaged("records are nested deeper than " + std::to_string(sql_Records::MAX_DEPTH));
    }
}

void Walk(sql_RecordFile& file, std::int64_t root, const std::string& name,
          const std::function<void(const Place&)>& visit)
{
    // Each record has one owner and a root has none, so that no record is come to twice.
    std::vector<Place> left{{ChildOf(file, 0, {sql_Kind::OBJECT, root}), 1, name}};
    while (!left.empty()) {
        const Place place = std::move(left.back());
        left.pop_back();
        CheckDepth(file, place.depth);
        visit(place);
        if (sql_PagedKind(place.record.form)) {
            continue;
        }
        const auto rows = file.Rows(place.record.id);
        for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
            if (row->second.IsObject()) {
                left.push_back({ChildOf(file, place.record.id, row->second), place.depth + 1, row->first.AsString()});
            }
        }
    }
}

std::map<std::int64_t, std::string> ClassTexts(sql_RecordFile& file)
{
    std::map<std::int64_t, std::string> texts{{0, ""}};
    for (const sql_Class& stored : file.Classes()) {
        texts[stored.row] =
            std::string(stored.name.view()) + (stored.version != 0 ? " version " + std::to_string(stored.version) : "");
    }
    return texts;
}
