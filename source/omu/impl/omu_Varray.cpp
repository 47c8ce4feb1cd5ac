#include "omu_Varray.h"

#include "bio_Ifilter.h"
#include "bio_Ofilter.h"
#include "omu_Growth_detail.h"
#include "pnt_PrettyPrint.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <utility>

template <omu_Word T> omu_Varray<T>::omu_Varray() : omu_Varray(this->DEFAULT_SIZE, this->DEFAULT_GROWTH) {}

template <omu_Word T> omu_Varray<T>::omu_Varray(unsigned int size, double growth) : omu_WordArray<T>(size, growth)
{
    if (!omu_Reallocate(this->m_values, size)) {
        throw std::bad_alloc();
    }
    this->m_capacity = size;
}

template <omu_Word T> omu_Varray<T>::~omu_Varray()
{
    std::free(this->m_values);
}

template <omu_Word T> T& omu_Varray<T>::operator[](unsigned int i)
{
    if (i > this->m_length) {
        VEXCRT::_assert("i<=length", "source/include/omu_Varray", __LINE__);
    }
    if (i < this->m_length || (i == this->m_length && Add(T{}))) {
        return this->m_values[i];
    }
    return this->m_values[this->m_length] = T{};
}

template <omu_Word T> unsigned int omu_Varray<T>::FindFirst(const T& value) const
{
    const T* const begin = this->m_values;
    return static_cast<unsigned int>(std::find(begin, begin + this->m_length, value) - begin);
}

template <omu_Word T> unsigned int omu_Varray<T>::FindLast(const T& value) const
{
    unsigned int i = this->m_length;
    while (i != 0 && this->m_values[i - 1] != value) {
        --i;
    }
    return i != 0 ? i - 1 : this->m_length;
}

template <omu_Word T> T* omu_Varray<T>::GetAll() const
{
    T* const copy = new (std::nothrow) T[this->m_length];
    if (copy != nullptr) {
        std::copy_n(this->m_values, this->m_length, copy);
    }
    return copy;
}

template <omu_Word T> bool omu_Varray<T>::SetSize(unsigned int n)
{
    if (n <= this->m_capacity || !omu_Reallocate(this->m_values, n)) {
        return false;
    }
    this->m_capacity = n;
    return true;
}

template <omu_Word T> bool omu_Varray<T>::Grow()
{
    return SetSize(omu_GrownSize(this->m_capacity, this->m_growthFactor));
}

template <omu_Word T> bool omu_Varray<T>::Add(T value)
{
    if (this->m_capacity <= this->m_length + 1 && !Grow()) {
        return false;
    }
    this->m_values[this->m_length++] = value;
    return true;
}

template <omu_Word T> bool omu_Varray<T>::Insert(unsigned int pos, T value)
{
    const unsigned int i = pos;
    if (i > this->m_length || !Add(value)) {
        return false;
    }
    T* const last = this->m_values + this->m_length - 1;
    const T* const j = std::copy_backward(this->m_values + i, last, last + 1) - 1;
    if (j != this->m_values + i) {
        VEXCRT::_assert("j==i", "source/include/omu_Varray", __LINE__);
    }
    this->m_values[i] = value;
    return true;
}

template <omu_Word T> bool omu_Varray<T>::Set(unsigned int pos, T value)
{
    if (pos >= this->m_length) {
        return false;
    }
    this->m_values[pos] = value;
    return true;
}

template <omu_Word T> T omu_Varray<T>::Pop()
{
    return this->m_length == 0 ? T{} : this->m_values[--this->m_length];
}

template <omu_Word T> bool omu_Varray<T>::Remove(unsigned int pos, T* removed)
{
    if (pos >= this->m_length) {
        return false;
    }
    T* const place = this->m_values + pos;
    if (removed != nullptr) {
        *removed = *place;
    }
    std::copy(place + 1, this->m_values + this->m_length, place);
    --this->m_length;
    return true;
}

template <omu_Word T> void omu_Varray<T>::ClearAll()
{
    this->m_length = 0;
}

bio_Ifilter& operator>>(bio_Ifilter& in, omu_Varray<unsigned int>& values)
{
    const omu_StreamedSizes sizes = omu_ReadSizes(in, sizeof(unsigned int));
    omu_Varray<unsigned int> read(0, sizes.growthFactor);
    for (std::uint32_t left = sizes.count; left != 0;) {
        const std::uint32_t step = std::clamp<std::uint32_t>(in.SafeReserve(left, sizeof(unsigned int)), 1, left);
        omu_MakeRoom(read, step);
        in.ReadBytes(read.m_values + read.m_length, step * sizeof(unsigned int));
        read.m_length += step;
        left -= step;
    }
    read.SetSize(sizes.AllowedCapacity(values.m_initialSize));
    std::swap(values.m_growthFactor, read.m_growthFactor);
    std::swap(values.m_length, read.m_length);
    std::swap(values.m_capacity, read.m_capacity);
    std::swap(values.m_values, read.m_values);
    return in;
}

bio_Ofilter& operator<<(bio_Ofilter& out, const omu_Varray<unsigned int>& values)
{
    out << values.m_initialSize << values.m_growthFactor << values.m_capacity << values.m_length;
    out.WriteBytes(values.m_values, values.m_length * sizeof(unsigned int));
    return out;
}

pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const omu_Varray<unsigned int>& values)
{
    out.Open("omu_Varray");
    for (unsigned int i = 0; i < values.Length(); ++i) {
        out.Field(values[i]);
    }
    out.Close();
    return out;
}

template class omu_Varray<unsigned int>;
template class omu_Varray<void*>;
