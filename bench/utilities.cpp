// A million numbers as text in each notation and a million appended points, beside what C++ users have for the same.

#include "uti_CoordCont3D.h"
#include "uti_NumFormat.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace
{
constexpr int COUNT = 1'000'000;
constexpr int PRECISION = 6;

/// Of either sign, evenly spread from 1E-06 to 1E+09: what reports are made of.
const std::vector<double>& Numbers()
{
    static const std::vector<double> numbers = [] {
        std::mt19937_64 random(1);
        std::uniform_real_distribution<double> exponent(-6, 9);
        std::vector<double> made(COUNT);
        for (double& number : made) {
            number = std::pow(10.0, exponent(random)) * (random() % 2 != 0 ? 1 : -1);
        }
        return made;
    }();
    return numbers;
}

/// A number's text, as a peer writes it.
class Text
{
public:
    std::string_view View() const noexcept { return {m_bytes, static_cast<std::size_t>(m_end - m_bytes)}; }

    void Printf(const char* format, double value) { m_end = m_bytes + std::snprintf(m_bytes, SIZE, format, value); }
    void Fmt(std::string_view format, double value) { m_end = fmt::format_to(m_bytes, fmt::runtime(format), value); }

    // What uti_NumFormat gives, written by hand for finite numbers and six digits.
    void Scientific(double value)
    {
        Number(value, std::chars_format::scientific, PRECISION);
        m_end[m_end[-4] == 'e' ? -4 : -5] = 'E';
    }
    void Automatic(double value)
    {
        Number(value, std::chars_format::general, PRECISION);
        if (char* const exponent = std::find(m_bytes, m_end, 'e'); exponent != m_end) {
            *exponent = 'E';
        }
        Insert(0, ' ', PRECISION + 6 - static_cast<int>(View().size()));
        if (View().find('.') == View().npos) {
            Insert(std::min(View().find('E'), View().size()), '.', 1);
        }
    }
    void Engineering(double value)
    {
        int exponent = 0;
        for (; std::fabs(value) >= 1000.0; exponent += 3) {
            value *= 0.001;
        }
        for (; value != 0.0 && std::fabs(value) < 1.0; exponent -= 3) {
            value *= 1000.0;
        }
        const int integerDigits = std::fabs(value) >= 100.0 ? 3 : std::fabs(value) >= 10.0 ? 2 : 1;
        Number(value, std::chars_format::fixed, PRECISION - integerDigits);
        while (m_end[-1] == '0') {
            --m_end;
        }
        if (exponent != 0) {
            std::memcpy(m_end, exponent < 0 ? "E-0" : "E+0", 3);
            m_end = std::to_chars(m_end + (std::abs(exponent) < 10 ? 3 : 2), m_bytes + SIZE, std::abs(exponent)).ptr;
        }
        Insert(0, ' ', 4 - static_cast<int>(View().find('.')));
        Insert(View().size(), ' ', PRECISION + 8 - static_cast<int>(View().size()));
    }

private:
    static constexpr std::size_t SIZE = 64;

    void Number(double value, std::chars_format format, int digits)
    {
        m_bytes[0] = ' ';
        m_end = std::to_chars(m_bytes + (value < 0 ? 0 : 1), m_bytes + SIZE, value, format, digits).ptr;
    }
    void Insert(std::size_t position, char character, int count)
    {
        if (count > 0) {
            std::memmove(m_bytes + position + count, m_bytes + position, View().size() - position);
            std::memset(m_bytes + position, character, static_cast<std::size_t>(count));
            m_end += count;
        }
    }

    char m_bytes[SIZE];
    char* m_end = m_bytes;
};

template <class Format> void FormatAll(benchmark::State& state, Format format)
{
    for (auto _ : state) {
        for (const double number : Numbers()) {
            Text text;
            format(text, number);
            benchmark::DoNotOptimize(text);
        }
    }
}

void FormatByKernel(benchmark::State& state, int notation, void (Text::*byHand)(double))
{
    const uti_NumFormat format(notation, PRECISION);
    for (const double number : Numbers()) {
        Text text;
        (text.*byHand)(number);
        if (format.Format(number) != text.View()) {
            state.SkipWithError("the text written by hand differs");
        }
    }
    for (auto _ : state) {
        for (const double number : Numbers()) {
            benchmark::DoNotOptimize(format.Format(number));
        }
    }
}

/// Calls `append` for each point.
template <class Append> void EachPoint(Append append)
{
    for (int i = 0; i < COUNT; ++i) {
        append(static_cast<float>(i), 1.0f, 2.0f);
    }
}

/// The list is what a container grows into; a fixed array that was made for so many points takes them in place.
void AppendByKernel(benchmark::State& state, bool isFixed)
{
    for (auto _ : state) {
        uti_CoordCont3D points;
        if (isFixed) {
            points.Grow(COUNT);
            points.Grow(0);
        }
        EachPoint([&points](float x, float y, float z) { points.Append(x, y, z); });
        benchmark::DoNotOptimize(&points);
        if (points.IsFixed() != isFixed) {
            state.SkipWithError("the other form");
        }
    }
}

template <class Number> void AppendToVector(benchmark::State& state, bool isReserved)
{
    for (auto _ : state) {
        std::vector<std::array<Number, 3>> points;
        if (isReserved) {
            points.resize(COUNT); // touches the memory as Grow does
            points.clear();
        }
        EachPoint([&points](float x, float y, float z) { points.push_back({x, y, z}); });
        benchmark::DoNotOptimize(points.data());
    }
}

void RegisterFormats(const char* name, int notation, void (Text::*byHand)(double), const char* nearestPrintf,
                     std::string_view nearestFmt)
{
    const std::string start = std::string("format/") + name;
    const auto add = [&start](const char* peer, auto format) {
        benchmark::RegisterBenchmark((start + peer).c_str(), [=](auto& state) { FormatAll(state, format); });
    };
    benchmark::RegisterBenchmark((start + "/kernel").c_str(),
                                 [=](auto& state) { FormatByKernel(state, notation, byHand); });
    add("/by_hand", [=](Text& text, double number) { (text.*byHand)(number); });
    add("/snprintf", [=](Text& text, double number) { text.Printf(nearestPrintf, number); });
    add("/fmt", [=](Text& text, double number) { text.Fmt(nearestFmt, number); });
}

const bool registered = [] {
    RegisterFormats("automatic", uti_NumFormat::AUTOMATIC, &Text::Automatic, "% 12.6G", "{: 12.6G}");
    RegisterFormats("engineering", uti_NumFormat::ENGINEERING, &Text::Engineering, "% 14.5E", "{: 14.5E}");
    RegisterFormats("scientific", uti_NumFormat::SCIENTIFIC, &Text::Scientific, "% 12.6E", "{: 12.6E}");
    benchmark::RegisterBenchmark("points/list/kernel", [](auto& state) { AppendByKernel(state, false); });
    benchmark::RegisterBenchmark("points/list/vector", [](auto& state) { AppendToVector<float>(state, false); });
    benchmark::RegisterBenchmark("points/list/vector_of_doubles",
                                 [](auto& state) { AppendToVector<double>(state, false); });
    benchmark::RegisterBenchmark("points/fixed/kernel", [](auto& state) { AppendByKernel(state, true); });
    benchmark::RegisterBenchmark("points/fixed/vector", [](auto& state) { AppendToVector<float>(state, true); });
    benchmark::RegisterBenchmark("points/fixed/vector_of_doubles",
                                 [](auto& state) { AppendToVector<double>(state, true); });
    return true;
}();
} // namespace
