#pragma once

#include "VEXomu_export.h"
#include "nex_ConcreteException.h"
#include "nex_Exception.h"
#include "uti_LabelMap.h"

enum uti_InterruptedExceptionEnm : int
{
    uti_Signal = 0,
    uti_Keyboard = 1,
    uti_Stop = 2
};

template <> VEXOMU_API const uti_LabelEntry uti_LabelMap<uti_InterruptedExceptionEnm>::ENTRIES[];

/// Work was interrupted from outside.
class VEXOMU_API uti_InterruptedException
    : public nex_ConcreteException<uti_InterruptedException, nex_Exception, 0x20005>
{
public:
    using nex_ConcreteException::nex_ConcreteException;
    uti_InterruptedException() = default;
    explicit uti_InterruptedException(uti_InterruptedExceptionEnm reason) : m_reason(reason) {}

    /// The label of the reason, under which a text for the user is found; empty for a number that is no reason.
    cow_String AsString() const override;

    uti_InterruptedExceptionEnm Reason() const noexcept { return m_reason; }

private:
    friend nex_ConcreteException;
    static constexpr const char* DUMP_NAME = "uti_InterruptedException";
    static constexpr auto Fields() { return std::tuple(&uti_InterruptedException::m_reason); }
    static bool IsValid(uti_InterruptedExceptionEnm reason) noexcept
    {
        return reason >= uti_Signal && reason <= uti_Stop;
    }

    uti_InterruptedExceptionEnm m_reason = uti_Signal;
};
