#pragma once

#include "VEXomu_export.h"
#include "cow_List.h"
#include "cow_String.h"

#include <string_view>

/// One text of a catalogue: its key, the label under which it is translated, and the text shown without a
/// translation.
struct uti_LabelEntry
{
    int key;
    const char* label; ///< null only in the entry that ends the catalogue
    const char* defaultText;
};

/// A catalogue of texts, seen through integer keys; uti_LabelMap gives it the keys of an enumeration.
///
/// Ownership:  refers to a static array of entries.
/// Threads:    any; translations are those of the calling thread's uti_ResourceManager.
/// Complexity: O(entries); catalogues are short and are looked at when an error is reported.
/// Errors:     an absent key is answered with null or the empty text; an absent text is an assertion and NO_KEY.
class VEXOMU_API uti_LabelTable
{
public:
    static constexpr int NO_KEY = -1;

    explicit constexpr uti_LabelTable(const uti_LabelEntry* entries) noexcept : m_entries(entries) {}

    // From a key to its texts: the first entry with that key counts.

    /// The translated text; empty when the key is absent.
    cow_String LabelString(int key) const;
    /// The text in the program's own language; null when the key is absent.
    const char* DefaultLabelString(int key) const noexcept;
    /// The label; null when the key is absent.
    const char* ResourceName(int key) const noexcept;

    // From a text to the key of the first entry that has exactly this text.

    int LabelKey(std::string_view text) const;
    int DefaultLabelKey(std::string_view text) const;
    int ResourceKey(std::string_view label) const;

    // All entries' texts in the order of the catalogue.

    cow_List<cow_String> LabelStrings() const;
    cow_List<cow_String> DefaultLabelStrings() const;
    cow_List<cow_String> ResourceNames() const;

private:
    const uti_LabelEntry* Find(int key) const noexcept;
    template <class Text> int KeyOf(std::string_view wanted, const char* complaint, Text text) const;
    template <class Text> cow_List<cow_String> Collect(Text text) const;

    const uti_LabelEntry* m_entries;
};
