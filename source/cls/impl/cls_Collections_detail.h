#pragma once

#include "cls_CollectionNames.h"
#include "cls_MementoRead.h"
#include "cls_MementoWrite.h"
#include "cls_WriteVisitor.h"
#include "cow_String.h"

#include <cstdint>
#include <type_traits>

// The operations of the mementos that are named after an element type, chosen by it.
namespace cls_detail
{
/// The selector with which a memento gives the collection that its record is.
inline constexpr std::uint32_t RECORD_ITSELF = cls_WriteVisitor::NO_ELEMENT;

/// The agent of the list that the record is; both mementos make one.
template <class T, class Memento> cls_AgentListPrim<T>* MakeListAgent(Memento& record)
{
    if constexpr (std::is_same_v<T, bool>) {
        return record.MakeBoolListAgent();
    } else if constexpr (std::is_same_v<T, double>) {
        return record.MakeDoubleListAgent();
    } else if constexpr (std::is_same_v<T, float>) {
        return record.MakeFloatListAgent();
    } else if constexpr (std::is_same_v<T, int>) {
        return record.MakeIntListAgent();
    } else if constexpr (std::is_same_v<T, cow_String>) {
        return record.MakeStringListAgent();
    } else {
        static_assert(std::is_same_v<T, std::uint32_t>);
        return record.MakeUnsignedListAgent();
    }
}

/// The writer of the list that the record is.
template <class T> cls_WriteListPrim<T>* MakeListWriter(cls_MementoWrite& record)
{
    if constexpr (std::is_same_v<T, double>) {
        return record.MakeDoubleListWriter(RECORD_ITSELF);
    } else if constexpr (std::is_same_v<T, float>) {
        return record.MakeFloatListWriter(RECORD_ITSELF);
    } else {
        static_assert(std::is_same_v<T, int>);
        return record.MakeIntListWriter(RECORD_ITSELF);
    }
}

/// The reader of the list that the record is.
template <class T> cls_ReadListPrim<T>* MakeListReader(cls_MementoRead& record)
{
    if constexpr (std::is_same_v<T, double>) {
        return record.MakeDoubleListReader(RECORD_ITSELF);
    } else if constexpr (std::is_same_v<T, float>) {
        return record.MakeFloatListReader(RECORD_ITSELF);
    } else {
        static_assert(std::is_same_v<T, int>);
        return record.MakeIntListReader(RECORD_ITSELF);
    }
}
} // namespace cls_detail
