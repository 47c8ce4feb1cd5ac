#pragma once

#include "Test.h"
#include "bio_Ifilter.h"
#include "bio_Ofilter.h"
#include "nex_TextException.h"
#include "pnt_PrettyPrint.h"

/// The bytes `value` is streamed as.
template <class T> std::string BytesOf(const T& value)
{
    bio_Ofilter out;
    out << value;
    return {reinterpret_cast<const char*>(out.Data()), out.Size()};
}

template <class Call> std::string RefusalOf(Call call)
{
    return ErrorOf<nex_TextException>(call);
}

template <class T> std::string DumpOf(const T& value)
{
    std::ostringstream text;
    pnt_PrettyPrint out(text);
    out << value;
    return text.str();
}

/// Reads a T from `bytes`; the refusal's text, or empty when all was well.
template <class T> std::string ReadFrom(const std::string& bytes, T& value)
{
    bio_Ifilter in(bytes.data(), bytes.size());
    const std::string refusal = RefusalOf([&] { in >> value; });
    return !refusal.empty() || in.AtEnd() ? refusal : "bytes are left";
}

/// A value survives its stream; every truncation is refused; flipped bits are read or refused, never worse.
template <class T> void ExpectStreamed(const T& value)
{
    const std::string bytes = BytesOf(value);
    T read;
    EXPECT_EQ(ReadFrom(bytes, read), "");
    EXPECT_TRUE(read == value);
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        EXPECT_NE(ReadFrom(bytes.substr(0, length), read), "") << "cut to " << length;
    }
    for (std::size_t bit = 0; bit < bytes.size() * 8; ++bit) {
        std::string damaged = bytes;
        damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << bit % 8));
        if (ReadFrom(damaged, read).empty()) {
            EXPECT_EQ(BytesOf(read), damaged) << "bit " << bit;
        }
    }
}
