#include "sql_Records.h"

// Defined for users of the DLL who bind references to them.
constexpr int sql_Records::BLOCK_LENGTH;
constexpr int sql_Records::MAX_DEPTH;

sql_Records::~sql_Records() = default;

std::string sql_FormName(sql_Form form)
{
    const int code = static_cast<int>(form);
    const std::string element = sql_KindName(static_cast<sql_Kind>(code % 10));
    const bool hasElement = code % 10 >= 1 && code % 10 <= 7;
    if (form == sql_Form::OBJECT) {
        return "object";
    }
    if (form == sql_Form::INT_TABLE) {
        return "table from int to int";
    }
    if (code / 10 == 1 && hasElement && code % 10 != 7) {
        return "paged list of " + element;
    }
    if (code / 10 == 2 && hasElement) {
        return "list of " + element;
    }
    if ((code / 10 == 3 || code / 10 == 4) && hasElement && code % 10 != 1) {
        return (code / 10 == 3 ? "map from int to " : "map from string to ") + element;
    }
    return "form " + std::to_string(code);
}

std::optional<sql_Kind> sql_PagedKind(sql_Form form) noexcept
{
    const int element = static_cast<int>(form) - static_cast<int>(sql_Form::PAGED_LIST);
    return element >= 1 && element <= 6 ? std::optional(static_cast<sql_Kind>(element)) : std::nullopt;
}
