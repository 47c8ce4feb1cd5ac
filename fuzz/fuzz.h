#pragma once

#include "bio_Ofilter.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

// What the fuzzers share. Each file here is a program of its own: libFuzzer calls LLVMFuzzerTestOneInput with bytes that it
// varies until they reach new code. A crash, a report of a sanitizer, a hang or a false Require is a finding.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// What the bytes of an input say, read from the front; zeros and empty texts when there are no more.
class FuzzInput
{
public:
    FuzzInput(const std::uint8_t* data, std::size_t size) : m_rest(reinterpret_cast<const char*>(data), size) {}

    bool IsEmpty() const noexcept { return m_rest.empty(); }
    template <class T> T Take() noexcept
    {
        T value{};
        const std::size_t count = std::min(sizeof value, m_rest.size());
        std::memcpy(&value, m_rest.data(), count);
        m_rest.remove_prefix(count);
        return value;
    }
    /// A text: the bytes up to the next line break.
    std::string_view TakeLine() noexcept
    {
        const std::string_view line = m_rest.substr(0, m_rest.find('\n'));
        m_rest.remove_prefix(std::min(line.size() + 1, m_rest.size()));
        return line;
    }
    std::string_view Rest() const noexcept { return m_rest; }

private:
    std::string_view m_rest;
};

/// A promise that must hold for every input.
inline void Require(bool holds)
{
    if (!holds) {
        std::abort();
    }
}

/// What a stream has taken in so far.
inline std::string BytesOf(const bio_Ofilter& out)
{
    return {reinterpret_cast<const char*>(out.Data()), out.Size()};
}
