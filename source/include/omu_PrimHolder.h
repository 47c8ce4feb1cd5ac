#pragma once

#include "VEXomu_export.h"
#include "cow_CloneCount.h"
#include "omu_PrimNone.h"
#include "omu_PrimNumber.h"
#include "omu_PrimString.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

/// The values that a holder keeps in itself: nearly all that a call hands over.
template <class V>
concept omu_HeldInPlace =
    std::same_as<V, omu_PrimNumber> || std::same_as<V, omu_PrimString> || std::same_as<V, omu_PrimNone>;

/// Copy-on-write holder of a script value; the element of tuples and dictionaries. Numbers, strings and none values that
/// are made here stand in the holder itself, so that they cost no allocation; every other value is shared between the
/// copies of its holder by the count that it carries.
///
/// Ownership:  adopts a pointer, and keeps that very object; the last holder deletes it. What stands in place is copied
///             with the holder (a long text is shared).
/// Threads:    as the count of the value; distinct holders may live on distinct threads.
/// Complexity: copy O(1); Get() clones only while the value is shared.
/// References: ConstGet() and Get() die with this holder, whatever moves or assigns it, and ConstGet() with Get().
/// Example:    omu_PrimHolder width(std::in_place_type<omu_PrimNumber>, 2.5);
template <> class cow_ArrayCOW<omu_Primitive, cow_Virtual<omu_Primitive>>
{
public:
    using cow_Relocatable = cow_ArrayCOW;

    cow_ArrayCOW() noexcept { SetShared(nullptr); }
    /// Takes over `value` (may be null), which no other holder may hold.
    explicit cow_ArrayCOW(omu_Primitive* value) noexcept
    {
        SetShared(value);
        if (value != nullptr) {
            value->CowRaise();
        }
    }
    /// Makes the value in place.
    template <omu_HeldInPlace V, class... Args> explicit cow_ArrayCOW(std::in_place_type_t<V>, Args&&... args)
    {
        static_assert(sizeof(V) <= sizeof m_bytes && alignof(V) <= ALIGNMENT);
        ::new (static_cast<void*>(m_bytes)) V(std::forward<Args>(args)...);
    }
    cow_ArrayCOW(const cow_ArrayCOW& other) noexcept
    {
        std::memcpy(m_bytes, other.m_bytes, sizeof m_bytes);
        if (!IsInPlace()) {
            if (omu_Primitive* const value = Shared()) {
                value->CowRaise();
            }
        } else if (InPlace()->IsType('s')) {
            ::new (static_cast<void*>(m_bytes)) omu_PrimString(*static_cast<const omu_PrimString*>(other.InPlace()));
        }
    }
    cow_ArrayCOW(cow_ArrayCOW&& other) noexcept
    {
        std::memcpy(m_bytes, other.m_bytes, sizeof m_bytes);
        other.SetShared(nullptr);
    }
    cow_ArrayCOW& operator=(const cow_ArrayCOW& other) noexcept { return *this = cow_ArrayCOW(other); }
    cow_ArrayCOW& operator=(cow_ArrayCOW&& other) noexcept
    {
        std::byte bytes[sizeof m_bytes];
        std::memcpy(bytes, m_bytes, sizeof bytes);
        std::memcpy(m_bytes, other.m_bytes, sizeof bytes);
        std::memcpy(other.m_bytes, bytes, sizeof bytes);
        return *this;
    }
    ~cow_ArrayCOW() { Drop(); }

    /// A holder of its own copy of `value`.
    VEXOMU_API static cow_ArrayCOW CopyOf(const omu_Primitive& value);

    /// Makes the value in place, instead of what was held.
    template <omu_HeldInPlace V, class... Args> void Emplace(const Args&... args)
    {
        static_assert(std::is_nothrow_constructible_v<V, const Args&...>);
        if (IsNull()) {
            ::new (static_cast<void*>(m_bytes)) V(args...);
        } else {
            *this = cow_ArrayCOW(std::in_place_type<V>, args...); // an argument may be part of what is held
        }
    }

    bool IsNull() const noexcept { return !IsInPlace() && Shared() == nullptr; }
    explicit operator bool() const noexcept { return !IsNull(); }

    /// The value for reading; never clones.
    const omu_Primitive* ConstGet() const noexcept { return IsInPlace() ? InPlace() : Shared(); }
    /// The type code of a value in place, which then is of the class that has this code; else a zero byte.
    char CodeInPlace() const noexcept { return IsInPlace() ? InPlace()->TypeCode() : '\0'; }
    /// The value when it is a number in place, else null.
    const omu_PrimNumber* NumberInPlace() const noexcept
    {
        const char code = CodeInPlace();
        return code == 'i' || code == 'f' ? static_cast<const omu_PrimNumber*>(InPlace()) : nullptr;
    }
    const omu_Primitive* operator->() const noexcept { return ConstGet(); }
    const omu_Primitive& operator*() const noexcept { return *ConstGet(); }

    /// The value for writing: cloned first when another holder shares it. Null stays null.
    omu_Primitive* Get()
    {
        if (IsInPlace()) {
            return InPlace();
        }
        if (Shared() != nullptr && !Shared()->CowIsUnique()) {
            cow_NoteClone<omu_Primitive>();
            *this = cow_ArrayCOW(Shared()->Copy());
        }
        return Shared();
    }

    /// The value as an object that the caller owns, a copy unless this holder alone has it; the holder is empty then.
    VEXOMU_API omu_Primitive* Release();

    /// True when both mean the same object, or both hold none.
    bool SharesWith(const cow_ArrayCOW& other) const noexcept { return ConstGet() == other.ConstGet(); }

    /// Reads what an object pointer is written as; null for one that is null. Throws nex_TextException.
    friend VEXOMU_API bio_Ifilter& operator>>(bio_Ifilter& in, cow_ArrayCOW& item);

private:
    using Address = std::uintptr_t;

    // Either a value in place, whose first word is the address of its class's table of virtual operations, or a first
    // word of zero and the address of a shared value (or null) in the second.
    static constexpr std::size_t ROOM = 32;
    static constexpr std::size_t ALIGNMENT = alignof(double);

    Address Word(std::size_t index) const noexcept
    {
        Address word;
        std::memcpy(&word, m_bytes + index * sizeof word, sizeof word);
        return word;
    }
    bool IsInPlace() const noexcept { return Word(0) != 0; }
    omu_Primitive* Shared() const noexcept { return reinterpret_cast<omu_Primitive*>(Word(1)); }
    void SetShared(omu_Primitive* value) noexcept
    {
        const Address words[2] = {0, reinterpret_cast<Address>(value)};
        std::memcpy(m_bytes, words, sizeof words);
    }
    const omu_Primitive* InPlace() const noexcept
    {
        return std::launder(reinterpret_cast<const omu_Primitive*>(m_bytes));
    }
    omu_Primitive* InPlace() noexcept { return std::launder(reinterpret_cast<omu_Primitive*>(m_bytes)); }

    void Drop() noexcept
    {
        if (IsInPlace()) {
            // The class is known, so nothing is called; and only a string has something to give back.
            if (InPlace()->IsType('s')) {
                static_cast<omu_PrimString*>(InPlace())->omu_PrimString::~omu_PrimString();
            }
        } else if (omu_Primitive* const value = Shared(); value != nullptr && value->CowLower()) {
            delete value;
        }
    }

    alignas(ALIGNMENT) std::byte m_bytes[ROOM];
};
