#pragma once

// Every class of value, with short ways to make, show and stream values.

#include "nex_TextException.h"
#include "omi_complex.h"
#include "omu_Arguments.h"
#include "omu_InterfaceObj.h"
#include "omu_ObjectRef.h"
#include "omu_PrimArray.h"
#include "omu_PrimBool.h"
#include "omu_PrimComplex.h"
#include "omu_PrimDictionary.h"
#include "omu_PrimExpr.h"
#include "omu_PrimList.h"
#include "omu_PrimNone.h"
#include "omu_PrimNumber.h"
#include "omu_PrimPath.h"
#include "omu_PrimString.h"
#include "omu_PrimTuple.h"
#include "omu_PrimType.h"
#include "omu_PrimWrapper.h"
#include "omu_TextRepr.h"
#include "utl/StreamChecks.h"
#include "utl_FilePath.h"

/// A value of any class for the sequences below: numbers, texts, or a value to take over.
struct Item
{
    Item(int value) : primitive(new omu_PrimNumber(value)) {}
    Item(double value) : primitive(new omu_PrimNumber(value)) {}
    Item(const char* text) : primitive(new omu_PrimString(text)) {}
    Item(const omu_Primitive& value) : primitive(value.Copy()) {}

    omu_PrimHolder primitive;
};

template <class Sequence> Sequence SequenceOf(std::initializer_list<Item> items)
{
    Sequence sequence(static_cast<int>(items.size()));
    for (const Item& item : items) {
        sequence.Put(item.primitive->Copy());
    }
    return sequence;
}

inline omu_PrimTuple Tuple(std::initializer_list<Item> items)
{
    return SequenceOf<omu_PrimTuple>(items);
}

inline omu_PrimList List(std::initializer_list<Item> items)
{
    return SequenceOf<omu_PrimList>(items);
}

inline std::string Text(const omu_Primitive& value)
{
    return std::string(value.AsString(0).view());
}

/// The text of a new sequence, which is deleted.
inline std::string TextAndDelete(omu_PrimSequence* sequence)
{
    const std::unique_ptr<omu_PrimSequence> owner(sequence);
    return Text(*owner);
}

/// A kernel object of type "Part" that counts its living instances.
class Part : public omu_InterfaceObj
{
public:
    Part()
    {
        DescribeType("Part", nullptr, nullptr);
        ++Living();
    }
    Part(const Part& other) : omu_InterfaceObj(other) { ++Living(); }
    Part& operator=(const Part&) = delete;
    ~Part() override { --Living(); }
    omu_Primitive* Copy() const override { return new Part(*this); }

    static int& Living()
    {
        static int living = 0;
        return living;
    }
};

inline std::string Stream(const omu_Primitive& value)
{
    return BytesOf(&value);
}

inline std::unique_ptr<omu_Primitive> Unstream(const std::string& bytes)
{
    bio_Ifilter in(bytes.data(), bytes.size());
    omu_Primitive* value = nullptr;
    in >> value;
    return std::unique_ptr<omu_Primitive>(value);
}

/// A name, and the place in a stream of a 32-bit number with what overwrites it.
using Damage = std::tuple<const char*, std::size_t, std::int32_t>;

inline void ExpectRefused(const std::string& bytes, std::initializer_list<Damage> damages)
{
    for (const auto& [name, at, number] : damages) {
        std::string damaged = bytes;
        std::memcpy(damaged.data() + at, &number, sizeof number);
        EXPECT_THROW(Unstream(damaged), nex_TextException) << name;
    }
}
