#pragma once

#include "nex_Exception.h"
#include "obj_Stream.h"

#include <cstdint>
#include <tuple>
#include <type_traits>

/// What every concrete exception class repeats, made once: throwing and copying as itself, its identity, and
/// its functions for the run-time type tables. `Base` is the class that E extends, ID the type id of E.
///
/// E befriends this class and gives it
///     static constexpr const char* DUMP_NAME     the word that its dump opens with
///     static constexpr auto Fields()             a std::tuple of pointers to its members, in stream order
///     static bool IsValid(Kind)                  for members of an enumeration type (32 bits): what a stream may hold
///
/// Errors:     ReadData throws nex_TextException for an enumerator that is not valid.
/// Example:    omu_KeywordErrorException.h.
template <class E, class Base, std::uint32_t ID> class nex_ConcreteException : public Base
{
public:
    using Base::Base;

    void Propagate() const override;
    nex_Exception* Copy() const override;
    std::uint32_t DynTypeId() const override;

    static std::uint32_t TypeId();
    static void* CtorFunc(bio_Ifilter& in, void* place);
    static void DtorFunc(void* object);
    static void ReadData(bio_Ifilter& in, void* object);
    static void WriteData(bio_Ofilter& out, const void* object);
    static void PrintData(pnt_PrettyPrint& out, const void* object);

private:
    template <class Field> static void ReadField(bio_Ifilter& in, Field& field);
    /// What a stream and a dump show of a field: an enumerator's number, any other value itself.
    template <class Field> static decltype(auto) Shown(const Field& field);
};

template <class E, class Base, std::uint32_t ID> void nex_ConcreteException<E, Base, ID>::Propagate() const
{
    throw static_cast<const E&>(*this);
}

template <class E, class Base, std::uint32_t ID> nex_Exception* nex_ConcreteException<E, Base, ID>::Copy() const
{
    return new E(static_cast<const E&>(*this));
}

template <class E, class Base, std::uint32_t ID> std::uint32_t nex_ConcreteException<E, Base, ID>::DynTypeId() const
{
    return ID;
}

template <class E, class Base, std::uint32_t ID> std::uint32_t nex_ConcreteException<E, Base, ID>::TypeId()
{
    return ID;
}

template <class E, class Base, std::uint32_t ID>
void* nex_ConcreteException<E, Base, ID>::CtorFunc(bio_Ifilter& in, void* place)
{
    return obj_Construct<E>(in, place);
}

template <class E, class Base, std::uint32_t ID> void nex_ConcreteException<E, Base, ID>::DtorFunc(void* object)
{
    obj_Destroy<E>(object);
}

template <class E, class Base, std::uint32_t ID>
void nex_ConcreteException<E, Base, ID>::ReadData(bio_Ifilter& in, void* object)
{
    Base::ReadData(in, object);
    E& exception = *static_cast<E*>(object);
    std::apply([&](auto... field) { (ReadField(in, exception.*field), ...); }, E::Fields());
}

template <class E, class Base, std::uint32_t ID>
void nex_ConcreteException<E, Base, ID>::WriteData(bio_Ofilter& out, const void* object)
{
    Base::WriteData(out, object);
    const E& exception = *static_cast<const E*>(object);
    std::apply([&](auto... field) { ((out << Shown(exception.*field)), ...); }, E::Fields());
}

template <class E, class Base, std::uint32_t ID>
void nex_ConcreteException<E, Base, ID>::PrintData(pnt_PrettyPrint& out, const void* object)
{
    const E& exception = *static_cast<const E*>(object);
    out.Open(E::DUMP_NAME);
    Base::PrintData(out, object);
    std::apply([&](auto... field) { (out.Field(Shown(exception.*field)), ...); }, E::Fields());
    out.Close();
}

template <class E, class Base, std::uint32_t ID>
template <class Field>
void nex_ConcreteException<E, Base, ID>::ReadField(bio_Ifilter& in, Field& field)
{
    if constexpr (std::is_enum_v<Field>) {
        const std::uint64_t start = in.Offset();
        std::int32_t number = 0;
        in >> number;
        if (!E::IsValid(static_cast<Field>(number))) {
            in.FailAt("no valid kind of exception", start);
        }
        field = static_cast<Field>(number);
    } else {
        in >> field;
    }
}

template <class E, class Base, std::uint32_t ID>
template <class Field>
decltype(auto) nex_ConcreteException<E, Base, ID>::Shown(const Field& field)
{
    if constexpr (std::is_enum_v<Field>) {
        return static_cast<std::int32_t>(field);
    } else {
        return (field);
    }
}
