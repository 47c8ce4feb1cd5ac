#include "VirtualSlots.h"
#include "bio_Ofilter.h"
#include "nex_CommandException.h"
#include "nex_TextException.h"

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

} // namespace

TEST(Exception, Virtual_operations_stand_in_their_promised_slots)
{
    using E = nex_CommandException;
    ExpectSlots({At(1, &E::DeveloperReport), At(2, &E::UserReport), At(3, &E::AsString), At(4, &E::Propagate),
                 At(5, &E::Copy), At(6, &E::DynTypeId), At(7, &E::JournalMessage), At(8, &E::PythonType)});
}

TEST(Exception, What_stays_valid_until_the_text_changes)
{
    Refusal refusal;
    const char* const before = refusal.what();
    EXPECT_EQ(refusal.what(), before);
    EXPECT_STREQ(before, "width must be positive");
    refusal.message = "short";
    EXPECT_STREQ(refusal.what(), "short");
    EXPECT_THROW(refusal.Throw("here", 3), Refusal);
    bio_Ofilter out;
    nex_Exception::WriteData(out, &refusal);
    EXPECT_EQ(std::string(out.Data(), out.Data() + out.Size()), std::string("\4\0\0\0here\3\0\0\0", 12));
    const std::unique_ptr<nex_Exception> copy(refusal.Copy());
    EXPECT_EQ(copy->UserReport() + ": " + copy->DeveloperReport(), "short: short (here, line 3)");
    EXPECT_EQ(nex_TextException("never thrown").DeveloperReport(), "never thrown");
}

TEST(ExceptionDeathTest, A_throw_that_does_not_throw_ends_the_program)
{
    EXPECT_DEATH(Forgetful("lost").Throw("here", 1), "Propagate\\(\\) throws");
}
