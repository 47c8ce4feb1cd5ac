// Patterns, subjects and replacements from anywhere: a result or a stated error, in limited time.

#include "fuzz.h"

#include "nex_TextException.h"
#include "rgx_Module.h"
#include "rgx_ReCompileCache.h"
#include "rgx_funcs.h"

namespace
{
const int users = [] {
    int count = 0;
    rgx_initialize(count);
    return count;
}();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput input(data, size);
    const int count = input.Take<std::uint8_t>();
    const cow_String pattern(input.TakeLine());
    const cow_String replacement(input.TakeLine());
    const cow_String subject(input.Rest());
    try {
        const rgx_ReIterator match = rgx_match(pattern, subject);
        for (int n = rgx_ReIterator::BEFORE; n <= match.GroupCount(); ++n) {
            Require(subject.Contains(match.NthString(n)));
        }
        const cow_String replaced = rgx_subn(pattern, subject, replacement, count);
        Require(match.IsMatched() || replaced == subject);
        Require(rgx_split(pattern, subject).Length() >= 1);
    } catch (const nex_TextException&) { // a wrong pattern, or one that takes too long
    }
    Require(users == 1 && omi_Singleton<rgx_ReCompileCache>::Instance().PercentFull() <= 1);
    return 0;
}
