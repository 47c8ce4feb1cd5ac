#include "omu_CommandText_detail.h"

#include "omi_complex.h"
#include "omu_Arguments.h"
#include "omu_InterfaceObj.h"
#include "omu_PrimArray.h"
#include "omu_PrimComplex.h"
#include "omu_PrimList.h"
#include "omu_PrimNumber.h"
#include "omu_PrimString.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <vector>

namespace
{

void AppendValue(cow_String& text, const omu_Primitive* value);

template <class Float> void AppendFloating(cow_String& text, Float value)
{
    if (std::isnan(value)) {
        text += "float('nan')";
        return;
    }
    if (std::isinf(value)) {
        text += value < 0 ? "float('-inf')" : "float('inf')";
        return;
    }
    char buffer[32];
    const std::to_chars_result end = std::to_chars(buffer, buffer + sizeof buffer, value);
    const std::string_view digits(buffer, static_cast<std::size_t>(end.ptr - buffer));
    text += digits;
    if (digits.find_first_of(".e") == std::string_view::npos) {
        text += ".0"; // an integer to the script otherwise
    }
}

void AppendQuoted(cow_String& text, std::string_view characters)
{
    static constexpr char HEX[] = "0123456789abcdef";
    text.Append('\'');
    for (const char character : characters) {
        const auto byte = static_cast<unsigned char>(character);
        if (character == '\\' || character == '\'') {
            text.Append('\\');
            text.Append(character);
        } else if (character == '\n') {
            text += "\\n";
        } else if (byte < 0x20 || byte == 0x7F) {
            const char escape[] = {'\\', 'x', HEX[byte >> 4], HEX[byte & 15]};
            text += std::string_view(escape, sizeof escape);
        } else {
            text.Append(character);
        }
    }
    text.Append('\'');
}

/// `append(i)` for each of `count` items, with ", " between them.
template <class AppendItem> void AppendItems(cow_String& text, int count, AppendItem append)
{
    for (int i = 0; i < count; ++i) {
        text += i > 0 ? ", " : "";
        append(i);
    }
}

/// `append(key, value)` for each entry, with ", " between them.
template <class K, class AppendEntry>
void AppendEntries(cow_String& text, const omu_PrimDictionary<K>& dictionary, AppendEntry append)
{
    bool isFirst = true;
    for (const auto& [key, value] : dictionary.GetEntries()) {
        text += isFirst ? "" : ", ";
        isFirst = false;
        append(key, value.ConstGet());
    }
}

void AppendNumber(cow_String& text, const omu_PrimNumber& number)
{
    if (number.IsType('i')) {
        text += number.AsString(0);
    } else if (number.GetDataType() == omu_PrimNumber::REAL32) {
        AppendFloating(text, static_cast<float>(number.GetValue()));
    } else {
        AppendFloating(text, number.GetValue());
    }
}

void AppendSequence(cow_String& text, const omu_PrimTuple& sequence)
{
    const bool isList = sequence.IsA(omu_PrimList::TypeId());
    text.Append(isList ? '[' : '(');
    AppendItems(text, sequence.Length(), [&](int i) { AppendValue(text, sequence.Index(i)); });
    text += isList ? "]" : sequence.Length() == 1 ? ",)" : ")";
}

void AppendArrayItems(cow_String& text, const omu_PrimArray& array)
{
    text.Append('[');
    AppendItems(text, array.Length(), [&](int i) {
        const omu_Primitive* const item = array.Index(i);
        if (item->IsType('o')) {
            AppendArrayItems(text, static_cast<const omu_PrimArray&>(*item));
        } else {
            AppendValue(text, item);
        }
    });
    text.Append(']');
}

void AppendArray(cow_String& text, const omu_PrimArray& array)
{
    text += "array(";
    if (array.ConstGetNumDimensions() == 0) {
        AppendFloating(text, array.ConstGetDouble());
    } else {
        AppendArrayItems(text, array);
    }
    text += ", '";
    text.Append(array.ConstGetPyType());
    text += "')";
    const int count = array.ConstGetNumDimensions();
    for (int i = 0; i + 1 < count; ++i) {
        if (array.ConstGetDimension(i) == 0) { // nothing shows the dimensions behind it
            text += ".reshape(";
            AppendItems(text, count, [&](int j) { text += cow_String(array.ConstGetDimension(j)); });
            text += ")";
            return;
        }
    }
}

template <class K, class AppendKey>
void AppendDictionary(cow_String& text, const omu_PrimDictionary<K>& dictionary, AppendKey appendKey)
{
    text.Append('{');
    AppendEntries(text, dictionary, [&](const K& key, const omu_Primitive* value) {
        appendKey(key);
        text += ": ";
        AppendValue(text, value);
    });
    text.Append('}');
}

void AppendComplex(cow_String& text, const omi_complex& value)
{
    text += "complex(";
    AppendFloating(text, value.RealPart());
    text += ", ";
    AppendFloating(text, value.ImaginaryPart());
    text += ")";
}

/// As the script language reads it back: shortest digits, control characters escaped, kernel objects and constants by
/// their own text, no limits of any kind.
void AppendValue(cow_String& text, const omu_Primitive* value)
{
    if (value == nullptr) {
        text += "None";
        return;
    }
    switch (value->TypeCode()) {
    case 'i':
    case 'f':
        AppendNumber(text, static_cast<const omu_PrimNumber&>(*value));
        break;
    case 's': {
        const auto& string = static_cast<const omu_PrimString&>(*value);
        AppendQuoted(text, {string.AsCharPtr(), static_cast<std::size_t>(string.Length())});
        break;
    }
    case '(':
        AppendSequence(text, static_cast<const omu_PrimTuple&>(*value));
        break;
    case 'o':
        AppendArray(text, static_cast<const omu_PrimArray&>(*value));
        break;
    case '{':
        if (value->IsA(omu_PrimDictionary<int>::TypeId())) {
            AppendDictionary(text, static_cast<const omu_PrimDictionary<int>&>(*value),
                             [&](int key) { text += cow_String(key); });
        } else {
            AppendDictionary(text, static_cast<const omu_PrimDictionary<cow_String>&>(*value),
                             [&](const cow_String& key) { AppendQuoted(text, key); });
        }
        break;
    case 'x':
        AppendComplex(text, static_cast<const omu_PrimComplex&>(*value).GetValue());
        break;
    case '<':
        text += static_cast<const omu_InterfaceObj&>(*value).Repr();
        break;
    default:
        text += value->AsString(0);
        break;
    }
}

/// Whether the script language takes the name before an equals sign in a call.
bool IsParameterName(std::string_view name)
{
    static constexpr std::array<std::string_view, 35> RESERVED = {
        "False", "None",     "True",  "and",    "as",   "assert", "async",  "await",    "break",
        "class", "continue", "def",   "del",    "elif", "else",   "except", "finally",  "for",
        "from",  "global",   "if",    "import", "in",   "is",     "lambda", "nonlocal", "not",
        "or",    "pass",     "raise", "return", "try",  "while",  "with",   "yield"};
    const auto isLetter = [](char character) {
        return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') || character == '_';
    };
    const auto isPart = [&](char character) { return isLetter(character) || (character >= '0' && character <= '9'); };
    return !name.empty() && isLetter(name[0]) && std::all_of(name.begin(), name.end(), isPart) &&
           !std::binary_search(RESERVED.begin(), RESERVED.end(), name);
}

} // namespace

cow_String omu_ArgumentsCommandText(const omu_Arguments& arguments)
{
    cow_String text("(");
    const int positional = arguments.Length();
    AppendItems(text, positional, [&](int i) { AppendValue(text, arguments.Index(i)); });
    std::vector<const omu_Arguments::Keyword*> keywords;
    for (const omu_Arguments::Keyword& keyword : arguments.Keywords()) {
        keywords.push_back(&keyword);
    }
    std::ranges::sort(keywords, {}, &omu_Arguments::Keyword::name);
    if (positional > 0 && !keywords.empty()) {
        text += ", ";
    }
    AppendItems(text, static_cast<int>(keywords.size()), [&](int i) {
        const auto& [name, value, turn] = *keywords[static_cast<std::size_t>(i)];
        if (IsParameterName(name)) {
            text += name;
            text.Append('=');
            AppendValue(text, value.ConstGet());
        } else {
            text += "**{";
            AppendQuoted(text, name);
            text += ": ";
            AppendValue(text, value.ConstGet());
            text.Append('}');
        }
    });
    text.Append(')');
    return text;
}
