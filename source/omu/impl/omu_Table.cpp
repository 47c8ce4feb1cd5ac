#include "omu_Table.h"

#include "bio_Ifilter.h"
#include "bio_Ofilter.h"
#include "omu_Growth_detail.h"
#include "omu_Varray.h"
#include "pnt_PrettyPrint.h"

#include <bit>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

template <omu_Word T> omu_Table<T>::omu_Table() : omu_Table(this->DEFAULT_SIZE, this->DEFAULT_GROWTH) {}

template <omu_Word T> omu_Table<T>::omu_Table(unsigned int size, double growth) : omu_SortedEntries<T>(size, growth)
{
    if (!NewEntries(this->m_entries, size)) {
        throw std::bad_alloc();
    }
    this->m_capacity = size;
}

template <omu_Word T> omu_Table<T>::~omu_Table()
{
    std::free(this->m_entries - this->FRONT);
}

template <omu_Word T> bool omu_Table<T>::NewEntries(Entry*& entries, unsigned int capacity) noexcept
{
    entries = nullptr;
    const bool isThere = omu_Reallocate(entries, capacity, omu_Table::FRONT);
    if (isThere) {
        std::fill_n(entries - omu_Table::FRONT, omu_Table::FRONT, Entry{});
    }
    return isThere;
}

template <omu_Word T> T omu_Table<T>::operator[](unsigned int key) const
{
    T value{};
    if (!this->Get(key, &value)) {
        VEXCRT::_assert("found", "source/include/omu_Table", __LINE__);
    }
    return value;
}

template <omu_Word T> T& omu_Table<T>::operator[](unsigned int key)
{
    unsigned int pos;
    if (!this->FindEntry(key, &pos) && !(key != 0 && Add(key, T{}))) {
        pos = this->m_length;
        this->m_entries[pos].value = T{};
    }
    return this->m_entries[pos].value;
}

template <omu_Word T> bool omu_Table<T>::GetEntries(unsigned int* count, unsigned int** keys, T** values) const
{
    *count = this->m_length;
    if (this->m_length == 0) {
        return false;
    }
    std::unique_ptr<unsigned int[]> allKeys(new (std::nothrow) unsigned int[this->m_length]);
    std::unique_ptr<T[]> allValues(values != nullptr ? new (std::nothrow) T[this->m_length] : nullptr);
    if (allKeys == nullptr || (values != nullptr && allValues == nullptr)) {
        return false;
    }
    for (unsigned int i = 0; i < this->m_length; ++i) {
        allKeys[i] = this->m_entries[i].index_;
        if (values != nullptr) {
            allValues[i] = this->m_entries[i].value;
        }
    }
    *keys = allKeys.release();
    if (values != nullptr) {
        *values = allValues.release();
    }
    return true;
}

template <omu_Word T> void omu_Table<T>::GetKeys(omu_Varray<unsigned int>* keys) const
{
    for (unsigned int i = 0; i < this->m_length; ++i) {
        keys->Add(this->m_entries[i].index_);
    }
}

template <omu_Word T> bool omu_Table<T>::SetSize(unsigned int n)
{
    if (n <= this->m_capacity || !omu_Reallocate(this->m_entries, n, this->FRONT)) {
        return false;
    }
    this->m_capacity = n;
    return true;
}

template <omu_Word T> bool omu_Table<T>::Grow()
{
    return SetSize(omu_GrownSize(this->m_capacity, this->m_growthFactor));
}

template <omu_Word T> void omu_Table<T>::ShiftUp(unsigned int pos, Entry entry) noexcept
{
    Entry* const place = this->m_entries + pos;
    std::memmove(place + 1, place, (this->m_length - pos) * sizeof(Entry));
    *place = entry;
}

template <omu_Word T> bool omu_Table<T>::InsertEntry(unsigned int pos, Entry entry)
{
    if (pos > this->m_length) {
        return false;
    }
    this->m_ranks.SwitchOff();
    ShiftUp(pos, entry);
    this->NoteReach();
    return true;
}

