#pragma once

#include <concepts>
#include <cstddef>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

/// Types whose objects may be moved by copying their bytes and forgetting the old place. A class joins by naming itself
/// (`using cow_Relocatable = ThisClass;`); classes derived from it do not join with it.
template <class T>
concept cow_BitwiseMovable = std::is_trivially_copyable_v<T> || std::same_as<typename T::cow_Relocatable, T>;

/// Moves `count` items to raw memory, which may overlap their own; where they stood is raw memory afterwards.
template <class T> void cow_Relocate(T* from, std::size_t count, T* to) noexcept
{
    static_assert(std::is_nothrow_move_constructible_v<T>,
                  "items of the containers are moved with no way back: give the type a noexcept move or copy");
    if constexpr (cow_BitwiseMovable<T>) {
        if (count != 0) {
            std::memmove(static_cast<void*>(to), static_cast<const void*>(from), count * sizeof(T));
        }
    } else {
        const auto moveOne = [from, to](std::size_t i) {
            ::new (static_cast<void*>(to + i)) T(std::move(from[i]));
            from[i].~T();
        };
        if (to < from) {
            for (std::size_t i = 0; i < count; ++i) {
                moveOne(i);
            }
        } else {
            for (std::size_t i = count; i-- > 0;) {
                moveOne(i);
            }
        }
    }
}
