#pragma once

#include "VEXomu_export.h"
#include "nex_ConcreteException.h"
#include "nex_Exception.h"

/// A call of the operating system failed.
class VEXOMU_API uti_SystemException : public nex_ConcreteException<uti_SystemException, nex_Exception, 0x20001>
{
public:
    using nex_ConcreteException::nex_ConcreteException;
    uti_SystemException() = default;
    /// The name of the call, the system's error number, and the file it was about, if any.
    uti_SystemException(cow_String function, int errorNumber, cow_String fileName = {});

    /// "IOError: <file>: <the C runtime's text for the number>". That the function name is no part of it, and that
    /// codes of other interfaces get the C runtime's text too, is promised and must stay.
    cow_String AsString() const override;

    const cow_String& Function() const noexcept { return m_function; }
    int ErrorNumber() const noexcept { return m_errorNumber; }
    const cow_String& FileName() const noexcept { return m_fileName; }

private:
    friend nex_ConcreteException;
    static constexpr const char* DUMP_NAME = "uti_SystemException";
    static constexpr auto Fields()
    {
        using E = uti_SystemException;
        return std::tuple(&E::m_function, &E::m_errorNumber, &E::m_fileName);
    }

    cow_String m_function;
    int m_errorNumber = 0;
    cow_String m_fileName;
};
