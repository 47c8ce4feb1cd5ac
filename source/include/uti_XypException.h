#pragma once

#include "VEXomu_export.h"
#include "nex_CommandException.h"
#include "nex_ConcreteException.h"
#include "uti_LabelMap.h"

/// Why an operation on X-Y data failed.
enum uti_XypExceptionEnm : int
{
    uti_XYP_FAILED = 0,
    uti_XYP_NO_DATA = 1,
    uti_XYP_LENGTHS_DIFFER = 2,
    uti_XYP_X_NOT_INCREASING = 3,
    uti_XYP_UNITS_DIFFER = 4,
    uti_XYP_NOT_A_NUMBER = 5
};

template <> VEXOMU_API const uti_LabelEntry uti_LabelMap<uti_XypExceptionEnm, 1>::ENTRIES[];

/// An operation on X-Y data failed.
class VEXOMU_API uti_XypException : public nex_ConcreteException<uti_XypException, nex_CommandException, 0x20006>
{
public:
    using nex_ConcreteException::nex_ConcreteException;
    uti_XypException() = default;
    uti_XypException(uti_XypExceptionEnm reason, cow_String function);

    /// "<function>: <the reason's text>"; without a function only the text.
    cow_String JournalMessage() const override;
    /// "XypError".
    cow_String PythonType() const override;

    uti_XypExceptionEnm Reason() const noexcept { return m_reason; }
    const cow_String& Function() const noexcept { return m_function; }

private:
    friend nex_ConcreteException;
    static constexpr const char* DUMP_NAME = "uti_XypException";
    static constexpr auto Fields() { return std::tuple(&uti_XypException::m_reason, &uti_XypException::m_function); }
    static bool IsValid(uti_XypExceptionEnm reason) noexcept
    {
        return reason >= uti_XYP_FAILED && reason <= uti_XYP_NOT_A_NUMBER;
    }

    uti_XypExceptionEnm m_reason = uti_XYP_FAILED;
    cow_String m_function;
};
