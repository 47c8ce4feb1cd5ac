#include "cls_xp1DArrayList.h"

#include "cls_CollectionReaders.h"
#include "cls_CollectionType.h"
#include "cls_CollectionWriters.h"
#include "cls_Collections_detail.h"
#include "cls_Module.h"
#include "cls_ReadVisitor.h"
#include "nex_TextException.h"

#include <memory>

namespace
{
[[noreturn]] void Fail(const char* text, int line)
{
    nex_TextException(text).Throw("source/include/cls_xp1DArrayList", line);
}
} // namespace

template <cls_detail::ArrayListItem T>
cls_xp1DArrayList<T>::cls_xp1DArrayList(const cls_ReadVisitor& visitor) : m_uid(visitor.GetUid())
{
    if (visitor.Memento() != nullptr) {
        const std::unique_ptr<cls_ReadListPrim<T>> reader(cls_detail::MakeListReader<T>(*visitor.Memento()));
        if (!reader) {
            Fail("In cls_xp1DArrayList::cls_xp1DArrayList() Missing reader.", __LINE__);
        }
        while (reader->Next()) {
            m_arrays.Append(reader->Array());
        }
    }
}

template <cls_detail::ArrayListItem T> void cls_xp1DArrayList<T>::DBWrite(const cls_WriteVisitor& visitor) const
{
    if (visitor.StartWrite(cls_TypeIdOf(cls_XIP_1D_ARRAY_LIST_ROW), m_uid) == 0) {
        return;
    }
    visitor.CheckCollectionType(cls_CollectionTypeFix(cls_COLLECTION_ARRAY, static_cast<T*>(nullptr)));
    const std::unique_ptr<cls_WriteListPrim<T>> writer(cls_detail::MakeListWriter<T>(*visitor.Memento()));
    if (!writer) {
        Fail("In cls_xp1DArrayList::DBWrite() Missing writer.", __LINE__);
    }
    for (const cow_1DArray<T>& array : m_arrays) {
        writer->AppendArray(array);
    }
}

template class cls_xp1DArrayList<double>;
template class cls_xp1DArrayList<float>;
template class cls_xp1DArrayList<int>;
