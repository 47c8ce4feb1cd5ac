#pragma once

#include "VEXCRT.h"
#include "VEXomu_export.h"
#include "omu_Varray.h"

#include <cstdint>
#include <memory>
#include <utility>

/// Growable array of objects of class V, each on its own: adding and removing moves none.
///
/// Ownership:  owns its objects.
/// Threads:    one thread at a time; any number may read while none writes.
/// Complexity: Add amortised O(1); Insert and Remove O(objects behind).
/// Errors:     as omu_Varray; an object that cannot be added is deleted.
/// References: an object stays where it is until it is removed.
template <class V> class omu_ObjVarray
{
public:
    omu_ObjVarray();
    omu_ObjVarray(unsigned int size, double growth);
    omu_ObjVarray(const omu_ObjVarray&) = delete;
    omu_ObjVarray& operator=(const omu_ObjVarray&) = delete;
    virtual ~omu_ObjVarray();

    /// 0: the class has no row in the run-time type tables.
    virtual std::uint32_t DynTypeId() const;

    unsigned int Length() const;
    /// The object; null outside the array.
    V* Find(unsigned int i) const;
    /// The object; outside the array an assertion is reported and the result is null.
    V* operator[](unsigned int i) const;

    bool Add(std::unique_ptr<V> object);
    /// Inserts before the object at `i`; at Length() appends.
    bool Insert(unsigned int i, std::unique_ptr<V> object);
    /// Removes and deletes the object at `i`.
    bool Remove(unsigned int i);

private:
    omu_Varray<void*> m_objects; // each an owned V
};

template <class V> omu_ObjVarray<V>::omu_ObjVarray() = default;
template <class V> omu_ObjVarray<V>::omu_ObjVarray(unsigned int size, double growth) : m_objects(size, growth) {}

template <class V> omu_ObjVarray<V>::~omu_ObjVarray()
{
    while (m_objects.Length() != 0) {
        delete static_cast<V*>(m_objects.Pop());
    }
}

template <class V> std::uint32_t omu_ObjVarray<V>::DynTypeId() const
{
    return 0;
}

template <class V> unsigned int omu_ObjVarray<V>::Length() const
{
    return m_objects.Length();
}

template <class V> V* omu_ObjVarray<V>::Find(unsigned int i) const
{
    void* object = nullptr;
    m_objects.Get(i, &object);
    return static_cast<V*>(object);
}

template <class V> V* omu_ObjVarray<V>::operator[](unsigned int i) const
{
    if (i >= Length()) {
        VEXCRT::_assert("i < length_", "source/include/omu_ObjVarray", __LINE__);
    }
    return Find(i);
}

template <class V> bool omu_ObjVarray<V>::Add(std::unique_ptr<V> object)
{
    return Insert(Length(), std::move(object));
}

template <class V> bool omu_ObjVarray<V>::Insert(unsigned int i, std::unique_ptr<V> object)
{
    const bool added = m_objects.Insert(i, object.get());
    if (added) {
        static_cast<void>(object.release());
    }
    return added;
}

template <class V> bool omu_ObjVarray<V>::Remove(unsigned int i)
{
    void* object = nullptr;
    const bool removed = m_objects.Remove(i, &object);
    delete static_cast<V*>(object);
    return removed;
}

extern template class VEXOMU_API omu_ObjVarray<omu_Varray<unsigned int>>;
