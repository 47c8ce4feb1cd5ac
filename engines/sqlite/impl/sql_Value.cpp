#include "sql_Value.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <tuple>

static_assert(std::endian::native == std::endian::little, "stored items are copied as they stand in memory");

namespace
{
constexpr std::size_t TEXT_HEAD = sizeof(std::uint32_t);
constexpr std::size_t MATRIX_HEAD = 2 * sizeof(std::uint32_t); // rows, columns

std::uint32_t ReadUnsigned(std::string_view bytes)
{
    std::uint32_t number = 0;
    std::memcpy(&number, bytes.data(), sizeof number);
    return number;
}

void AppendUnsigned(std::string& bytes, std::uint32_t number)
{
    bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

/// Takes a text with its length off the front of `bytes`; false when it does not fit in them.
bool TakeText(std::string_view& bytes, std::string_view& text)
{
    if (bytes.size() < TEXT_HEAD || bytes.size() - TEXT_HEAD < ReadUnsigned(bytes)) {
        return false;
    }
    text = bytes.substr(TEXT_HEAD, ReadUnsigned(bytes));
    bytes.remove_prefix(TEXT_HEAD + text.size());
    return true;
}

/// The length of the UTF-8 sequence that starts with `lead`, 0 for no lead byte; and the range of its second byte.
struct Sequence
{
    std::size_t length;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
};

constexpr Sequence SequenceOf(unsigned char lead) noexcept
{
    switch (lead) {
    case 0xE0:
        return {3, 0xA0};
    case 0xED:
        return {3, 0x80, 0x9F};
    case 0xF0:
        return {4, 0x90};
    case 0xF4:
        return {4, 0x80, 0x8F};
    default:
        return {lead >= 0xC2 && lead <= 0xDF                   ? 2u
                : lead >= 0xE1 && lead <= 0xEF                 ? 3u
                : lead == 0xF1 || lead == 0xF2 || lead == 0xF3 ? 4u
                                                               : 0u};
    }
}

template <class Number> bool IsWithin(std::int64_t number)
{
    return number >= std::numeric_limits<Number>::min() && number <= std::numeric_limits<Number>::max();
}

/// The items of an array's or a matrix's cell must end where its bytes do.
template <class T> bool HoldsItems(sql_Kind family, std::string_view bytes)
{
    if (family == sql_Kind::ARRAY) {
        return sql_CountItems<T>(bytes) >= 0;
    }
    if (bytes.size() < MATRIX_HEAD) {
        return false;
    }
    const std::int64_t rows = ReadUnsigned(bytes);
    const std::int64_t columns = ReadUnsigned(bytes.substr(MATRIX_HEAD / 2));
    return IsWithin<std::int32_t>(rows) && IsWithin<std::int32_t>(columns) &&
           sql_CountItems<T>(bytes.substr(MATRIX_HEAD)) == rows * columns;
}
} // namespace

std::string sql_KindName(sql_Kind kind)
{
    static constexpr std::array<const char*, 8> scalars = {"",    "bool",   "double",   "float",
                                                           "int", "string", "unsigned", "object"};
    const int code = static_cast<int>(kind);
    const int element = code % 10;
    if (code >= 1 && code <= 7) {
        return scalars[static_cast<std::size_t>(code)];
    }
    if ((code / 10 == 5 || code / 10 == 8) && element >= 1 && element <= 6) {
        return (code / 10 == 5 ? "array of " : "matrix of ") + std::string(scalars[static_cast<std::size_t>(element)]);
    }
    return "kind " + std::to_string(code);
}

bool sql_IsPlainText(std::string_view text) noexcept
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto lead = static_cast<unsigned char>(text[i]);
        if (lead == 0) {
            return false;
        }
        if (lead < 0x80) {
            continue;
        }
        const Sequence sequence = SequenceOf(lead);
        if (sequence.length == 0 || text.size() - i < sequence.length) {
            return false;
        }
        const auto second = static_cast<unsigned char>(text[i + 1]);
        if (second < sequence.low || second > sequence.high) {
            return false;
        }
        for (std::size_t next = 2; next < sequence.length; ++next) {
            if ((static_cast<unsigned char>(text[i + next]) & 0xC0) != 0x80) {
                return false;
            }
        }
        i += sequence.length - 1;
    }
    return true;
}

