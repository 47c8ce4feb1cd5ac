#pragma once

#include "VEXomu_export.h"
#include "nex_CommandException.h"
#include "nex_ConcreteException.h"
#include "omu_TypeIds.h"
#include "uti_LabelMap.h"

/// Keys of the texts; kinds 1 and 2 of the exception have the texts 2 and 1.
enum omu_BreNameErrorExceptionEnm : int
{
    omu_MSG_INVALID_NAME = 0,
    omu_MSG_INVALID_JOB_NAME = 1,
    omu_MSG_EMPTY_NAME = 2,
    omu_MSG_INVALID_MODEL_NAME = 3
};

template <> VEXOMU_API const uti_LabelEntry uti_LabelMap<omu_BreNameErrorExceptionEnm>::ENTRIES[];

/// A name breaks the naming rules of what it is to name.
class VEXOMU_API omu_BreNameErrorException
    : public nex_ConcreteException<omu_BreNameErrorException, nex_CommandException,
                                   omu_TypeIdOf(omu_BreNameErrorExceptionRow)>
{
public:
    enum KindEnm : int
    {
        INVALID = 0,
        EMPTY = 1,
        INVALID_JOB = 2,
        INVALID_MODEL = 3
    };

    using nex_ConcreteException::nex_ConcreteException;
    omu_BreNameErrorException() = default;
    explicit omu_BreNameErrorException(KindEnm kind) : m_kind(kind) {}

    /// Empty for a number that is no kind.
    cow_String JournalMessage() const override;
    /// "BrenowNameError".
    cow_String PythonType() const override;

    KindEnm Kind() const noexcept { return m_kind; }

private:
    friend nex_ConcreteException;
    static constexpr const char* DUMP_NAME = "omu_BreNameErrorException";
    static constexpr auto Fields() { return std::tuple(&omu_BreNameErrorException::m_kind); }
    static bool IsValid(KindEnm kind) noexcept { return kind >= INVALID && kind <= INVALID_MODEL; }

    KindEnm m_kind = INVALID;
};
