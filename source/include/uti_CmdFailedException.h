#pragma once

#include "VEXomu_export.h"
#include "nex_ConcreteException.h"
#include "nex_Exception.h"
#include "uti_LabelMap.h"

enum uti_CmdFailedExceptionEnm : int
{
    uti_CmdFailed = 0
};

template <> VEXOMU_API const uti_LabelEntry uti_LabelMap<uti_CmdFailedExceptionEnm>::ENTRIES[];

/// A command of the operating system did not do its work.
class VEXOMU_API uti_CmdFailedException : public nex_ConcreteException<uti_CmdFailedException, nex_Exception, 0x20004>
{
public:
    using nex_ConcreteException::nex_ConcreteException;
    uti_CmdFailedException() = default;
    explicit uti_CmdFailedException(uti_CmdFailedExceptionEnm reason) : m_reason(reason) {}

    /// The label of the reason, under which a text for the user is found; empty for a number that is no reason.
    cow_String AsString() const override;

    uti_CmdFailedExceptionEnm Reason() const noexcept { return m_reason; }

private:
    friend nex_ConcreteException;
    static constexpr const char* DUMP_NAME = "uti_CmdFailedException";
    static constexpr auto Fields() { return std::tuple(&uti_CmdFailedException::m_reason); }
    static bool IsValid(uti_CmdFailedExceptionEnm reason) noexcept { return reason == uti_CmdFailed; }

    uti_CmdFailedExceptionEnm m_reason = uti_CmdFailed;
};
