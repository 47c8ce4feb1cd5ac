#include "omu_Table.h"

#include "bio_Ifilter.h"
#include "bio_Ofilter.h"
#include "omu_Growth_detail.h"
#include "omu_Varray.h"
#include "pnt_PrettyPrint.h"

#include <bit>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <new>
#include <utility>

template <omu_Word T> omu_Table<T>::omu_Table() : omu_Table(this->DEFAULT_SIZE, this->DEFAULT_GROWTH) {}

template <omu_Word T> omu_Table<T>::omu_Table(unsigned int size, double growth) : omu_SortedEntries<T>(size, growth)
{
    if (!MakeRoom(size, RoomFor(size))) {
        throw std::bad_alloc();
    }
}

template <omu_Word T> omu_Table<T>::~omu_Table()
{
    std::free(this->m_values);
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
    T* place = FindPlace(key);
    if (place == nullptr && key != 0 && Add(key, T{})) {
        place = FindPlace(key);
    }
    return place != nullptr ? *place : this->m_values[this->m_room] = T{};
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
        allKeys[i] = this->m_keys[i];
        if (values != nullptr) {
            allValues[i] = this->ValueAt(i);
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
        keys->Add(this->m_keys[i]);
    }
}

template <omu_Word T> bool omu_Table<T>::SetSize(unsigned int n)
{
    return n > this->m_capacity && MakeRoom(n, std::max(RoomFor(n), this->m_room));
}

template <omu_Word T> bool omu_Table<T>::Grow()
{
    return SetSize(omu_GrownSize(this->m_capacity, this->m_growthFactor));
}

template <omu_Word T> bool omu_Table<T>::MakeRoom(unsigned int capacity, unsigned int room) noexcept
{
    const std::uint64_t valueBytes = (std::uint64_t{room} + 1) * sizeof(T);
    const std::uint64_t bytes = valueBytes + (std::uint64_t{capacity} + 1) * sizeof(unsigned int);
    if (bytes > std::numeric_limits<std::size_t>::max()) {
        return false;
    }
    const std::size_t keysBefore = (std::size_t{this->m_room} + 1) * sizeof(T);
    void* const grown = std::realloc(this->m_values, static_cast<std::size_t>(bytes));
    if (grown == nullptr) {
        return false;
    }
    char* const keys = static_cast<char*>(grown) + valueBytes;
    if (this->m_length != 0) {
        std::memmove(keys, static_cast<char*>(grown) + keysBefore, this->m_length * sizeof(unsigned int));
    }
    this->m_values = static_cast<T*>(grown);
    this->m_keys = reinterpret_cast<unsigned int*>(keys);
    this->m_capacity = capacity;
    this->m_room = room;
    this->m_cells = this->IsDirect() ? std::min(room, NumbersFrom(this->m_base)) : 0;
    return true;
}

template <omu_Word T> bool omu_Table<T>::CoverBehind(unsigned int key) noexcept
{
    const unsigned int offset = key - this->m_base;
    if (offset >= this->m_reach) {
        const std::uint64_t numbers = std::uint64_t{offset} + 1;
        const std::uint64_t room = std::min<std::uint64_t>(numbers + numbers / 4, NumbersFrom(this->m_base));
        if (numbers > MostNumbers(this->m_length + 1) ||
            (offset >= this->m_cells && !MakeRoom(this->m_capacity, static_cast<unsigned int>(room)))) {
            return false;
        }
        std::fill(this->m_values + this->m_reach, this->m_values + offset, this->Mark());
        this->m_reach = offset + 1;
    }
    return true;
}

template <omu_Word T> void omu_Table<T>::Spread(unsigned int before) noexcept
{
    const unsigned int* keys = this->m_keys;
    const unsigned int* const end = keys + this->m_length;
    const unsigned int base = keys[0] - std::min(before, keys[0] - 1);
    const unsigned int reach = end[-1] - base + 1;
    const bool isDense = keys[0] != 0 && reach <= MostNumbers(this->m_length) + before;
    const bool ascends = isDense && std::adjacent_find(keys, end, std::greater_equal()) == end; // see InsertEntry
    if (!ascends || (reach > this->m_room && !MakeRoom(this->m_capacity, reach))) {
        return;
    }
    keys = this->m_keys;
    T* const values = this->m_values;
    for (unsigned int pos = 0; pos < this->m_length; ++pos) {
        if (values[pos] == this->Mark() && !NoteMark(keys[pos] - base)) {
            return Pack();
        }
    }
    unsigned int done = reach; // cells from here on are right; no value stands behind its own cell
    for (unsigned int pos = this->m_length; pos-- > 0;) {
        const unsigned int offset = keys[pos] - base;
        const T value = values[pos];
        std::fill(values + offset + 1, values + done, this->Mark());
        values[offset] = value;
        done = offset;
    }
    std::fill_n(values, done, this->Mark());
    this->m_base = base;
    this->m_reach = reach;
    this->m_cells = std::min(this->m_room, NumbersFrom(base));
}