template <omu_Word T> bool omu_Table<T>::Insert(unsigned int key, T value)
{
    unsigned int pos;
    if (this->FindEntry(key, &pos) || key == 0 || (this->m_length + 1 >= this->m_capacity && !Grow())) {
        return false;
    }
    ShiftUp(pos, {key, value});
    const unsigned int length = ++this->m_length;
    if (length == 1 || this->m_ranks.IsOn()) {
        this->m_ranks.Insert(key, length);
    } else if (std::has_single_bit(length)) { // often enough to notice that the gaps were filled, at O(1) for each key
        this->m_ranks.Build(this->m_entries, length);
    }
    this->NoteReach();
    return true;
}

template <omu_Word T> bool omu_Table<T>::Set(unsigned int key, T value)
{
    const Entry* const found = this->FindKey(key);
    if (found != nullptr) {
        this->m_entries[found - this->m_entries].value = value;
    }
    return found != nullptr;
}

template <omu_Word T> bool omu_Table<T>::Remove(unsigned int key)
{
    unsigned int pos;
    return this->FindEntry(key, &pos) && RemoveEntry(pos);
}

template <omu_Word T> bool omu_Table<T>::RemoveEntry(unsigned int pos)
{
    if (pos >= this->m_length) {
        return false;
    }
    Entry* const place = this->m_entries + pos;
    const unsigned int key = place->index_;
    std::memmove(place, place + 1, (this->m_length - pos - 1) * sizeof(Entry));
    this->m_ranks.Remove(key, --this->m_length);
    this->NoteReach();
    return true;
}

template <omu_Word T> bool omu_Table<T>::ClearAll()
{
    if (this->m_length == 0) {
        return false;
    }
    this->m_length = 0;
    this->m_ranks.SwitchOff();
    Entry* fresh;
    if (NewEntries(fresh, this->m_initialSize)) { // otherwise the old array serves on
        std::free(std::exchange(this->m_entries, fresh) - this->FRONT);
        this->m_capacity = this->m_initialSize;
    }
    this->NoteReach();
    return true;
}

template <omu_Word T> void omu_Table<T>::Swap(omu_Table& other) noexcept
{
    std::swap(this->m_growthFactor, other.m_growthFactor);
    std::swap(this->m_capacity, other.m_capacity);
    std::swap(this->m_length, other.m_length);
    std::swap(this->m_entries, other.m_entries);
    std::swap(this->m_ranks, other.m_ranks);
    std::swap(this->m_base, other.m_base);
    std::swap(this->m_reach, other.m_reach);
    std::swap(this->m_runLength, other.m_runLength);
}

bio_Ifilter& operator>>(bio_Ifilter& in, omu_Table<unsigned int>& table)
{
    constexpr std::size_t ENTRY_BYTES = 8;
    const omu_StreamedSizes sizes = omu_ReadSizes(in, ENTRY_BYTES);
    omu_Table<unsigned int> read(0, sizes.growthFactor);
    unsigned int last = 0;
    for (std::uint32_t left = sizes.count; left != 0; --left) {
        if (read.m_length + 1 >= read.m_capacity) {
            omu_MakeRoom(read, in.SafeReserve(left, ENTRY_BYTES));
        }
        const std::uint64_t offset = in.Offset();
        unsigned int key;
        unsigned int value;
        in >> key >> value;
        if (key <= last) {
            in.FailAt("table keys that do not ascend", offset);
        }
        last = key;
        read.Add(key, value);
    }
    read.SetSize(sizes.AllowedCapacity(table.m_initialSize));
    table.Swap(read);
    return in;
}

bio_Ofilter& operator<<(bio_Ofilter& out, const omu_Table<unsigned int>& table)
{
    out << table.m_initialSize << table.m_growthFactor << table.m_capacity << table.m_length;
    for (unsigned int i = 0; i < table.m_length; ++i) {
        out << table.m_entries[i].index_ << table.m_entries[i].value;
    }
    return out;
}

pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const omu_Table<unsigned int>& table)
{
    out.Open("omu_Table");
    unsigned int key;
    unsigned int value;
    for (unsigned int i = 0; table.GetEntry(i, key, value); ++i) {
        out.Field(key);
        out << ": " << value;
    }
    out.Close();
    return out;
}

template class omu_Table<unsigned int>;
template class omu_Table<void*>;
