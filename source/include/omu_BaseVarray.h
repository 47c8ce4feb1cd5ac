#pragma once

#include "omu_Varray.h"

/// omu_Varray<void*> under the names that callers without templates use.
///
/// Ownership, threads, complexity, errors, references: see omu_Varray.
/// Avoid for:  new code; an omu_Varray says the same with types.
class omu_BaseVarray
{
public:
    omu_BaseVarray() = default;
    omu_BaseVarray(unsigned int size, double growth) : m_values(size, growth) {}

    unsigned int length() const noexcept { return m_values.Length(); }
    bool get(unsigned int pos, void** value) const { return m_values.Get(pos, value); }
    unsigned int findFirst(void* value) const { return m_values.FindFirst(value); }
    unsigned int findLast(void* value) const { return m_values.FindLast(value); }
    void** getAll() const { return m_values.GetAll(); }

    bool setSize(unsigned int n) { return m_values.SetSize(n); }
    bool grow() { return m_values.Grow(); }
    bool add(void* value) { return m_values.Add(value); }
    bool insert(unsigned int pos, void* value) { return m_values.Insert(pos, value); }
    bool set(unsigned int pos, void* value) { return m_values.Set(pos, value); }
    void* pop() { return m_values.Pop(); }
    bool remove(unsigned int pos, void** removed) { return m_values.Remove(pos, removed); }
    void clearAll() { m_values.ClearAll(); }

private:
    omu_Varray<void*> m_values;
};
