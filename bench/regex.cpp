// Matching, splitting and substituting beside PCRE2's machine code called by hand, RE2 and std::regex.

#include "rgx_ReCompileCache.h"
#include "rgx_funcs.h"

#include "../source/rgx/impl/rgx_pcre_detail.h"

#include <benchmark/benchmark.h>
#include <re2/re2.h>

#include <array>
#include <cstdlib>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

namespace
{

constexpr const char* NAME_PATTERN = "^([A-Za-z]\\w*)-(\\d+)$";
constexpr const char* NAME = "Instance_of_part-117"; // 20 characters
constexpr const char* SEPARATOR = "\\s*[,;]\\s*";
constexpr const char* FIELD = "(\\w+)_(\\d+)";
constexpr const char* REPLACEMENT = "<name>";

/// A line of 10 kB: names and numbers, a separator between each two.
const std::string& Line()
{
    static const std::string line = [] {
        std::string text;
        for (int i = 0; text.size() < 10000; ++i) {
            text += (i % 3 == 0 ? "element_set_" : "node_") + std::to_string(i) + (i % 2 == 0 ? ", " : ";");
        }
        return text;
    }();
    return line;
}

const real_pcre& Compiled(const char* pattern)
{
    return *static_cast<const real_pcre*>(omi_Singleton<rgx_ReCompileCache>::Instance().Get(pattern));
}

/// A pattern in machine code with match data of its own: what a program that calls PCRE2 by hand keeps. The machine code
/// is the one that is compared with, since where it lies in a line of the cache makes up to a quarter of a match's time.
struct Translated
{
    explicit Translated(const char* pattern)
        : code(Compiled(pattern).code.get()), data(pcre2_match_data_create_from_pattern(code, nullptr)),
          offsets(pcre2_get_ovector_pointer(data))
    {}
    ~Translated() { pcre2_match_data_free(data); }
    Translated(const Translated&) = delete;
    Translated& operator=(const Translated&) = delete;

    bool Match(std::string_view text, std::size_t start) const
    {
        return pcre2_jit_match(code, reinterpret_cast<PCRE2_SPTR>(text.data()), text.size(), start, 0, data, nullptr) >
               0;
    }

