#pragma once

#include "cow_1DArray.h"

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <stdexcept>

/// Two-dimensional array, row-major, that copies share until one side writes.
///
/// Ownership:  owns its items; copies share them until one side writes.
/// Threads:    one thread at a time; distinct copies may live on distinct threads.
/// Complexity: copy and reading an item O(1); the first write to a shared array O(items), counted as cow_Sequence<T>.
/// Errors:     std::length_error for more items than can be counted; std::bad_alloc. Writing outside reports an
///             assertion and changes nothing.
/// References: pointers and references die with the next write or the last holder.
template <class T> class cow_2DArray
{
public:
    using cow_Relocatable = cow_2DArray;
    using value_type = T;
    using const_iterator = const T*;

    cow_2DArray() noexcept = default;
    /// Value-initialised items; a negative size counts as 0.
    cow_2DArray(int rows, int columns) : m_rows(std::max(rows, 0)), m_columns(std::max(columns, 0))
    {
        const std::int64_t count = std::int64_t{m_rows} * m_columns;
        if (count > cow_Block::MAX_ITEMS) {
            throw std::length_error("cow_2DArray: more items than can be counted");
        }
        m_items.Resize(static_cast<int>(count));
    }
    cow_2DArray(const cow_2DArray& other) noexcept = default;
    cow_2DArray(cow_2DArray&& other) noexcept { Swap(other); }
    cow_2DArray& operator=(cow_2DArray other) noexcept
    {
        Swap(other);
        return *this;
    }
    ~cow_2DArray() = default;

    int Rows() const noexcept { return m_rows; }
    int Columns() const noexcept { return m_columns; }
    int Length() const noexcept { return m_items.Length(); }
    std::size_t size() const noexcept { return m_items.size(); }
    bool IsEmpty() const noexcept { return m_items.IsEmpty(); }

    /// All items row by row.
    const T* data() const noexcept { return m_items.data(); }
    const T* begin() const noexcept { return m_items.begin(); }
    const T* end() const noexcept { return m_items.end(); }
    const T& operator()(int row, int column) const
    {
        assert(row >= 0 && row < m_rows && column >= 0 && column < m_columns);
        return data()[Position(row, column)];
    }

    void Set(int row, int column, T value)
    {
        if (cow_Block::IsInside(row, m_rows) && cow_Block::IsInside(column, m_columns)) {
            std::swap(Write()[Position(row, column)], value);
        }
    }
    /// All items for writing, row by row; null when there are none.
    T* Write() { return m_items.Write(); }

    /// True when both hold the same items in the same memory, or both hold none at all.
    bool SharesWith(const cow_2DArray& other) const noexcept { return m_items.SharesWith(other.m_items); }

    friend bool operator==(const cow_2DArray& left, const cow_2DArray& right) = default;

    friend bio_Ofilter& operator<<(bio_Ofilter& out, const cow_2DArray& array)
    {
        out << static_cast<std::uint32_t>(array.m_rows) << static_cast<std::uint32_t>(array.m_columns);
        cow_detail::WriteItems(out, array.data(), array.size());
        return out;
    }

    friend bio_Ifilter& operator>>(bio_Ifilter& in, cow_2DArray& array)
    {
        const std::uint64_t start = in.Offset();
        cow_2DArray read;
        read.m_rows = static_cast<int>(in.ReadCount(0));
        read.m_columns = static_cast<int>(in.ReadCount(0));
        const std::int64_t count = std::int64_t{read.m_rows} * read.m_columns;
        if (count > cow_Block::MAX_ITEMS) {
            in.FailAt("rows and columns of more items than can be counted", start);
        }
        cow_detail::ReadItems(in, static_cast<std::uint32_t>(count), read.m_items);
        array = std::move(read);
        return in;
    }

    /// A row stands in a parenthesis of its own.
    friend pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const cow_2DArray& array)
    {
        out.Open("cow_2DArray");
        for (int row = 0; row < array.m_rows; ++row) {
            out.Open("row");
            for (int column = 0; column < array.m_columns; ++column) {
                cow_detail::DumpItem(out, array(row, column));
            }
            out.Close();
        }
        out.Close();
        return out;
    }

private:
    void Swap(cow_2DArray& other) noexcept
    {
        std::swap(m_items, other.m_items);
        std::swap(m_rows, other.m_rows);
        std::swap(m_columns, other.m_columns);
    }
    std::size_t Position(int row, int column) const noexcept
    {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(m_columns) + static_cast<std::size_t>(column);
    }

    // Invariant: the items are m_rows * m_columns, row by row.
    cow_1DArray<T> m_items;
    int m_rows = 0;
    int m_columns = 0;
};
