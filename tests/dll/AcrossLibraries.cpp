#include "Test.h"
#include "cls_ArrayPrim.h"
#include "cls_Module.h"
#include "cls_UidCatalog.h"
#include "nex_TextException.h"
#include "nex_canDynamicCast.h"
#include "omu_ArgTypeErrorException.h"
#include "omu_Module.h"
#include "omu_PrimBool.h"
#include "omu_PrimDictionary.h"
#include "omu_PrimTuple.h"
#include "omu_RangeErrorException.h"
#include "omu_SymbolicConstantTable.h"
#include "omu_TextRepr.h"
#include "second.h"
#include "thr_GlobalLock.h"
#include "typ_ArchCompTable.h"
#include "uti_FormatMap.h"
#include "uti_Spawn.h"
#include "uti_SystemException.h"
#include "utl_BlockPool.h"

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#endif

namespace
{
/// A user's program with a user's library, built without optimisation: what is not inlined has to be there.
class AcrossLibraries : public testing::Test
{
protected:
    AcrossLibraries() { omu_initialize(m_count); }
    ~AcrossLibraries() override { omu_finalize(m_count); }

private:
    int m_count = 0;
};

template <class E> bool IsCaughtAs(second::Error error)
{
    try {
        second::Throw(error);
    } catch (const E&) {
        return true;
    } catch (...) {
    }
    return false;
}

TEST_F(AcrossLibraries, Exceptions_are_caught_by_their_class_and_its_bases)
{
    using second::Error;
    const struct
    {
        Error error;
        bool argument, type, command, system, text, nex, length;
    } rows[] = {
        {Error::ARGUMENT, true, true, true, false, false, true, false},
        {Error::RANGE, false, false, true, false, false, true, false},
        {Error::SYSTEM, false, false, false, true, false, true, false},
        {Error::TEXT, false, false, false, false, true, true, false},
        {Error::TOO_LONG, false, false, false, false, false, false, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(static_cast<int>(row.error));
        EXPECT_EQ(IsCaughtAs<omu_ArgTypeErrorException>(row.error), row.argument);
        EXPECT_EQ(IsCaughtAs<omu_TypeErrorException>(row.error), row.type);
        EXPECT_EQ(IsCaughtAs<nex_CommandException>(row.error), row.command);
        EXPECT_EQ(IsCaughtAs<uti_SystemException>(row.error), row.system);
        EXPECT_EQ(IsCaughtAs<nex_TextException>(row.error), row.text);
        EXPECT_EQ(IsCaughtAs<nex_Exception>(row.error), row.nex);
        EXPECT_EQ(IsCaughtAs<std::length_error>(row.error), row.length);
        EXPECT_TRUE(IsCaughtAs<std::exception>(row.error));
    }
    EXPECT_EQ(second::Caught([] { omu_ArgTypeErrorException(1, "string", "int", "P").Throw("user", 1); }),
              "argument P[0]; found int, expecting string");
    EXPECT_EQ(second::Caught([] { uti_SystemException("read", 7).Throw("user", 1); }), "system 7");
    EXPECT_EQ(second::Caught([] { nex_TextException("mine").Throw("user", 1); }), "text mine");
    EXPECT_EQ(second::Caught([] { throw std::runtime_error("standard"); }), "other");
}

std::array<const void*, 6> Instances()
{
    return {&omi_Singleton<omu_TextRepr>::Instance(),        &omi_Singleton<omu_SymbolicConstantTable>::Instance(),
            &omi_Singleton<thr_GlobalLock>::Instance(),      &thr_ThreadSingleton<cls_UidCatalog>::Instance(),
            &thr_ThreadSingleton<uti_FormatMap>::Instance(), &thr_ThreadSingleton<second_Shared>::Instance()};
}

TEST_F(AcrossLibraries, All_see_the_same_instances_on_every_thread)
{
    const std::array<const void*, 6> here = Instances();
    EXPECT_EQ(here, second::Instances());
    std::thread([&] {
        const std::array<const void*, 6> there = second::Instances();
        EXPECT_EQ(there, Instances());
        EXPECT_TRUE(std::equal(here.begin(), here.begin() + 3, there.begin())) << "of the process";
        for (int i = 3; i < 6; ++i) {
            EXPECT_NE(here[i], there[i]) << "of the thread: " << i;
        }
    }).join();
}

#if defined(_WIN32)
DWORD WINAPI RunInstances(void*)
{
    second::Instances();
    return 0;
}
#endif

TEST_F(AcrossLibraries, A_threads_instances_go_with_it_whoever_started_it)
{
    const int before = second_Shared::Destroyed();
    std::thread([] { second::Instances(); }).join();
    EXPECT_EQ(second_Shared::Destroyed(), before + 1);
#if defined(_WIN32)
    const HANDLE thread = CreateThread(nullptr, 0, RunInstances, nullptr, 0, nullptr);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
    EXPECT_EQ(second_Shared::Destroyed(), before + 2);
#endif
}

TEST_F(AcrossLibraries, Values_and_type_tables_are_shared)
{
    const std::unique_ptr<omu_Primitive> value(second::NewTuple());
    EXPECT_EQ(value->AsString(0), "(1, 'a', [2.5])");
    EXPECT_TRUE(nex_canDynamicCastPtr<omu_PrimTuple>(value.get()));
    EXPECT_TRUE(value->IsA(omu_PrimTuple::TypeId()));
    EXPECT_EQ(typ_ArchCompTable::Find(second::ROW), nullptr);
    second::Register();
    EXPECT_EQ(typ_ArchCompTable::GetName(second::ROW), "second_Class");
    EXPECT_TRUE(typ_ArchCompTable::IsParent(second::ROW, omu_Primitive::TypeId()));
}

TEST_F(AcrossLibraries, Template_instances_and_constants_are_there_for_a_program_that_inlines_nothing)
{
    cls_ArrayPrim<int> array;
    array.Append(3);
    array.Get(0) += 1;
    EXPECT_EQ(array.ConstGet(0) + array.Size(), 5);
    omu_PrimDictionary<int> dictionary;
    dictionary.Put(1, 7);
    EXPECT_TRUE(dictionary.IsMember(7) && dictionary.Length() == 1);
    EXPECT_EQ(omu_PrimBool<2>(true).AsString(0), "ON");
    EXPECT_TRUE(omu_PrimBool<1>(true).GetValue());
    EXPECT_EQ(std::min(uti_Spawn::NO_STATUS, uti_Spawn::DETACHED_STATUS), -1);
    EXPECT_EQ(std::max(cow_String::MAX_LENGTH, utl_BlockPool::MAX_POOLED_BYTES), 0x7FFFFFFFu);
}
} // namespace
