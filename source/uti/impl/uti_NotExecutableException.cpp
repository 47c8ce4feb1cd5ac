#include "uti_NotExecutableException.h"

uti_NotExecutableException::uti_NotExecutableException(const cow_String& path)
    : nex_ConcreteException(path + " is not executable.")
{}

std::uint32_t uti_NotExecutableException::DynTypeId() const
{
    return nex_TextException::TypeId();
}
