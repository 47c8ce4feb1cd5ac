#pragma once

#include "bio_Ifilter.h"
#include "bio_Ofilter.h"
#include "cow_Sequence.h"
#include "pnt_PrettyPrint.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <type_traits>

/// How the containers are streamed and dumped, once for all of them.
namespace cow_detail
{
/// Items whose bytes are their encoding; a bool's byte is checked one by one.
template <class T> inline constexpr bool isStreamedAsBytes = std::is_arithmetic_v<T> && !std::same_as<T, bool>;

/// Fewest bytes an item takes in a stream.
template <class T> inline constexpr std::size_t minStreamBytes = std::is_arithmetic_v<T> ? sizeof(T) : 1;

template <class T> void WriteItems(bio_Ofilter& out, const T* items, std::size_t count)
{
    static_assert(
        requires { out << items[0]; }, "the item type has no encoding");
    if constexpr (isStreamedAsBytes<T>) {
        out.WriteBytes(items, count * sizeof(T));
    } else {
        for (std::size_t i = 0; i < count; ++i) {
            out << items[i];
        }
    }
}

/// Appends `count` items, making room only for those the stream can still hold.
template <class T> void ReadItems(bio_Ifilter& in, std::uint32_t count, cow_Sequence<T>& items)
{
    static_assert(
        requires(T& item) { in >> item; } && !std::is_pointer_v<T>, "the item type cannot be read");
    while (count != 0) {
        const std::uint32_t step = std::clamp<std::uint32_t>(in.SafeReserve(count, sizeof(T)), 1, count);
        items.Reserve(items.Length() + static_cast<int>(step));
        if constexpr (isStreamedAsBytes<T>) {
            const int present = items.Length();
            items.Resize(present + static_cast<int>(step));
            in.ReadBytes(items.Write() + present, step * sizeof(T));
        } else {
            for (std::uint32_t i = 0; i < step; ++i) {
                T item{};
                in >> item;
                items.Append(std::move(item));
            }
        }
        count -= step;
    }
}

/// Dumps a value: one that has a dump of several lines starts them itself, any other stands on a line of its own.
template <class T> void DumpItem(pnt_PrettyPrint& out, const T& item)
{
    if constexpr (
        requires { item.DynTypeId(); } || requires { typename T::const_iterator; }) {
        out << item;
    } else {
        out.Field(item);
    }
}

template <class Items> void DumpItems(pnt_PrettyPrint& out, const char* name, const Items& items)
{
    out.Open(name);
    for (const auto& item : items) {
        DumpItem(out, item);
    }
    out.Close();
}
} // namespace cow_detail

template <class T> bio_Ofilter& operator<<(bio_Ofilter& out, const cow_Sequence<T>& items)
{
    out << static_cast<std::uint32_t>(items.size());
    cow_detail::WriteItems(out, items.data(), items.size());
    return out;
}

template <class T> bio_Ifilter& operator>>(bio_Ifilter& in, cow_Sequence<T>& items)
{
    const std::uint32_t count = in.ReadCount(cow_detail::minStreamBytes<T>);
    items.Clear();
    cow_detail::ReadItems(in, count, items);
    return in;
}
