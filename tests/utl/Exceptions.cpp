#include "nex_CommandException.h"
#include "nex_TextException.h"
#include "nex_canDynamicCast.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>

namespace
{
class Refusal : public nex_CommandException
{
public:
    cow_String JournalMessage() const override { return message.view(); } // composed anew, as messages are
    cow_String PythonType() const override { return "ValueError"; }
    void Propagate() const override { throw *this; }
    nex_Exception* Copy() const override { return new Refusal(*this); }

    cow_String message = "width must be positive";
};

class Forgetful : public nex_TextException
{
public:
    using nex_TextException::nex_TextException;
    void Propagate() const override {}
};

/// A pointer to the member function in a slot of a class's table, slots counted from the destructor's two. The layout
/// is that of the Itanium ABI: the offset in the table plus one, then the adjustment of `this`.
template <class Member> Member Slot(std::ptrdiff_t slot)
{
    const std::ptrdiff_t layout[2] = {(slot + 2) * static_cast<std::ptrdiff_t>(sizeof(void*)) + 1, 0};
    Member member;
    static_assert(sizeof member == sizeof layout);
    std::memcpy(&member, layout, sizeof member);
    return member;
}
} // namespace

TEST(Exception, Virtual_operations_stand_in_their_promised_slots)
{
    Refusal refusal;
    try {
        refusal.Throw("here", 3);
    } catch (const Refusal&) {
    }
    using Text = cow_String (nex_CommandException::*)() const;
    const nex_CommandException& thrown = refusal;
    EXPECT_EQ((thrown.*Slot<Text>(0))(), "width must be positive (here, line 3)");
    EXPECT_EQ((thrown.*Slot<Text>(1))(), "width must be positive");
    EXPECT_EQ((thrown.*Slot<Text>(2))(), "width must be positive");
    EXPECT_THROW((thrown.*Slot<void (nex_CommandException::*)() const>(3))(), Refusal);
    const std::unique_ptr<nex_Exception> copy((thrown.*Slot<nex_Exception* (nex_CommandException::*)() const>(4))());
    EXPECT_TRUE(nex_canDynamicCastPtr<Refusal>(copy.get()));
    EXPECT_EQ((thrown.*Slot<std::uint32_t (nex_CommandException::*)() const>(5))(), nex_CommandException::TypeId());
    EXPECT_EQ((thrown.*Slot<Text>(6))(), "width must be positive");
    EXPECT_EQ((thrown.*Slot<Text>(7))(), "ValueError");
}

TEST(Exception, What_stays_valid_until_the_text_changes)
{
    Refusal refusal;
    const char* const before = refusal.what();
    EXPECT_EQ(refusal.what(), before);
    EXPECT_STREQ(before, "width must be positive");
    refusal.message = "short";
    EXPECT_STREQ(refusal.what(), "short");
    EXPECT_EQ(nex_TextException("never thrown").DeveloperReport(), "never thrown");
}

TEST(ExceptionDeathTest, A_throw_that_does_not_throw_ends_the_program)
{
    EXPECT_DEATH(Forgetful("lost").Throw("here", 1), "Propagate\\(\\) throws");
}

TEST(DynamicCast, Answers_as_the_cast_would)
{
    Refusal refusal;
    nex_Exception& exception = refusal;
    EXPECT_FALSE(nex_canDynamicCastPtr<nex_Exception>(static_cast<const nex_Exception*>(nullptr)));
    nex_TextException* other = reinterpret_cast<nex_TextException*>(&refusal);
    EXPECT_FALSE(nex_canDynamicCastRef(exception, other));
    EXPECT_EQ(other, nullptr);
}
