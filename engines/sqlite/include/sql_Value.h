#pragma once

#include "VEXsqlite_export.h"
#include "cow_1DArray.h"
#include "cow_2DArray.h"
#include "cow_String.h"

#include <compare>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

/// What a stored value is. The numbers stand in files and are frozen: a scalar's is the unit digit of its element type
/// in the codes of collections, an array's is 50 more, a matrix's 80 more.
enum class sql_Kind : std::int32_t
{
    BOOL = 1,
    DOUBLE = 2,
    FLOAT = 3,
    INT = 4,
    STRING = 5,
    UNSIGNED = 6,
    OBJECT = 7, ///< the number of another record, which belongs to this place
    ARRAY = 50, ///< of bool: 51 ...
    MATRIX = 80 ///< of bool: 81 ...
};

/// The stored kind of a C++ element type.
template <class T> inline constexpr sql_Kind sql_KindOf = sql_Kind{0};
template <> inline constexpr sql_Kind sql_KindOf<bool> = sql_Kind::BOOL;
template <> inline constexpr sql_Kind sql_KindOf<double> = sql_Kind::DOUBLE;
template <> inline constexpr sql_Kind sql_KindOf<float> = sql_Kind::FLOAT;
template <> inline constexpr sql_Kind sql_KindOf<int> = sql_Kind::INT;
template <> inline constexpr sql_Kind sql_KindOf<cow_String> = sql_Kind::STRING;
template <> inline constexpr sql_Kind sql_KindOf<std::uint32_t> = sql_Kind::UNSIGNED;

constexpr sql_Kind operator+(sql_Kind family, sql_Kind element) noexcept
{
    return static_cast<sql_Kind>(static_cast<std::int32_t>(family) + static_cast<std::int32_t>(element));
}

/// "int", "array of double", "object"; "kind 99" for what is none.
VEXSQLITE_API std::string sql_KindName(sql_Kind kind);
/// True for UTF-8 without zero bytes: such text is stored as text, any other as bytes.
VEXSQLITE_API bool sql_IsPlainText(std::string_view text) noexcept;

/// The name of a field, the index of a list's element or the key of a map's: a number or a text.
///
/// Keys order as SQLite orders them: numbers, plain texts, other texts; texts by unsigned bytes.
class VEXSQLITE_API sql_Key
{
public:
    explicit sql_Key(std::int64_t number) : m_key(number) {}
    explicit sql_Key(const cow_String& text) : m_key(text) {}

    bool IsNumber() const noexcept { return m_key.index() == 0; }
    std::int64_t Number() const { return std::get<0>(m_key); }
    const cow_String& Text() const { return std::get<1>(m_key); }
    /// For messages: 12 or 'name'.
    std::string AsString() const;

    bool operator==(const sql_Key&) const = default;
    std::strong_ordering operator<=>(const sql_Key& other) const;

private:
    std::variant<std::int64_t, cow_String> m_key;
};

/// A stored value: a kind and, for BOOL, INT, UNSIGNED and OBJECT a number, for DOUBLE and FLOAT a real, else bytes.
struct sql_Cell
{
    sql_Kind kind;
    std::variant<std::int64_t, double, cow_String> data;

    bool IsObject() const noexcept { return kind == sql_Kind::OBJECT; }
    /// The record of an object.
    std::int64_t Record() const { return std::get<0>(data); }
    bool operator==(const sql_Cell&) const = default;
};

/// True when the data are of the kind and within its range.
VEXSQLITE_API bool sql_IsSound(const sql_Cell& cell);

// Values to cells. Arrays are their items in little-endian order, each as wide as its type (bool 1 byte, text a 32-bit
// length and bytes); a matrix has its two 32-bit dimensions before them.
template <class T> sql_Cell sql_ToCell(const T& value)
{
    if constexpr (std::is_floating_point_v<T>) {
        return {sql_KindOf<T>, double{value}};
    } else if constexpr (std::is_integral_v<T>) {
        return {sql_KindOf<T>, std::int64_t{value}};
    } else {
        return {sql_KindOf<T>, value};
    }
}
template <class T> sql_Cell sql_ToCell(const cow_1DArray<T>& array);
template <class T> sql_Cell sql_ToCell(const cow_2DArray<T>& matrix);

// Cells to values: false, and `value` unchanged, when the cell is not of that kind or not sound.
template <class T> bool sql_FromCell(const sql_Cell& cell, T& value);
template <class T> bool sql_FromCell(const sql_Cell& cell, cow_1DArray<T>& array);
template <class T> bool sql_FromCell(const sql_Cell& cell, cow_2DArray<T>& matrix);

/// Appends the stored form of `count` items to `bytes`.
template <class T> void sql_AppendItems(std::string& bytes, const T* items, std::size_t count);
/// Reads exactly `count` items that fill `bytes`; false, with `items` in any state, when they do not.
template <class T> bool sql_ReadItems(std::string_view bytes, T* items, std::size_t count);
/// How many items fill `bytes`; -1 when they do not end with the bytes.
template <class T> std::int64_t sql_CountItems(std::string_view bytes);
