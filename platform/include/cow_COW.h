#pragma once

#include "cow_CloneCount.h"
#include "cow_CountedHld.h"

#include <utility>

/// Clones an object by its copy constructor.
template <class T> struct cow_Direct
{
    static cow_CountedHld<T> Clone(const T& object) { return cow_CountedHld<T>::Make(object); }
};

/// Copy-on-write holder of an object that knows nothing of it.
///
/// Ownership:  owns a share of the object; the last holder deletes it.
/// Threads:    one thread at a time; distinct holders may live on distinct threads.
/// Complexity: copy O(1); Get() clones only while the object is shared.
/// Errors:     std::bad_alloc and what T's constructors throw; the holder is then as it was.
/// References: ConstGet() and Get() die with the last holder; ConstGet() also when this holder's next Get() clones.
/// Avoid for:  polymorphic objects; cow_ArrayCOW clones those by their own type.
template <class T, class Cloner = cow_Direct<T>> class cow_COW
{
public:
    using cow_Relocatable = cow_COW;

    cow_COW() noexcept = default;
    explicit cow_COW(T object) : m_object(cow_CountedHld<T>::Make(std::move(object))) {}
    template <class... Args> static cow_COW Make(Args&&... args)
    {
        cow_COW made;
        made.m_object = cow_CountedHld<T>::Make(std::forward<Args>(args)...);
        return made;
    }

    bool IsNull() const noexcept { return m_object.IsNull(); }
    explicit operator bool() const noexcept { return !IsNull(); }

    /// The object for reading; never clones.
    const T* ConstGet() const noexcept { return m_object.get(); }
    const T* operator->() const noexcept { return ConstGet(); }
    const T& operator*() const noexcept { return *m_object; }

    /// The object for writing: cloned first when another holder shares it. Null stays null.
    T* Get()
    {
        if (IsShared()) {
            cow_NoteClone<T>();
            m_object = Cloner::Clone(*m_object);
        }
        return m_object.get();
    }

    /// True when another holder has the same object.
    bool IsShared() const noexcept { return !IsNull() && !m_object.IsUnique(); }
    bool SharesWith(const cow_COW& other) const noexcept { return m_object == other.m_object; }

private:
    cow_CountedHld<T> m_object;
};
