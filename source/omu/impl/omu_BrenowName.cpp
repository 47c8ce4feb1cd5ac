#include "omu_BrenowName.h"

#include "VEXCRT.h"
#include "omu_BreNameErrorException.h"
#include "rgx_funcs.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace
{

constexpr const char* SOURCE = "source/omu/impl/omu_BrenowName";
constexpr int MAX_KER_LENGTH = 80;
constexpr int MAX_GUI_LENGTH = 38;

using Kind = omu_BreNameErrorException::KindEnm;
constexpr Kind INVALID = omu_BreNameErrorException::INVALID;
constexpr Kind EMPTY = omu_BreNameErrorException::EMPTY;
constexpr Kind INVALID_JOB = omu_BreNameErrorException::INVALID_JOB;
constexpr Kind INVALID_MODEL = omu_BreNameErrorException::INVALID_MODEL;

/// Throws when a rule is broken; `line` is the promised one.
void Refuse(bool isBroken, Kind kind, int line)
{
    if (isBroken) {
        omu_BreNameErrorException(kind).Throw(SOURCE, line);
    }
}

/// One pattern for all names, so that looking it up compares no bytes.
bool StartsWithDigit(const cow_String& name)
{
    static const cow_String noDigit = "^[^0-9]";
    return !rgx_match(noDigit, name).IsMatched();
}

bool HasJobCharacter(const cow_String& name)
{
    static const cow_String forbidden = R"([\$\\&\*~! \(\)\[\]\{\}\|;\'\`\< >\?\/. ])";
    return rgx_match(forbidden, name).IsMatched();
}

bool HasModelCharacter(const cow_String& name)
{
    static const cow_String forbidden = R"([\$\\&\*~!\(\)\[\]\{\}\|;\'\`\<>\?\/.])";
    return rgx_match(forbidden, name).IsMatched();
}

bool StartsWithAny(const cow_String& name, std::string_view characters)
{
    return !name.IsEmpty() && characters.find(name.view().front()) != std::string_view::npos;
}

bool EndsWithAny(const cow_String& name, std::string_view characters)
{
    return !name.IsEmpty() && characters.find(name.view().back()) != std::string_view::npos;
}

/// Puts a replacement in the place of the character at `index`, or nothing when it is a dot.
void Replace(cow_String& name, int index, char replacement)
{
    if (replacement == '.') {
        name = name.Substring(0, index) + name.Substring(index + 1, name.Length());
    } else {
        name.Set(index, replacement);
    }
}

/// Repairs the first fault of a name that is not empty.
void RepairOnce(cow_String& name, const char* replacements)
{
    if (StartsWithDigit(name)) {
        name = replacements[0] == '.' ? name.Substring(1, name.Length())
                                      : (cow_String(replacements[0]) + name).Substring(0, MAX_GUI_LENGTH);
        return;
    }
    const char faults[] = {'"', '.', '\\'};
    for (int i = 0; i < 3; ++i) {
        if (const int index = name.Find({&faults[i], 1}); index >= 0) {
            Replace(name, index, replacements[i + 1]);
            return;
        }
    }
    if (StartsWithAny(name, "_ ")) {
        Replace(name, 0, replacements[4]);
    } else if (EndsWithAny(name, "_ ")) {
        Replace(name, name.Length() - 1, replacements[5]);
    }
}

bool IsPortable(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '-' ||
           c == '.';
}

/// A device's name up to the first dot, in any case, or nothing but dots.
bool IsReserved(std::string_view name)
{
    std::string stem(name.substr(0, name.find('.')));
    std::transform(stem.begin(), stem.end(), stem.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    const std::string_view device = std::string_view(stem).substr(0, 3);
    if (stem.size() == 4 && stem[3] >= '1' && stem[3] <= '9') {
        return device == "COM" || device == "LPT";
    }
    return stem == "CON" || stem == "PRN" || stem == "AUX" || stem == "NUL" ||
           name.find_first_not_of('.') == std::string_view::npos;
}

} // namespace

omu_BrenowName::omu_BrenowName(const cow_String& name, omu_BrenowNameEnum kind) : m_name(name), m_kind(kind)
{
    Test(kind);
}

omu_BrenowName::omu_BrenowName(const char* name, omu_BrenowNameEnum kind) : omu_BrenowName(cow_String(name), kind) {}

bool omu_BrenowName::MakeLegalGuiName(cow_String& name, const char* replacements)
{
    if (replacements == nullptr || std::string_view(replacements).size() < 6) {
        VEXCRT::_assert("six replacement characters", SOURCE, __LINE__);
        return false;
    }
    const cow_String original = name;
    name = name.Substring(0, MAX_GUI_LENGTH);
    // Every character is repaired once for each of its faults at most, unless the replacements are each other's faults.
    cow_String before;
    for (int pass = 0; pass < 6 * MAX_GUI_LENGTH && !name.IsEmpty() && name != before; ++pass) {
        before = name;
        RepairOnce(name, replacements);
    }
    return name != original;
}

cow_String omu_BrenowName::MakeLegalFileName(cow_String& name)
{
    std::string legal(name);
    std::replace_if(
        legal.begin(), legal.end(), [](char c) { return !IsPortable(c); }, '_');
    return std::string_view(IsReserved(legal) ? "_" + legal : legal);
}

void omu_BrenowName::Test(omu_BrenowNameEnum kind) const
{
    switch (kind) {
    case KER_NAME:
        return TestKerName();
    case KER_JOB_NAME:
        return TestKerJobName();
    case KER_MODEL_NAME:
        return TestKerModelName();
    case GUI_NAME:
        return TestGuiName();
    case GUI_JOB_NAME:
        return TestGuiJobName();
    case GUI_MODEL_NAME:
        return TestGuiModelName();
    case STEP_NAME:
        return TestStepName();
    }
}

// The order of the rules tells which line is reported; it differs between the sides, and must stay so.

void omu_BrenowName::TestKerName() const
{
    Refuse(m_name.IsEmpty(), EMPTY, 171);
    Refuse(m_name.Length() > MAX_KER_LENGTH, INVALID, 175);
    Refuse(StartsWithDigit(m_name), INVALID, 181);
    Refuse(m_name.Contains("\""), INVALID, 187);
    Refuse(m_name.Contains("."), INVALID, 193);
    Refuse(m_name.Contains("\\"), INVALID, 199);
}

void omu_BrenowName::TestKerJobName() const
{
    Refuse(m_name.IsEmpty(), EMPTY, 215);
    Refuse(m_name.Length() > MAX_KER_LENGTH, INVALID_JOB, 219);
    Refuse(m_name.Contains("\""), INVALID_JOB, 225);
    Refuse(HasJobCharacter(m_name), INVALID_JOB, 230);
}

void omu_BrenowName::TestKerModelName() const
{
    Refuse(m_name.IsEmpty(), EMPTY, 282);
    Refuse(m_name.Length() > MAX_KER_LENGTH, INVALID_MODEL, 286);
    Refuse(m_name.Contains("\""), INVALID_MODEL, 292);
    Refuse(HasModelCharacter(m_name), INVALID_MODEL, 297);
}

void omu_BrenowName::TestGuiName() const
{
    Refuse(m_name.IsEmpty(), EMPTY, 115);
    Refuse(m_name.Length() > MAX_GUI_LENGTH, INVALID, 119);
    Refuse(StartsWithDigit(m_name), INVALID, 125);
    Refuse(m_name.Contains("\""), INVALID, 131);
    Refuse(m_name.Contains("."), INVALID, 137);
    Refuse(m_name.Contains("\\"), INVALID, 143);
    Refuse(StartsWithAny(m_name, "_ "), INVALID, 149);
    Refuse(EndsWithAny(m_name, "_ "), INVALID, 155);
}

void omu_BrenowName::TestGuiJobName() const
{
    Refuse(m_name.IsEmpty(), EMPTY, 246);
    Refuse(m_name.Length() > MAX_GUI_LENGTH, INVALID_JOB, 250);
    Refuse(HasJobCharacter(m_name), INVALID_JOB, 255);
    Refuse(m_name.Contains("\""), INVALID_JOB, 261);
    Refuse(StartsWithAny(m_name, "_") || EndsWithAny(m_name, "_"), INVALID_JOB, 266);
}

void omu_BrenowName::TestGuiModelName() const
{
    Refuse(m_name.IsEmpty(), EMPTY, 313);
    Refuse(m_name.Length() > MAX_GUI_LENGTH, INVALID_MODEL, 317);
    Refuse(HasModelCharacter(m_name), INVALID_MODEL, 322);
    Refuse(m_name.Contains("\""), INVALID_MODEL, 328);
    Refuse(StartsWithAny(m_name, "_ "), INVALID_MODEL, 334);
    Refuse(EndsWithAny(m_name, "_ "), INVALID_MODEL, 340);
}
