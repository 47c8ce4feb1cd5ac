#pragma once

#include "uti_LabelTable.h"

#include <type_traits>

/// An enumeration with a fixed underlying type, so that NO_KEY is one of its values too.
template <class E>
concept uti_LabelKey = std::is_enum_v<E> && sizeof(E) <= sizeof(int) && requires { E{0}; };

/// The catalogue of texts that is keyed by the enumeration E. N tells several catalogues of one enumeration
/// apart.
///
/// The class that owns the texts declares the array in its header and defines it in its source, ended by an
/// entry with a null label:
///
///     template <> const uti_LabelEntry uti_LabelMap<Colour>::ENTRIES[] = {
///         {RED, "Colour_MSGID_00", "red"}, {0, nullptr, nullptr}};
///
/// Threads, Complexity, Errors: as uti_LabelTable, which describes each operation.
template <uti_LabelKey E, int N = 0> class uti_LabelMap
{
public:
    static constexpr E NO_KEY = static_cast<E>(uti_LabelTable::NO_KEY);

    static cow_String LabelString(E key) { return Table().LabelString(static_cast<int>(key)); }
    static const char* DefaultLabelString(E key) { return Table().DefaultLabelString(static_cast<int>(key)); }
    static const char* ResourceName(E key) { return Table().ResourceName(static_cast<int>(key)); }

    static E LabelKey(std::string_view text) { return static_cast<E>(Table().LabelKey(text)); }
    static E DefaultLabelKey(std::string_view text) { return static_cast<E>(Table().DefaultLabelKey(text)); }
    static E ResourceKey(std::string_view label) { return static_cast<E>(Table().ResourceKey(label)); }

    static cow_List<cow_String> LabelStrings() { return Table().LabelStrings(); }
    static cow_List<cow_String> DefaultLabelStrings() { return Table().DefaultLabelStrings(); }
    static cow_List<cow_String> ResourceNames() { return Table().ResourceNames(); }

private:
    static uti_LabelTable Table() noexcept { return uti_LabelTable(ENTRIES); }

    static const uti_LabelEntry ENTRIES[];
};
