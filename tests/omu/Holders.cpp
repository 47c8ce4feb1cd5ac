#include "Values.h"

namespace
{

/// A kernel's own kind of number, with more to it than its base has.
class CountedNumber final : public omu_PrimNumber
{
public:
    CountedNumber(int value, int* alive) : omu_PrimNumber(value), m_alive(alive) { ++*m_alive; }
    CountedNumber(const CountedNumber& other) : omu_PrimNumber(other), m_alive(other.m_alive) { ++*m_alive; }
    ~CountedNumber() override { --*m_alive; }
    omu_Primitive* Copy() const override { return new CountedNumber(*this); }

private:
    int* m_alive;
};

omu_PrimHolder Text(const char* text)
{
    return omu_PrimHolder(std::in_place_type<omu_PrimString>, text);
}

constexpr const char* LONG_TEXT = "a text that is too long to be kept in place";

} // namespace

TEST(Holders, What_stands_in_place_is_copied_with_the_holder)
{
    for (const char* text : {"", "short", LONG_TEXT}) {
        omu_PrimHolder holder = Text(text);
        const omu_PrimHolder copy = holder;
        static_cast<omu_PrimString&>(*holder.Get()).Concat(omu_PrimString(cow_String("!")));
        EXPECT_EQ(static_cast<const omu_PrimString&>(*copy).GetString(), text);
        EXPECT_EQ(static_cast<const omu_PrimString&>(*holder).GetString(), cow_String(text) + "!");
        EXPECT_FALSE(holder.SharesWith(copy));
    }
    omu_PrimHolder holder = Text(LONG_TEXT);
    holder.Emplace<omu_PrimString>(static_cast<const omu_PrimString&>(*holder).GetString());
    EXPECT_EQ(static_cast<const omu_PrimString&>(*holder).GetString(), LONG_TEXT) << "a text in the place of itself";
}

TEST(Holders, An_adopted_object_stays_itself_until_a_shared_one_is_written)
{
    int alive = 0;
    auto* const number = new CountedNumber(5, &alive);
    omu_PrimHolder holder(number);
    {
        omu_PrimHolder copy = holder;
        EXPECT_TRUE(copy.SharesWith(holder));
        EXPECT_NE(copy.Get(), number);
        EXPECT_EQ(alive, 2);
    }
    EXPECT_EQ(holder.Get(), number);
    // A copy of a derived class is of that class, not cut down to what stands in place.
    EXPECT_NE(dynamic_cast<const CountedNumber*>(omu_PrimHolder::CopyOf(*number).ConstGet()), nullptr);
    EXPECT_EQ(alive, 1);
    const std::unique_ptr<omu_Primitive> released(holder.Release());
    EXPECT_EQ(released.get(), number);
    EXPECT_TRUE(holder.IsNull());
}

TEST(Holders, Release_gives_an_object_of_its_own)
{
    omu_PrimHolder shared(new omu_PrimTuple(2));
    const omu_PrimHolder other = shared;
    omu_PrimHolder text = Text(LONG_TEXT);
    const std::unique_ptr<omu_Primitive> tuple(shared.Release());
    const std::unique_ptr<omu_Primitive> string(text.Release());
    EXPECT_NE(tuple.get(), other.ConstGet());
    EXPECT_TRUE(*tuple == *other);
    EXPECT_EQ(string->AsString(0), cow_String("'") + LONG_TEXT + "'");
    EXPECT_TRUE(shared.IsNull() && text.IsNull() && omu_PrimHolder().Release() == nullptr);
}

TEST(Holders, Every_kind_takes_the_place_of_every_other)
{
    int alive = 0;
    const auto makeAll = [&alive] {
        return std::vector<omu_PrimHolder>{omu_PrimHolder(),
                                           omu_PrimHolder(std::in_place_type<omu_PrimNone>),
                                           omu_PrimHolder(std::in_place_type<omu_PrimNumber>, 2.5),
                                           Text("short"),
                                           Text(LONG_TEXT),
                                           omu_PrimHolder(new CountedNumber(7, &alive)),
                                           omu_PrimHolder(new omu_PrimTuple(3))};
    };
    const auto textOf = [](const omu_PrimHolder& holder) { return holder ? holder->AsString(0) : cow_String("null"); };
    const std::vector<omu_PrimHolder> sources = makeAll();
    for (std::size_t i = 0; i < sources.size(); ++i) {
        for (const omu_PrimHolder& source : sources) {
            omu_PrimHolder copied = makeAll()[i];
            omu_PrimHolder moved = makeAll()[i];
            copied = source;
            moved = omu_PrimHolder(source);
            EXPECT_EQ(textOf(copied), textOf(source));
            EXPECT_EQ(textOf(moved), textOf(source));
            const omu_PrimHolder& self = copied;
            copied = self;
            EXPECT_EQ(textOf(copied), textOf(source));
        }
        omu_PrimHolder replaced = makeAll()[i];
        replaced.Emplace<omu_PrimNumber>(3);
        EXPECT_EQ(textOf(replaced), "3");
    }
    EXPECT_EQ(alive, 1);
}
