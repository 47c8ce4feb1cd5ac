#include "omu_TempVariable.h"

#include "VEXCRT.h"
#include "cow_List.h"

#include <string_view>
#include <unordered_set>
#include <utility>

namespace
{

/// The names in use, one entry for each holder; null while there are none.
cow_List<cow_String>* namesInUse = nullptr;

void Hold(const cow_String& name)
{
    if (namesInUse == nullptr) {
        namesInUse = new cow_List<cow_String>;
    }
    namesInUse->Prepend(name);
}

void Release(const cow_String& name)
{
    if (namesInUse == nullptr) {
        VEXCRT::_assert("nameInUse != 0", "source/omu/impl/omu_TempVariable", __LINE__);
        return;
    }
    namesInUse->RemoveFirst(name);
    if (namesInUse->IsEmpty()) {
        delete std::exchange(namesInUse, nullptr);
    }
}

/// The bytes of one UTF-8 character: a name cut within one would spoil the text that it is put into.
cow_String FirstCharacter(std::string_view base)
{
    std::size_t length = 1;
    while (length < base.size() && (static_cast<unsigned char>(base[length]) & 0xC0) == 0x80) {
        ++length;
    }
    return base.substr(0, length);
}

cow_String ChooseName(const cow_String& base)
{
    const cow_String stem = base.IsEmpty() ? cow_String("_") : FirstCharacter(base);
    std::unordered_set<std::string_view> taken;
    if (namesInUse != nullptr) {
        taken.insert(namesInUse->begin(), namesInUse->end());
    }
    cow_String name = stem;
    for (int number = 1; taken.contains(name); ++number) {
        name = stem + cow_String(number);
    }
    return name;
}

} // namespace

omu_TempVariable::omu_TempVariable(const cow_String& base) : m_name(ChooseName(base))
{
    Hold(m_name);
}

omu_TempVariable::omu_TempVariable(const omu_TempVariable& other) : m_name(other.m_name)
{
    if (m_name != NO_NAME) {
        Hold(m_name);
    }
}

omu_TempVariable& omu_TempVariable::operator=(const omu_TempVariable& other)
{
    omu_TempVariable copy(other);
    std::swap(m_name, copy.m_name);
    return *this;
}

omu_TempVariable::~omu_TempVariable()
{
    if (m_name != NO_NAME) {
        Release(m_name);
    }
}
