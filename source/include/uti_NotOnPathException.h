#pragma once

#include "VEXomu_export.h"
#include "nex_ConcreteException.h"
#include "nex_TextException.h"

/// A program is in none of the folders of the search path.
class VEXOMU_API uti_NotOnPathException
    : public nex_ConcreteException<uti_NotOnPathException, nex_TextException, 0x20002>
{
public:
    using nex_ConcreteException::nex_ConcreteException;
    uti_NotOnPathException() = default;
    /// The text is "<name> not found in PATH.".
    explicit uti_NotOnPathException(const cow_String& name);

    /// That of nex_TextException, as which the object is streamed: promised, and it must stay.
    std::uint32_t DynTypeId() const override;

private:
    friend nex_ConcreteException;
    static constexpr const char* DUMP_NAME = "uti_NotOnPathException";
    static constexpr std::tuple<> Fields() { return {}; }
};
