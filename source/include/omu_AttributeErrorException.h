#pragma once

#include "VEXomu_export.h"
#include "nex_CommandException.h"
#include "nex_ConcreteException.h"
#include "omu_TypeIds.h"
#include "uti_LabelMap.h"

enum omu_AttributeErrorExceptionEnm : int
{
    omu_MSG_READ_ONLY_ATTRIBUTES = 0,
    omu_MSG_READ_ONLY_MEMBER = 1,
    omu_MSG_NOT_IMPLEMENTED = 2
};

template <> VEXOMU_API const uti_LabelEntry uti_LabelMap<omu_AttributeErrorExceptionEnm>::ENTRIES[];

/// An attribute is unknown or may not be set.
class VEXOMU_API omu_AttributeErrorException
    : public nex_ConcreteException<omu_AttributeErrorException, nex_CommandException,
                                   omu_TypeIdOf(omu_AttributeErrorExceptionRow)>
{
public:
    enum KindEnm : int
    {
        READ_ONLY_ATTRIBUTES = 0, ///< the text is not used
        READ_ONLY = 1,            ///< the text is the member's name
        MESSAGE = 2               ///< the text is the whole message
    };

    using nex_ConcreteException::nex_ConcreteException;
    omu_AttributeErrorException() = default;
    explicit omu_AttributeErrorException(KindEnm kind, cow_String text = {});

    cow_String JournalMessage() const override;
    /// "AttributeError".
    cow_String PythonType() const override;

    KindEnm Kind() const noexcept { return m_kind; }
    const cow_String& Text() const noexcept { return m_text; }

private:
    friend nex_ConcreteException;
    static constexpr const char* DUMP_NAME = "omu_AttributeErrorException";
    static constexpr auto Fields()
    {
        return std::tuple(&omu_AttributeErrorException::m_kind, &omu_AttributeErrorException::m_text);
    }
    static bool IsValid(KindEnm kind) noexcept { return kind >= READ_ONLY_ATTRIBUTES && kind <= MESSAGE; }

    KindEnm m_kind = READ_ONLY_ATTRIBUTES;
    cow_String m_text;
};
