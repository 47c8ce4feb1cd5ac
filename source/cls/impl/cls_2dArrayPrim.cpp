#include "cls_2dArrayPrim.h"

#include "cls_CollectionType.h"
#include "cls_Module.h"
#include "cls_WriteVisitor.h"
#include "nex_TextException.h"

const cls_detail::ArrayTexts cls_detail::ARRAY_2D_TEXTS{
    .source = "source/include/cls_2dArrayPrim",
    .missingAgent = "In cls_2dArrayPrim::GetBuffer() Missing agent.",
    .constGet = "In cls_2dArrayPrim::ConstGet() Index out of range.",
    .get = "In cls_2dArrayPrim::Get() Index out of range.",
    .append = "In cls_2dArrayPrim::Append() Length out of range.",
    .appendBlock = "cls_2dArrayPrim::AppendBlock: Collection must be associated with a database for this method.",
    .appendBlockCount = "cls_2dArrayPrim::AppendBlock: Count out of range."};

template <class T> cls_2dArrayPrim<T>::cls_2dArrayPrim(const cls_2dArrayPrim& other) : cls_ArrayPrim<T>(other) {}

template <class T> cls_2dArrayPrim<T>::cls_2dArrayPrim(const cls_ReadVisitor& visitor) : cls_ArrayPrim<T>(visitor) {}

template <class T> cls_2dArrayPrim<T>::~cls_2dArrayPrim() = default;

template <class T> void cls_2dArrayPrim<T>::DBWrite(const cls_WriteVisitor& visitor) const
{
    if (visitor.StartWrite(TypeId(), this->Uid()) != 0) {
        visitor.CheckCollectionType(cls_CollectionTypeFix(cls_COLLECTION_2D_ARRAY, static_cast<T*>(nullptr)));
        this->DBWriteBody(visitor);
    }
}

template <class T> std::uint32_t cls_2dArrayPrim<T>::TypeId() noexcept
{
    return cls_TypeIdOf(cls_2D_ARRAY_PRIM_ROW);
}

template <class T> void* cls_2dArrayPrim<T>::Ctor(cls_ReadVisitor& visitor)
{
    return new cls_2dArrayPrim(visitor);
}

template <class T> void cls_2dArrayPrim<T>::SetRowLength(int columns)
{
    if (columns < 1) {
        nex_TextException("In cls_2dArrayPrim::SetRowLength() Row length out of range.")
            .Throw(cls_detail::ARRAY_2D_TEXTS.source, __LINE__);
    }
    m_rowLength = columns;
}

template <class T> void cls_2dArrayPrim<T>::AppendBlock(const T* values, int count)
{
    this->AppendBlockWith(values, count, cls_detail::ARRAY_2D_TEXTS);
}

template class cls_2dArrayPrim<double>;
template class cls_2dArrayPrim<float>;
