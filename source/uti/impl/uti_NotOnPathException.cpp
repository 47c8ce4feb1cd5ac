#include "uti_NotOnPathException.h"

uti_NotOnPathException::uti_NotOnPathException(const cow_String& name)
    : nex_ConcreteException(name + " not found in PATH.")
{}

std::uint32_t uti_NotOnPathException::DynTypeId() const
{
    return nex_TextException::TypeId();
}
