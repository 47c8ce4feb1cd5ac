#pragma once

#include "cow_CloneCount.h"

#include <memory>
#include <utility>

/// Clones an object through its virtual Copy().
template <class T> struct cow_Virtual
{
    static T* Clone(const T& object) { return object.Copy(); }
};

/// Copy-on-write holder of a polymorphic object that carries the count of its holders itself, so that a held object is
/// one allocation and its holder one pointer. T offers CowRaise(), CowLower() -> bool (last one) and CowIsUnique(), all
/// const, and the cloner's operation.
///
/// Ownership:  adopts a pointer; copies of the holder share the object; the last holder deletes it.
/// Threads:    as the count of T; distinct holders may live on distinct threads.
/// Complexity: copy O(1); Get() clones only while the object is shared.
/// References: ConstGet() and Get() die with the last holder; ConstGet() also when this holder's next Get() clones.
template <class T, class Cloner = cow_Virtual<T>> class cow_ArrayCOW
{
public:
    using cow_Relocatable = cow_ArrayCOW;

    cow_ArrayCOW() noexcept = default;
    /// Takes over `object` (may be null), which no other holder may hold.
    explicit cow_ArrayCOW(T* object) noexcept : m_object(object)
    {
        if (m_object != nullptr) {
            m_object->CowRaise();
        }
    }
    cow_ArrayCOW(const cow_ArrayCOW& other) noexcept : m_object(other.m_object)
    {
        if (m_object != nullptr) {
            m_object->CowRaise();
        }
    }
    cow_ArrayCOW(cow_ArrayCOW&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    cow_ArrayCOW& operator=(cow_ArrayCOW other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~cow_ArrayCOW()
    {
        if (m_object != nullptr && m_object->CowLower()) {
            delete m_object;
        }
    }

    bool IsNull() const noexcept { return m_object == nullptr; }
    explicit operator bool() const noexcept { return m_object != nullptr; }

    /// The object for reading; never clones.
    const T* ConstGet() const noexcept { return m_object; }
    const T* operator->() const noexcept { return m_object; }
    const T& operator*() const noexcept { return *m_object; }

    /// The object for writing: cloned first when another holder shares it. Null stays null.
    T* Get()
    {
        if (m_object != nullptr && !m_object->CowIsUnique()) {
            cow_NoteClone<T>();
            *this = cow_ArrayCOW(Cloner::Clone(*m_object));
        }
        return m_object;
    }

    bool SharesWith(const cow_ArrayCOW& other) const noexcept { return m_object == other.m_object; }

private:
    T* m_object = nullptr;
};
