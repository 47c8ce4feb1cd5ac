#include "second.h"

#include "cls_UidCatalog.h"
#include "cow_String.h"
#include "nex_TextException.h"
#include "omu_ArgTypeErrorException.h"
#include "omu_PrimList.h"
#include "omu_PrimTuple.h"
#include "omu_RangeErrorException.h"
#include "omu_SymbolicConstantTable.h"
#include "omu_TextRepr.h"
#include "thr_GlobalLock.h"
#include "typ_ArchCompTable.h"
#include "uti_FormatMap.h"
#include "uti_SystemException.h"

#include <atomic>

template class thr_ThreadSingletonBase<second_Shared>;
template class thr_ThreadSingleton<second_Shared>;

namespace
{
std::atomic<int> destroyed = 0;
} // namespace

int second_Shared::Destroyed()
{
    return destroyed;
}

second_Shared::~second_Shared()
{
    ++destroyed;
}

void second::Throw(Error error)
{
    switch (error) {
    case Error::ARGUMENT:
        omu_ArgTypeErrorException(2, "string", "int", "Part").Throw("second", __LINE__);
        break;
    case Error::RANGE:
        omu_RangeErrorException("width", 1, omu_INCLUSIVE, 2, omu_INCLUSIVE).Throw("second", __LINE__);
        break;
    case Error::SYSTEM:
        uti_SystemException("read", 2).Throw("second", __LINE__);
        break;
    case Error::TEXT:
        nex_TextException("text").Throw("second", __LINE__);
        break;
    case Error::TOO_LONG:
        cow_String().Reserve(cow_String::MAX_LENGTH + 1);
    }
}

std::string second::Caught(void (*thrower)())
{
    try {
        thrower();
    } catch (const omu_ArgTypeErrorException& error) {
        return std::string("argument ") + error.what();
    } catch (const uti_SystemException& error) {
        return "system " + std::to_string(error.ErrorNumber());
    } catch (const nex_TextException& error) {
        return std::string("text ") + error.what();
    } catch (const nex_Exception& error) {
        return std::string("nex ") + error.what();
    } catch (...) {
        return "other";
    }
    return "nothing";
}

std::array<const void*, 6> second::Instances()
{
    return {&omi_Singleton<omu_TextRepr>::Instance(),        &omi_Singleton<omu_SymbolicConstantTable>::Instance(),
            &omi_Singleton<thr_GlobalLock>::Instance(),      &thr_ThreadSingleton<cls_UidCatalog>::Instance(),
            &thr_ThreadSingleton<uti_FormatMap>::Instance(), &thr_ThreadSingleton<second_Shared>::Instance()};
}

void second::Register()
{
    static const typ_Entry rows[] = {{}, {typ_VALUE, "second_Class", omu_Primitive::TypeId()}};
    typ_ArchCompTable::InsertEntry(ROW >> 16, {rows, 2});
}

omu_Primitive* second::NewTuple()
{
    omu_PrimList list(1);
    list.Put(2.5);
    auto* const tuple = new omu_PrimTuple(3);
    tuple->Put(1);
    tuple->Put(cow_String("a"));
    tuple->Put(list);
    return tuple;
}
