#pragma once

#include "Test.h"
#include "nex_TextException.h"
#include "obj_Stream.h"

template <class E> std::string StreamOf(const E& exception)
{
    bio_Ofilter out;
    E::WriteData(out, &exception);
    return {reinterpret_cast<const char*>(out.Data()), out.Size()};
}

template <class E> std::unique_ptr<E> FromStream(const std::string& bytes)
{
    bio_Ifilter in(bytes.data(), bytes.size());
    return std::unique_ptr<E>(static_cast<E*>(E::CtorFunc(in, nullptr)));
}

/// `bytes` with the 32-bit number at `offset` replaced.
inline std::string WithNumber(std::string bytes, std::size_t offset, std::int32_t number)
{
    std::memcpy(bytes.data() + offset, &number, sizeof number);
    return bytes;
}

/// What the reader says about a stream in which no part of an E may be built; empty when it builds one.
template <class E> std::string Refusal(const std::string& bytes)
{
    return ErrorOf<nex_TextException>([&] { FromStream<E>(bytes); });
}

/// Copying, propagating, streaming and dumping keep the most derived type and all of its fields.
template <class E, class Base> void ExpectFaithful(const E& exception, const std::string& dumpName)
{
    SCOPED_TRACE(typeid(E).name());
    const std::string bytes = StreamOf(exception);
    const std::unique_ptr<nex_Exception> copy(exception.Copy());
    EXPECT_EQ(typeid(*copy.get()), typeid(E));
    try {
        copy->Propagate();
        ADD_FAILURE() << "Propagate() returned";
    } catch (const E& caught) {
        EXPECT_EQ(StreamOf(caught), bytes);
    }
    EXPECT_EQ(StreamOf(*FromStream<E>(bytes)), bytes);
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        EXPECT_NE(Refusal<E>(bytes.substr(0, length)), "") << "cut to " << length;
    }

    std::ostringstream base, whole;
    pnt_PrettyPrint baseDump(base), dump(whole);
    Base::PrintData(baseDump, &exception);
    E::PrintData(dump, &exception);
    const std::string opening = "(" + dumpName + "\n  " + base.str().substr(0, base.str().find('\n') + 1);
    EXPECT_EQ(whole.str().substr(0, opening.size()), opening);
}
