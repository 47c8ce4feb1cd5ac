// Names, paths, numbers and file-name rules: what the functions on texts promise for every text.

#include "fuzz.h"

#include "cow_String.h"
#include "omu_BreNameErrorException.h"
#include "omu_BrenowName.h"
#include "omu_Module.h"
#include "uti_FileUtils.h"
#include "uti_NumFormat.h"
#include "utl_FilePath.h"

#include <cmath>

namespace
{

const int users = [] {
    int count = 0;
    omu_initialize(count);
    return count;
}();

void CheckNames(const cow_String& text)
{
    for (int kind = omu_BrenowName::KER_NAME; kind <= omu_BrenowName::STEP_NAME; ++kind) {
        try {
            Require(omu_BrenowName(text, static_cast<omu_BrenowName::omu_BrenowNameEnum>(kind)).AsString() == text);
        } catch (const omu_BreNameErrorException&) { // an illegal name
        }
    }
    cow_String name = text;
    omu_BrenowName::MakeLegalGuiName(name, "A'_/__");
    Require(name.Length() <= 38);
    cow_String legal = omu_BrenowName::MakeLegalFileName(name);
    Require(omu_BrenowName::MakeLegalFileName(legal) == legal);
}

void CheckPaths(const cow_String& text)
{
    cow_String directory;
    cow_String name;
    uti_SplitPath(text, directory, name);
    Require(text.Contains(directory) && text.Contains(name) && (name == "/" || !name.Contains("/")));
    const utl_FilePath path(text);
    Require(path.IsAbsolute() || !text.StartsWith("/"));
    Require(path.BaseName().IsEmpty() || text.Contains(path.BaseName()));
}

void CheckNumbers(double number, int notation, int precision, int zeroDecimals)
{
    const uti_NumFormat format(notation, precision, zeroDecimals);
    const cow_String text = format.Format(number);
    Require(!text.IsEmpty() && !text.Contains(","));
    const double rounded = format.FormatDigits(number);
    Require(std::isnan(number) || std::signbit(rounded) == std::signbit(number) || rounded == 0 || number == 0);
    Require(!cow_String(number).IsEmpty());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Require(users > 0);
    FuzzInput input(data, size);
    const auto number = input.Take<double>();
    const auto notation = input.Take<std::uint8_t>() % 4;
    const auto precision = input.Take<std::int16_t>();
    const auto zeroDecimals = input.Take<std::int8_t>();
    CheckNumbers(number, notation, precision, zeroDecimals);
    const cow_String text(input.Rest());
    CheckNames(text);
    CheckPaths(text);
    return 0;
}
