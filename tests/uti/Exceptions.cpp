#include "../ExceptionChecks.h"
#include "typ_ArchCompTable.h"
#include "uti_CmdFailedException.h"
#include "uti_InterruptedException.h"
#include "uti_Module.h"
#include "uti_NotExecutableException.h"
#include "uti_NotOnPathException.h"
#include "uti_SystemException.h"
#include "uti_XypException.h"
#include "utl/StreamChecks.h"
#include "utl_Module.h"

#include <cerrno>

/// Copies and streams are faithful, and the type tables know the class.
template <class Base, class E> void ExpectRow(std::uint32_t id, const char* name, const E& exception)
{
    ExpectFaithful<E, Base>(exception, name);
    EXPECT_EQ(E::TypeId(), id) << name;
    EXPECT_EQ(typ_ArchCompTable::GetName(id), name);
    EXPECT_EQ(typ_ArchCompTable::Find(id)->parent, Base::TypeId()) << name;
}

TEST(UtilityExceptions, Texts_and_labels)
{
    EXPECT_EQ(uti_SystemException("CreateProcess", 2).AsString(), "IOError: : No such file or directory");
    EXPECT_EQ(uti_SystemException("open", EACCES, "a.txt").AsString(), "IOError: a.txt: Permission denied");
    EXPECT_EQ(uti_NotOnPathException("tool.exe").AsString(), "tool.exe not found in PATH.");
    EXPECT_EQ(uti_NotExecutableException("/a/b").AsString(), "/a/b is not executable.");
    EXPECT_EQ(uti_XypException(uti_XYP_NO_DATA, "derivative").JournalMessage(), "derivative: X-Y data is empty");
    EXPECT_EQ(uti_XypException(uti_XYP_NO_DATA, "").AsString(), "X-Y data is empty");
    EXPECT_EQ(uti_XypException().PythonType(), "XypError");

    EXPECT_EQ(uti_CmdFailedException(uti_CmdFailed).AsString(), "uti_CmdFailed");
    EXPECT_EQ(uti_CmdFailedException(uti_CmdFailedExceptionEnm{1}).AsString(), "");
    EXPECT_EQ(uti_InterruptedException(uti_Signal).AsString(), "uti_Signal");
    EXPECT_EQ(uti_InterruptedException(uti_Keyboard).AsString(), "uti_Keyboard");
    EXPECT_EQ(uti_InterruptedException(uti_Stop).AsString(), "uti_Stop");
    EXPECT_EQ(uti_InterruptedException(uti_InterruptedExceptionEnm{3}).AsString(), "");
}

TEST(UtilityExceptions, A_stream_with_an_unknown_reason_is_refused)
{
    // An exception that was not thrown starts with an empty file name and line 0, 8 bytes.
    const std::string refusal = "no valid kind of exception at offset 8";
    EXPECT_EQ(Refusal<uti_CmdFailedException>(WithNumber(StreamOf(uti_CmdFailedException()), 8, 1)), refusal);
    EXPECT_EQ(Refusal<uti_InterruptedException>(WithNumber(StreamOf(uti_InterruptedException()), 8, 3)), refusal);
    EXPECT_EQ(Refusal<uti_InterruptedException>(WithNumber(StreamOf(uti_InterruptedException()), 8, -1)), refusal);
    EXPECT_EQ(Refusal<uti_XypException>(WithNumber(StreamOf(uti_XypException()), 8, 6)), refusal);
}

TEST(UtilityModule, Start_up_is_counted_and_exceptions_pass_through_the_type_tables)
{
    int utlUsers = 0;
    utl_initialize(utlUsers);
    int users = 5;
    uti_initialize(users);
    uti_initialize(users);
    EXPECT_EQ(users, 6);

    ExpectRow<nex_Exception>(0x20001, "uti_SystemException", uti_SystemException("open", -1, "file"));
    ExpectRow<nex_TextException>(0x20002, "uti_NotOnPathException", uti_NotOnPathException("a"));
    ExpectRow<nex_TextException>(0x20003, "uti_NotExecutableException", uti_NotExecutableException("a"));
    ExpectRow<nex_Exception>(0x20004, "uti_CmdFailedException", uti_CmdFailedException());
    ExpectRow<nex_Exception>(0x20005, "uti_InterruptedException", uti_InterruptedException(uti_Stop));
    ExpectRow<nex_CommandException>(0x20006, "uti_XypException", uti_XypException(uti_XYP_NOT_A_NUMBER, "f"));

    for (const int expected : {6, 5, 5}) { // the last is one too many
        uti_finalize(users);
        EXPECT_EQ(users, expected);
    }
    uti_initialize(users);
    EXPECT_EQ(users, 6) << "a start after one stop too many";

    nex_TextException* pointer = nullptr;
    const uti_NotOnPathException notOnPath("tool");
    EXPECT_EQ(ReadFrom(BytesOf(&notOnPath), pointer), "");
    const std::unique_ptr<nex_TextException> owner(pointer);
    EXPECT_EQ(pointer->AsString(), "tool not found in PATH.");
    EXPECT_EQ(pointer->DynTypeId(), nex_TextException::TypeId());
    uti_XypException other;
    EXPECT_EQ(ReadFrom(BytesOf(uti_XypException(uti_XYP_FAILED, "f")), other), "");
    EXPECT_EQ(other.Function(), "f");
    uti_finalize(users);
    utl_finalize(utlUsers);
}
