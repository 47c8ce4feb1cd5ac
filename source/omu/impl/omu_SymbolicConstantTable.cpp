#include "omu_SymbolicConstantTable.h"

#include "VEXCRT.h"
#include "VEXcrt_System.h"

#include <cstdint>
#include <cstdio>

template class omi_SingletonBase<omu_SymbolicConstantTable>;
template class omi_Singleton<omu_SymbolicConstantTable>;

namespace
{

constexpr const char* SOURCE = "source/omu/impl/omu_SymbolicConstantTable";

/// An address as "%X" shows it.
cow_String Hex(const void* address)
{
    char text[24];
    std::snprintf(text, sizeof text, "%llX",
                  static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(address)));
    return text;
}

} // namespace

omu_SymbolicConstantTable::omu_SymbolicConstantTable()
{
    AddString("_UNSPECIFIED");
}

unsigned int omu_SymbolicConstantTable::AddString(cow_String name)
{
    const unsigned int count = static_cast<unsigned int>(m_names.Length());
    if (name.IsEmpty()) {
        std::fprintf(stderr, "omu_SymbolicConstantTable::AddString(%s) key is EMPTY  pid=%X\n", name.AsCharPtr(),
                     static_cast<unsigned int>(VEXCRT::ProcessId()));
        std::fflush(stderr);
        VEXCRT::_assert("name is not empty", SOURCE, __LINE__);
        return 0;
    }
    if (const unsigned int* const known = m_ids.Find(name)) {
        std::fprintf(stderr, "omu_SymbolicConstantTable::AddString(%s) name already in table: %u/%u  pid=%X\n",
                     name.AsCharPtr(), *known, count, static_cast<unsigned int>(VEXCRT::ProcessId()));
        std::fflush(stderr);
        VEXCRT::_assert("name is not in the table", SOURCE, __LINE__);
        return *known;
    }
    m_ids.Insert(name, count);
    m_names.Append(name);
    return count;
}

unsigned int omu_SymbolicConstantTable::AddSCD(omu_SymbolicConstantData data)
{
    data.m_id = static_cast<unsigned int>(m_data.Length());
    m_data.Append(data);
    return data.m_id;
}

unsigned int omu_SymbolicConstantTable::GetId(cow_String name) const
{
    const unsigned int* const id = m_ids.Find(name);
    return id != nullptr ? *id : 0;
}

const cow_String& omu_SymbolicConstantTable::GetString(unsigned int id) const
{
    const unsigned int count = static_cast<unsigned int>(m_names.Length());
    if (id < count) {
        return m_names[static_cast<int>(id)];
    }
    std::fprintf(stderr, "omu_SymbolicConstantTable::GetString(%u)  id>Size (%u)  %s\n", id, count,
                 Hex(this).AsCharPtr());
    std::fflush(stderr);
    VEXCRT::_assert("id is in the table", SOURCE, __LINE__);
    return m_names[0];
}

void omu_SymbolicConstantTable::PrintCache() const
{
    const cow_String address = Hex(this);
    std::printf("\nCONTENTS of omu_SymbolicConstantTable  %s\n", address.AsCharPtr());
    for (int id = 0; id < m_names.Length(); ++id) {
        std::printf("%5u   %s\n", static_cast<unsigned int>(id), m_names[id].AsCharPtr());
    }
    std::printf("--------------------omu------------ %s\n", address.AsCharPtr());
    std::fflush(stdout);
}
