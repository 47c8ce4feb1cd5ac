#pragma once

#include "VEXomu_export.h"
#include "nex_ConcreteException.h"
#include "nex_TextException.h"

/// A file was found but may not be executed.
class VEXOMU_API uti_NotExecutableException
    : public nex_ConcreteException<uti_NotExecutableException, nex_TextException, 0x20003>
{
public:
    using nex_ConcreteException::nex_ConcreteException;
    uti_NotExecutableException() = default;
    /// The text is "<path> is not executable.".
    explicit uti_NotExecutableException(const cow_String& path);

    /// That of nex_TextException, as which the object is streamed: promised, and it must stay.
    std::uint32_t DynTypeId() const override;

private:
    friend nex_ConcreteException;
    static constexpr const char* DUMP_NAME = "uti_NotExecutableException";
    static constexpr std::tuple<> Fields() { return {}; }
};
