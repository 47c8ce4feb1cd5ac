#include "omu_BaseTable.h"

namespace
{
constexpr char SOURCE[] = "source/omu/impl/omu_BaseTable";
}

bool omu_BaseTable::find_entry(const Entry* table, unsigned int min, unsigned int max, unsigned int key,
                               unsigned int* pos)
{
    if (!(table[min].index_ <= key && table[max].index_ >= key)) {
        VEXCRT::_assert("table[min].index_ <= index && (table[max].index_ >= index)", SOURCE, __LINE__);
    }
    for (;;) {
        if (table[min].index_ == key || table[max].index_ == key) {
            *pos = table[min].index_ == key ? min : max;
            return true;
        }
        if (max - min <= 1) {
            *pos = min + 1;
            return false;
        }
        const unsigned int middle = min + (max - min) / 2; // their sum may be out of range
        (table[middle].index_ <= key ? min : max) = middle;
    }
}

bool omu_BaseTable::find_entry_opt(const Entry* table, unsigned int length, unsigned int key, unsigned int* pos)
{
    if (length == 0) {
        VEXCRT::_assert("length > 0", SOURCE, __LINE__);
        *pos = 0;
        return false;
    }
    if (!(table[0].index_ <= key && table[length - 1].index_ >= key)) {
        VEXCRT::_assert("table[0].index_ <= index && (table[length-1].index_ >= index)", SOURCE, __LINE__);
    }
    return find_entry(table, 0, length - 1, key, pos);
}