template <omu_Word T> void omu_Table<T>::Pack() noexcept
{
    for (unsigned int pos = 0; this->IsDirect() && pos < this->m_length; ++pos) {
        this->m_values[pos] = this->ValueAt(pos);
    }
    this->m_base = this->m_reach = this->m_cells = 0;
    this->m_mayBeMark.clear();
}

template <omu_Word T> bool omu_Table<T>::NoteMark(unsigned int offset) noexcept
{
    const std::size_t word = offset / this->WORD_BITS;
    if (word >= this->m_mayBeMark.size()) {
        try {
            this->m_mayBeMark.resize(word + 1);
        } catch (const std::bad_alloc&) {
            return false;
        }
    }
    this->m_mayBeMark[word] |= std::uint64_t{1} << offset % this->WORD_BITS;
    return true;
}

template <omu_Word T> T* omu_Table<T>::FindPlace(unsigned int key)
{
    const T* found = this->FindValue(key);
    if (found != nullptr && this->IsDirect() && !NoteMark(key - this->m_base)) {
        Pack();
        found = this->FindValue(key);
    }
    return found != nullptr ? this->m_values + (found - this->m_values) : nullptr;
}

template <omu_Word T> void omu_Table<T>::ShiftUp(unsigned int pos, Entry entry) noexcept
{
    const auto insert = [&](auto* items, auto item) {
        std::memmove(items + pos + 1, items + pos, (this->m_length - pos) * sizeof(item));
        items[pos] = item;
    };
    insert(this->m_keys, entry.index_);
    if (this->IsDirect()) {
        this->m_values[entry.index_ - this->m_base] = entry.value;
    } else {
        insert(this->m_values, entry.value);
    }
}

template <omu_Word T> bool omu_Table<T>::InsertEntry(unsigned int pos, Entry entry)
{
    if (pos > this->m_length) {
        return false;
    }
    Pack();
    ShiftUp(pos, entry);
    return true;
}

template <omu_Word T> bool omu_Table<T>::Insert(unsigned int key, T value)
{
    unsigned int pos;
    if (this->FindEntry(key, &pos) || key == 0 || (this->m_length + 1 >= this->m_capacity && !Grow())) {
        return false;
    }
    const bool wasDirect = this->IsDirect();
    const bool hasCell =
        wasDirect && key >= this->m_base && CoverBehind(key) && (value != this->Mark() || NoteMark(key - this->m_base));
    if (!hasCell) {
        Pack();
    }
    ShiftUp(pos, {key, value});
    const unsigned int length = ++this->m_length;
    // Often enough to notice that the gaps were filled, at O(1) for each key.
    if (!this->IsDirect() && (wasDirect || std::has_single_bit(length))) {
        Spread(wasDirect ? length / 2 : 0); // more keys may follow before the first
    }
    return true;
}

template <omu_Word T> bool omu_Table<T>::Set(unsigned int key, T value)
{
    T* const place = FindPlace(key);
    if (place != nullptr) {
        *place = value;
    }
    return place != nullptr;
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
    const unsigned int key = this->m_keys[pos];
    const unsigned int behind = --this->m_length - pos;
    const auto remove = [&](auto* item) { std::memmove(item, item + 1, behind * sizeof(*item)); };
    remove(this->m_keys + pos);
    if (!this->IsDirect()) {
        remove(this->m_values + pos);
        return true;
    }
    const unsigned int offset = key - this->m_base;
    this->m_values[offset] = this->Mark();
    if (this->MayBeMark(offset)) {
        this->m_mayBeMark[offset / this->WORD_BITS] ^= std::uint64_t{1} << offset % this->WORD_BITS;
    }
    if (this->m_length == 0 || this->m_reach > 2 * MostNumbers(this->m_length)) {
        Pack();
    } else {
        this->m_reach = this->m_keys[this->m_length - 1] - this->m_base + 1;
    }
    return true;
}

template <omu_Word T> bool omu_Table<T>::ClearAll()
{
    if (this->m_length == 0) {
        return false;
    }
    this->m_length = 0;
    Pack();
    T* const old = std::exchange(this->m_values, nullptr);
    if (MakeRoom(this->m_initialSize, RoomFor(this->m_initialSize))) {
        std::free(old);
    } else {
        this->m_values = old; // serves on
    }
    return true;
}

template <omu_Word T> void omu_Table<T>::Swap(omu_Table& other) noexcept
{
    std::swap(this->m_growthFactor, other.m_growthFactor);
    std::swap(this->m_capacity, other.m_capacity);
    std::swap(this->m_length, other.m_length);
    std::swap(this->m_keys, other.m_keys);
    std::swap(this->m_values, other.m_values);
    std::swap(this->m_room, other.m_room);
    std::swap(this->m_base, other.m_base);
    std::swap(this->m_reach, other.m_reach);
    std::swap(this->m_cells, other.m_cells);
    this->m_mayBeMark.swap(other.m_mayBeMark);
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
        out << table.m_keys[i] << table.ValueAt(i);
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
