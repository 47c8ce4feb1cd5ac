#pragma once

#include "VEXomu_export.h"
#include "omu_Table.h"

/// omu_Table<void*> under the names that callers without templates use, and a binary search over any run of its entries.
///
/// Ownership, threads, complexity, errors, references: see omu_Table.
/// Avoid for:  new code; an omu_Table says the same with types.
class VEXOMU_API omu_BaseTable
{
public:
    using Entry = omu_Table<void*>::Entry;

    omu_BaseTable() = default;
    omu_BaseTable(unsigned int size, double growth) : m_table(size, growth) {}

    /// Looks for `key` among the entries from `min` to `max`, whose keys must enclose it: an assertion is reported
    /// otherwise. True and its position; or false and the position to insert it at, O(log n).
    static bool find_entry(const Entry* table, unsigned int min, unsigned int max, unsigned int key, unsigned int* pos);
    /// find_entry over `length` entries; with none an assertion is reported and the result is false, position 0.
    static bool find_entry_opt(const Entry* table, unsigned int length, unsigned int key, unsigned int* pos);
    bool findEntry(unsigned int key, unsigned int* pos) const { return m_table.FindEntry(key, pos); }

    unsigned int length() const noexcept { return m_table.Length(); }
    bool get(unsigned int key, void** value) const { return m_table.Get(key, value); }
    bool getEntry(unsigned int pos, unsigned int& key, void*& value) const { return m_table.GetEntry(pos, key, value); }
    bool getEntries(unsigned int* count, unsigned int** keys, void*** values) const
    {
        return m_table.GetEntries(count, keys, values);
    }
    void getKeys(omu_Varray<unsigned int>* keys) const { m_table.GetKeys(keys); }

    bool setSize(unsigned int n) { return m_table.SetSize(n); }
    bool grow() { return m_table.Grow(); }
    bool insertEntry(unsigned int pos, Entry entry) { return m_table.InsertEntry(pos, entry); }
    bool add(unsigned int key, void* value) { return m_table.Add(key, value); }
    bool set(unsigned int key, void* value) { return m_table.Set(key, value); }
    bool remove(unsigned int key) { return m_table.Remove(key); }
    bool clearAll() { return m_table.ClearAll(); }

private:
    omu_Table<void*> m_table;
};