    const pcre2_code* code;
    pcre2_match_data* data;
    const PCRE2_SIZE* offsets;
};

/// Ends the program when a peer did other work than the one it is compared with.
void Check(bool isSame)
{
    if (!isSame) {
        std::abort();
    }
}

void match_kernel(benchmark::State& state)
{
    const real_pcre& code = Compiled(NAME_PATTERN);
    const std::string_view name = NAME;
    std::array<int, 6> offsets;
    for (auto _ : state) {
        Check(rgx_pcre_exec(&code, nullptr, name.data(), static_cast<int>(name.size()), 0, offsets.data(), 6) == 3);
        benchmark::DoNotOptimize(offsets);
    }
}

void match_cache_kernel(benchmark::State& state)
{
    const cow_String pattern = NAME_PATTERN;
    const cow_String name = NAME;
    for (auto _ : state) {
        const rgx_ReIterator match = rgx_match(pattern, name);
        Check(match.GroupCount() == 3);
        benchmark::DoNotOptimize(match);
    }
}

void match_jit(benchmark::State& state)
{
    const Translated pattern(NAME_PATTERN);
    const std::string_view name = NAME;
    for (auto _ : state) {
        Check(pattern.Match(name, 0));
        benchmark::DoNotOptimize(*pattern.offsets);
    }
}

void match_re2(benchmark::State& state)
{
    const RE2 pattern(NAME_PATTERN);
    const re2::StringPiece name = NAME;
    std::array<re2::StringPiece, 3> groups;
    for (auto _ : state) {
        Check(pattern.Match(name, 0, name.size(), RE2::UNANCHORED, groups.data(), 3));
        benchmark::DoNotOptimize(groups);
    }
}

void match_std(benchmark::State& state)
{
    const std::regex pattern(NAME_PATTERN, std::regex::optimize);
    std::cmatch match;
    for (auto _ : state) {
        Check(std::regex_search(NAME, match, pattern));
        benchmark::DoNotOptimize(match);
    }
}

std::vector<std::string> SplitByHand(const Translated& pattern, std::string_view text)
{
    std::vector<std::string> pieces;
    std::size_t start = 0;
    while (pattern.Match(text, start)) {
        pieces.emplace_back(text.substr(start, pattern.offsets[0] - start));
        start = pattern.offsets[1];
    }
    pieces.emplace_back(text.substr(start));
    return pieces;
}

void split_kernel(benchmark::State& state)
{
    const cow_String pattern = SEPARATOR;
    const cow_String line = std::string_view(Line());
    const std::vector<std::string> expected = SplitByHand(Translated(SEPARATOR), Line());
    const auto pieces = rgx_split(pattern, line);
    Check(std::equal(pieces.begin(), pieces.end(), expected.begin(), expected.end()));
    for (auto _ : state) {
        benchmark::DoNotOptimize(rgx_split(pattern, line));
    }
}

void split_jit(benchmark::State& state)
{
    const Translated pattern(SEPARATOR);
    for (auto _ : state) {
        benchmark::DoNotOptimize(SplitByHand(pattern, Line()));
    }
}

void split_re2(benchmark::State& state)
{
    const RE2 pattern(SEPARATOR);
    for (auto _ : state) {
        std::vector<std::string> pieces;
        const re2::StringPiece line = Line();
        re2::StringPiece separator;
        std::size_t start = 0;
        while (pattern.Match(line, start, line.size(), RE2::UNANCHORED, &separator, 1)) {
            const auto at = static_cast<std::size_t>(separator.data() - line.data());
            pieces.emplace_back(Line(), start, at - start);
            start = at + separator.size();
        }
        pieces.emplace_back(Line(), start);
        benchmark::DoNotOptimize(pieces);
    }
}

void split_std(benchmark::State& state)
{
    const std::regex pattern(SEPARATOR, std::regex::optimize);
    for (auto _ : state) {
        const std::sregex_token_iterator first(Line().begin(), Line().end(), pattern, -1);
        benchmark::DoNotOptimize(std::vector<std::string>(first, std::sregex_token_iterator()));
    }
}

std::string SubstitutedByHand(const Translated& pattern, std::string_view text, std::string_view replacement)
{
    std::string result;
    result.reserve(text.size());
    std::size_t start = 0;
    while (pattern.Match(text, start)) {
        result.append(text, start, pattern.offsets[0] - start);
        result.append(replacement);
        start = pattern.offsets[1];
    }
    result.append(text, start);
    return result;
}

void substitute_kernel(benchmark::State& state)
{
    const cow_String pattern = FIELD;
    const cow_String line = std::string_view(Line());
    const cow_String replacement = REPLACEMENT;
    Check(rgx_subn(pattern, line, replacement, 10000) == SubstitutedByHand(Translated(FIELD), Line(), REPLACEMENT));
    for (auto _ : state) {
        benchmark::DoNotOptimize(rgx_subn(pattern, line, replacement, 10000));
    }
}

void substitute_jit(benchmark::State& state)
{
    const Translated pattern(FIELD);
    std::string_view replacement = REPLACEMENT;
    benchmark::DoNotOptimize(replacement); // not known to the compiler, which would write it in two instructions
    for (auto _ : state) {
        benchmark::DoNotOptimize(SubstitutedByHand(pattern, Line(), replacement));
    }
}

void substitute_re2(benchmark::State& state)
{
    const RE2 pattern(FIELD);
    for (auto _ : state) {
        std::string line = Line();
        RE2::GlobalReplace(&line, pattern, REPLACEMENT);
        benchmark::DoNotOptimize(line);
    }
}

void substitute_std(benchmark::State& state)
{
    const std::regex pattern(FIELD, std::regex::optimize);
    for (auto _ : state) {
        benchmark::DoNotOptimize(std::regex_replace(Line(), pattern, REPLACEMENT));
    }
}

BENCHMARK(match_kernel);
BENCHMARK(match_cache_kernel);
BENCHMARK(match_jit);
BENCHMARK(match_re2);
BENCHMARK(match_std);
BENCHMARK(split_kernel);
BENCHMARK(split_jit);
BENCHMARK(split_re2);
BENCHMARK(split_std);
BENCHMARK(substitute_kernel);
BENCHMARK(substitute_jit);
BENCHMARK(substitute_re2);
BENCHMARK(substitute_std);

} // namespace