std::string sql_Key::AsString() const
{
    return IsNumber() ? std::to_string(Number()) : "'" + std::string(Text().view()) + "'";
}

std::strong_ordering sql_Key::operator<=>(const sql_Key& other) const
{
    const auto order = [](const sql_Key& key) { return key.IsNumber() ? 0 : sql_IsPlainText(key.Text()) ? 1 : 2; };
    if (const auto byOrder = order(*this) <=> order(other); byOrder != 0) {
        return byOrder;
    }
    return IsNumber() ? Number() <=> other.Number() : Text() <=> other.Text();
}

bool sql_IsSound(const sql_Cell& cell)
{
    const auto* const number = std::get_if<std::int64_t>(&cell.data);
    const auto* const bytes = std::get_if<cow_String>(&cell.data);
    const bool isReal = std::holds_alternative<double>(cell.data);
    switch (cell.kind) {
    case sql_Kind::BOOL:
        return number != nullptr && (*number == 0 || *number == 1);
    case sql_Kind::DOUBLE:
        return isReal;
    case sql_Kind::FLOAT:
        return isReal && (std::isnan(std::get<double>(cell.data)) ||
                          double{static_cast<float>(std::get<double>(cell.data))} == std::get<double>(cell.data));
    case sql_Kind::INT:
        return number != nullptr && IsWithin<std::int32_t>(*number);
    case sql_Kind::UNSIGNED:
        return number != nullptr && IsWithin<std::uint32_t>(*number);
    case sql_Kind::OBJECT:
        return number != nullptr && *number > 0;
    case sql_Kind::STRING:
        return bytes != nullptr;
    case sql_Kind::ARRAY:
    case sql_Kind::MATRIX:
        return false;
    }
    const int code = static_cast<int>(cell.kind);
    const auto family = code / 10 == 5 ? sql_Kind::ARRAY : sql_Kind::MATRIX;
    if (bytes == nullptr || (code / 10 != 5 && code / 10 != 8)) {
        return false;
    }
    switch (static_cast<sql_Kind>(code % 10)) {
    case sql_Kind::BOOL:
        return HoldsItems<bool>(family, *bytes);
    case sql_Kind::DOUBLE:
        return HoldsItems<double>(family, *bytes);
    case sql_Kind::FLOAT:
        return HoldsItems<float>(family, *bytes);
    case sql_Kind::INT:
        return HoldsItems<int>(family, *bytes);
    case sql_Kind::STRING:
        return HoldsItems<cow_String>(family, *bytes);
    case sql_Kind::UNSIGNED:
        return HoldsItems<std::uint32_t>(family, *bytes);
    default:
        return false;
    }
}

template <class T> void sql_AppendItems(std::string& bytes, const T* items, std::size_t count)
{
    if constexpr (std::is_same_v<T, cow_String>) {
        for (const T* item = items; item != items + count; ++item) {
            AppendUnsigned(bytes, static_cast<std::uint32_t>(item->size()));
            bytes.append(item->view());
        }
    } else if (count != 0) {
        bytes.append(reinterpret_cast<const char*>(items), count * sizeof(T));
    }
}

template <class T> bool sql_ReadItems(std::string_view bytes, T* items, std::size_t count)
{
    if constexpr (std::is_same_v<T, cow_String>) {
        std::string_view text;
        for (T* item = items; item != items + count; ++item) {
            if (!TakeText(bytes, text)) {
                return false;
            }
            *item = cow_String(text);
        }
        return bytes.empty();
    } else {
        if (bytes.size() != count * sizeof(T)) {
            return false;
        }
        if constexpr (std::is_same_v<T, bool>) {
            if (bytes.find_first_not_of(std::string_view("\0\1", 2)) != bytes.npos) {
                return false;
            }
        }
        if (count != 0) {
            std::memcpy(items, bytes.data(), bytes.size());
        }
        return true;
    }
}

