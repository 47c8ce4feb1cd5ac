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

TEST(UtilityExceptions, Copies_and_streams_are_faithful)
{
    ExpectFaithful<uti_SystemException, nex_Exception>({"open", -1, "file"}, "uti_SystemException");
    ExpectFaithful<uti_NotOnPathException, nex_TextException>(uti_NotOnPathException("a"), "uti_NotOnPathException");
    ExpectFaithful<uti_NotExecutableException, nex_TextException>(uti_NotExecutableException("a"),
                                                                  "uti_NotExecutableException");
    ExpectFaithful<uti_CmdFailedException, nex_Exception>({}, "uti_CmdFailedException");
    ExpectFaithful<uti_InterruptedException, nex_Exception>(uti_InterruptedException(uti_Stop),
                                                            "uti_InterruptedException");
    ExpectFaithful<uti_XypException, nex_CommandException>({uti_XYP_NOT_A_NUMBER, "f"}, "uti_XypException");
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

    const std::pair<const char*, std::uint32_t> rows[] = {
        {"uti_SystemException", 0x1F0001},        {"uti_NotOnPathException", 0x1F0002},
        {"uti_NotExecutableException", 0x1F0002}, {"uti_CmdFailedException", 0x1F0001},
        {"uti_InterruptedException", 0x1F0001},   {"uti_XypException", 0x1F0003}};
    std::uint32_t id = 0x20000;
    for (const auto& [name, parent] : rows) {
        EXPECT_EQ(typ_ArchCompTable::GetName(++id), name);
        EXPECT_EQ(typ_ArchCompTable::Find(id)->parent, parent) << name;
    }
    EXPECT_EQ(uti_XypException().DynTypeId(), id);

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
