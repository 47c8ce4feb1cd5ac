#pragma once

#include "Test.h"

/// The position of a virtual operation among those of its class, the destructor at 0, as GCC, Clang and MinGW lay them
/// out: the first word of a pointer to it is its offset in the table, plus 1, and the destructor has two entries.
template <class Operation> int SlotOf(Operation operation)
{
    std::ptrdiff_t word = 0;
    std::memcpy(&word, &operation, sizeof word);
    return static_cast<int>((word - 1) / static_cast<std::ptrdiff_t>(sizeof(void*))) - 1;
}

inline void ExpectSlots(int first, std::initializer_list<int> slots)
{
    int expected = first;
    for (const int slot : slots) {
        EXPECT_EQ(slot, expected++);
    }
}

/// An operation's position and the one it is promised to have.
template <class Operation> std::pair<int, int> At(int promised, Operation operation)
{
    return {SlotOf(operation), promised};
}

inline void ExpectSlots(std::initializer_list<std::pair<int, int>> actualAndPromised)
{
    for (const auto& [actual, promised] : actualAndPromised) {
        EXPECT_EQ(actual, promised);
    }
}
