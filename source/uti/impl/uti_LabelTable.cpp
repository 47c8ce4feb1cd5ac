#include "uti_LabelTable.h"

#include "VEXCRT.h"
#include "uti_ResourceManager.h"

#include <functional>

namespace
{

constexpr const char* SOURCE = "source/uti/impl/uti_LabelTable";
constexpr const char* NO_KEY_OF_LABEL = "Unable to find key given label string";
constexpr const char* NO_KEY_OF_RESOURCE = "Unable to find key given resource string";

cow_String Translated(const uti_LabelEntry& entry)
{
    return thr_ThreadSingleton<uti_ResourceManager>::Instance().Text(entry.label, entry.defaultText);
}

} // namespace

// Defined for users of the DLL who bind references to it.
constexpr int uti_LabelTable::NO_KEY;

const uti_LabelEntry* uti_LabelTable::Find(int key) const noexcept
{
    for (const uti_LabelEntry* entry = m_entries; entry->label != nullptr; ++entry) {
        if (entry->key == key) {
            return entry;
        }
    }
    return nullptr;
}

template <class Text> int uti_LabelTable::KeyOf(std::string_view wanted, const char* complaint, Text text) const
{
    for (const uti_LabelEntry* entry = m_entries; entry->label != nullptr; ++entry) {
        if (wanted == std::invoke(text, *entry)) {
            return entry->key;
        }
    }
    VEXCRT::_assert(complaint, SOURCE, __LINE__);
    return NO_KEY;
}

template <class Text> cow_List<cow_String> uti_LabelTable::Collect(Text text) const
{
    cow_List<cow_String> texts;
    for (const uti_LabelEntry* entry = m_entries; entry->label != nullptr; ++entry) {
        texts.Append(std::invoke(text, *entry));
    }
    return texts;
}

cow_String uti_LabelTable::LabelString(int key) const
{
    const uti_LabelEntry* const entry = Find(key);
    return entry != nullptr ? Translated(*entry) : cow_String();
}

const char* uti_LabelTable::DefaultLabelString(int key) const noexcept
{
    const uti_LabelEntry* const entry = Find(key);
    return entry != nullptr ? entry->defaultText : nullptr;
}

const char* uti_LabelTable::ResourceName(int key) const noexcept
{
    const uti_LabelEntry* const entry = Find(key);
    return entry != nullptr ? entry->label : nullptr;
}

int uti_LabelTable::LabelKey(std::string_view text) const
{
    return KeyOf(text, NO_KEY_OF_LABEL, Translated);
}

int uti_LabelTable::DefaultLabelKey(std::string_view text) const
{
    return KeyOf(text, NO_KEY_OF_LABEL, &uti_LabelEntry::defaultText);
}

int uti_LabelTable::ResourceKey(std::string_view label) const
{
    return KeyOf(label, NO_KEY_OF_RESOURCE, &uti_LabelEntry::label);
}

cow_List<cow_String> uti_LabelTable::LabelStrings() const
{
    return Collect(Translated);
}

cow_List<cow_String> uti_LabelTable::DefaultLabelStrings() const
{
    return Collect(&uti_LabelEntry::defaultText);
}

cow_List<cow_String> uti_LabelTable::ResourceNames() const
{
    return Collect(&uti_LabelEntry::label);
}