template <class T> std::int64_t sql_CountItems(std::string_view bytes)
{
    if constexpr (std::is_same_v<T, cow_String>) {
        std::int64_t count = 0;
        for (std::string_view text; !bytes.empty(); ++count) {
            if (!TakeText(bytes, text)) {
                return -1;
            }
        }
        return count;
    } else {
        return bytes.size() % sizeof(T) == 0 ? static_cast<std::int64_t>(bytes.size() / sizeof(T)) : -1;
    }
}

template <class T> sql_Cell sql_ToCell(const cow_1DArray<T>& array)
{
    std::string bytes;
    sql_AppendItems(bytes, array.data(), array.size());
    return {sql_Kind::ARRAY + sql_KindOf<T>, cow_String(std::string_view(bytes))};
}

template <class T> sql_Cell sql_ToCell(const cow_2DArray<T>& matrix)
{
    std::string bytes;
    AppendUnsigned(bytes, static_cast<std::uint32_t>(matrix.Rows()));
    AppendUnsigned(bytes, static_cast<std::uint32_t>(matrix.Columns()));
    sql_AppendItems(bytes, matrix.data(), matrix.size());
    return {sql_Kind::MATRIX + sql_KindOf<T>, cow_String(std::string_view(bytes))};
}

template <class T> bool sql_FromCell(const sql_Cell& cell, T& value)
{
    if (cell.kind != sql_KindOf<T> || !sql_IsSound(cell)) {
        return false;
    }
    if constexpr (std::is_floating_point_v<T>) {
        value = static_cast<T>(std::get<double>(cell.data));
    } else if constexpr (std::is_integral_v<T>) {
        value = static_cast<T>(std::get<std::int64_t>(cell.data));
    } else {
        value = std::get<cow_String>(cell.data);
    }
    return true;
}

template <class T> bool sql_FromCell(const sql_Cell& cell, cow_1DArray<T>& array)
{
    if (cell.kind != sql_Kind::ARRAY + sql_KindOf<T> || !sql_IsSound(cell)) {
        return false;
    }
    const std::string_view bytes = std::get<cow_String>(cell.data);
    cow_1DArray<T> items(static_cast<int>(sql_CountItems<T>(bytes)));
    if (!sql_ReadItems(bytes, items.Write(), items.size())) {
        return false;
    }
    array = items;
    return true;
}

template <class T> bool sql_FromCell(const sql_Cell& cell, cow_2DArray<T>& matrix)
{
    if (cell.kind != sql_Kind::MATRIX + sql_KindOf<T> || !sql_IsSound(cell)) {
        return false;
    }
    const std::string_view bytes = std::get<cow_String>(cell.data);
    cow_2DArray<T> items(static_cast<int>(ReadUnsigned(bytes)),
                         static_cast<int>(ReadUnsigned(bytes.substr(MATRIX_HEAD / 2))));
    if (!sql_ReadItems(bytes.substr(MATRIX_HEAD), items.Write(), items.size())) {
        return false;
    }
    matrix = items;
    return true;
}

#define INSTANTIATE(T)                                                                                                 \
    template VEXSQLITE_API void sql_AppendItems(std::string&, const T*, std::size_t);                                  \
    template VEXSQLITE_API bool sql_ReadItems(std::string_view, T*, std::size_t);                                      \
    template VEXSQLITE_API std::int64_t sql_CountItems<T>(std::string_view);                                           \
    template VEXSQLITE_API sql_Cell sql_ToCell(const cow_1DArray<T>&);                                                 \
    template VEXSQLITE_API sql_Cell sql_ToCell(const cow_2DArray<T>&);                                                 \
    template VEXSQLITE_API bool sql_FromCell(const sql_Cell&, T&);                                                     \
    template VEXSQLITE_API bool sql_FromCell(const sql_Cell&, cow_1DArray<T>&);                                        \
    template VEXSQLITE_API bool sql_FromCell(const sql_Cell&, cow_2DArray<T>&);
INSTANTIATE(bool)
INSTANTIATE(double)
INSTANTIATE(float)
INSTANTIATE(int)
INSTANTIATE(cow_String)
INSTANTIATE(std::uint32_t)
#undef INSTANTIATE
