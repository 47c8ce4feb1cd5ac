#pragma once

#include "VEXomu_export.h"
#include "omu_SortedEntries.h"

class bio_Ifilter;
class bio_Ofilter;
class pnt_PrettyPrint;
template <omu_Word T> class omu_Table;
template <omu_Word T> class omu_Varray;

/// Initial size, growth factor (64-bit float), capacity, count, then key and value of each entry in key order; all but
/// the growth factor 32-bit. The initial size that is read is passed over, the capacity a hint. Throws nex_TextException
/// for a growth factor not above 1 and for keys that do not ascend from 1 on; the table is then as it was.
VEXOMU_API bio_Ifilter& operator>>(bio_Ifilter& in, omu_Table<unsigned int>& table);
VEXOMU_API bio_Ofilter& operator<<(bio_Ofilter& out, const omu_Table<unsigned int>& table);
/// The pairs, "<key>: <value>" on a line each.
VEXOMU_API pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const omu_Table<unsigned int>& table);

/// Sorted table from positive numbers, such as labels, to one word each; tuned for nearly consecutive keys. Key 0 is
/// not valid.
///
/// Ownership:  owns its entries, not what a pointer value points to.
/// Threads:    one thread at a time; any number may read while none writes.
/// Complexity: look-ups O(1) while at least one number in four between the first and the last key is a key, positions
///             O(log numbers left out); otherwise O(log n) at worst. Adding at the end amortised O(1), other insertions
///             and removals O(entries behind). A key takes 4 bytes beside its value, whose room is then one for each
///             number between the first and the last key.
/// Errors:     operations give false when a key is missing or there already, a position is outside, or memory is short;
///             the table is then as it was. A table of size 0, or one that is full and has a growth factor of 1 or less,
///             takes no entry. Only the constructors throw, std::bad_alloc.
/// References: what operator[] gives dies with the next insertion or removal, and when memory is short with any change.
/// Example:    omu_Table<unsigned int> rows; rows.Add(label, row); if (rows.Get(label, &row)) { use(row); }
/// Avoid for:  large sets of keys that come in no order; a hash table inserts them faster.
template <omu_Word T> class omu_Table : public omu_SortedEntries<T>
{
public:
    using typename omu_SortedEntries<T>::Entry;

    /// Size 16, growth factor 2.
    omu_Table();
    /// Room for `size` entries, which ClearAll returns to. One of them always stays free.
    omu_Table(unsigned int size, double growth);
    ~omu_Table();

    /// The value of `key`; a missing key is an assertion and gives the zero value.
    T operator[](unsigned int key) const;

    /// Copies the keys, and the values when `values` is not null, into new arrays that the caller frees with delete[].
    /// Always sets `count`; false, and no arrays, when the table is empty or memory is short.
    bool GetEntries(unsigned int* count, unsigned int** keys, T** values) const;
    /// Appends all keys in order.
    void GetKeys(omu_Varray<unsigned int>* keys) const;

    /// The value of `key`, added as zero first when it is missing. When it cannot be added the result is a spare word.
    T& operator[](unsigned int key);
    /// Makes room for `n` entries; false when there is as much already.
    bool SetSize(unsigned int n);
    /// SetSize(capacity * growth factor).
    bool Grow();
    /// False when the key is there.
    [[gnu::always_inline]] bool Add(unsigned int key, T value)
    {
        return this->Append(key, value) || Insert(key, value);
    }
    /// Overwrites the value of a key; false when it is missing.
    bool Set(unsigned int key, T value);
    bool Remove(unsigned int key);
    bool RemoveEntry(unsigned int pos);
    /// Writes an entry at `pos`, 0 to Length(), shifting the others up, without counting it: the last one is then out
    /// of sight. A building block of Add; nothing checks that the keys still ascend.
    bool InsertEntry(unsigned int pos, Entry entry);
    /// Removes all entries and returns to the initial size; false when there are none.
    bool ClearAll();

private:
    friend VEXOMU_API bio_Ifilter& operator>>(bio_Ifilter& in, omu_Table<unsigned int>& table);
    friend VEXOMU_API bio_Ofilter& operator<<(bio_Ofilter& out, const omu_Table<unsigned int>& table);

    static constexpr std::uint64_t LARGEST = 4294967295U;
    /// More than one value for each key, so that the cells of a few numbers left out find room as well.
    static unsigned int RoomFor(unsigned int capacity) noexcept
    {
        return static_cast<unsigned int>(std::min(capacity + std::uint64_t{capacity} / 8, LARGEST));
    }
    /// The numbers that `length` keys may be spread over while the values stand direct.
    static std::uint64_t MostNumbers(unsigned int length) noexcept { return std::uint64_t{4} * length + 64; }
    /// How many numbers there are from `first`, not 0, to the largest.
    static unsigned int NumbersFrom(unsigned int first) noexcept { return 0 - first; }

    /// Makes room for keys and values, not less than there is; false, and nothing done, when memory is short.
    bool MakeRoom(unsigned int capacity, unsigned int room) noexcept;
    /// Makes cells up to that of a key not below the base; false when that would be too many, or memory is short.
    bool CoverBehind(unsigned int key) noexcept;
    /// Makes packed values direct if the keys are dense, with cells for up to `before` numbers below them.
    void Spread(unsigned int before) noexcept;
    void Pack() noexcept;
    /// Lets the cell hold the mark as a value; false, and nothing done, when memory is short.
    bool NoteMark(unsigned int offset) noexcept;
    /// Where the value of `key` may be changed to any other, or null.
    T* FindPlace(unsigned int key);
    bool Insert(unsigned int key, T value);
    void Swap(omu_Table& other) noexcept;
    void ShiftUp(unsigned int pos, Entry entry) noexcept;
};

extern template class VEXOMU_API omu_Table<unsigned int>;
extern template class VEXOMU_API omu_Table<void*>;
