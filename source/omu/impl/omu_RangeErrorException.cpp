#include "omu_RangeErrorException.h"

#include "VEXCRT.h"
#include "omu_MessageText_detail.h"
#include "omu_PrimNumber.h"

#include <charconv>
#include <utility>

using Messages = uti_LabelMap<omu_RangeErrorExceptionEnm>;

template <>
const uti_LabelEntry uti_LabelMap<omu_RangeErrorExceptionEnm>::ENTRIES[] = {
    {omu_MSG_MUST_BE_INTEGER, "omu_RangeErrorException_MSGID_00", "%s must be an Integer "},
    {omu_MSG_MUST_BE_FLOAT, "omu_RangeErrorException_MSGID_01", "%s must be a Float "},
    {omu_MSG_IN_THE_RANGE, "omu_RangeErrorException_MSGID_02", "in the range: "},
    {0, nullptr, nullptr},
};

namespace
{

double AsDouble(const cow_String& limit)
{
    double value = 0.0;
    std::from_chars(limit.begin(), limit.end(), value);
    return value;
}

int AsInt(const cow_String& limit)
{
    return omu_PrimNumber(AsDouble(limit)).GetInt();
}

const char* Below(omu_RangeQualifierEnm qualifier)
{
    return qualifier == omu_INCLUSIVE ? " <= " : " < ";
}

} // namespace

omu_RangeErrorException::omu_RangeErrorException(cow_String quantity, int lower, omu_RangeQualifierEnm lowerQualifier,
                                                 int higher, omu_RangeQualifierEnm higherQualifier)
    : m_quantity(std::move(quantity)), m_valueKind(INTEGER), m_lowerLimit(lower), m_lowerQualifier(lowerQualifier),
      m_higherLimit(higher), m_higherQualifier(higherQualifier)
{}

omu_RangeErrorException::omu_RangeErrorException(cow_String quantity, double lower,
                                                 omu_RangeQualifierEnm lowerQualifier, double higher,
                                                 omu_RangeQualifierEnm higherQualifier)
    : m_quantity(std::move(quantity)), m_valueKind(FLOAT), m_lowerLimit(omu_PrimNumber::DoubleAsString(lower)),
      m_lowerQualifier(lowerQualifier), m_higherLimit(omu_PrimNumber::DoubleAsString(higher)),
      m_higherQualifier(higherQualifier)
{}

cow_String omu_RangeErrorException::JournalMessage() const
{
    const bool hasLower = m_lowerQualifier != omu_NO_RANGE;
    const bool hasHigher = m_higherQualifier != omu_NO_RANGE;
    cow_String message = Requirement();
    if (hasLower && hasHigher) {
        message += Messages::LabelString(omu_MSG_IN_THE_RANGE) + m_lowerLimit + Below(m_lowerQualifier) + m_quantity +
                   Below(m_higherQualifier) + m_higherLimit;
    } else if (hasLower) {
        message += (m_lowerQualifier == omu_INCLUSIVE ? ">= " : "> ") + m_lowerLimit;
    } else if (hasHigher) {
        message += (m_higherQualifier == omu_INCLUSIVE ? "<= " : "< ") + m_higherLimit;
    } else {
        VEXCRT::_assert("m_LowerLimitQualifier != omu_NO_RANGE || m_HigherLimitQualifier != omu_NO_RANGE",
                        "source/omu/impl/omu_RangeErrorException", __LINE__);
    }
    return message;
}

cow_String omu_RangeErrorException::Requirement() const
{
    switch (m_valueKind) {
    case INTEGER:
        return omu_Substitute(Messages::LabelString(omu_MSG_MUST_BE_INTEGER), m_quantity);
    case FLOAT:
        return omu_Substitute(Messages::LabelString(omu_MSG_MUST_BE_FLOAT), m_quantity);
    case NO_KIND:
        break;
    }
    return m_quantity + " must be ";
}

cow_String omu_RangeErrorException::PythonType() const
{
    return "RangeError";
}

void omu_RangeErrorException::SetLowerLimitAsInt(int limit)
{
    m_lowerLimit = cow_String(limit);
}

void omu_RangeErrorException::SetLowerLimitAsDouble(double limit)
{
    m_lowerLimit = omu_PrimNumber::DoubleAsString(limit);
}

int omu_RangeErrorException::LowerLimitAsInt() const
{
    return AsInt(m_lowerLimit);
}

double omu_RangeErrorException::LowerLimitAsDouble() const
{
    return AsDouble(m_lowerLimit);
}

void omu_RangeErrorException::SetHigherLimitAsInt(int limit)
{
    m_higherLimit = cow_String(limit);
}

void omu_RangeErrorException::SetHigherLimitAsDouble(double limit)
{
    m_higherLimit = omu_PrimNumber::DoubleAsString(limit);
}

int omu_RangeErrorException::HigherLimitAsInt() const
{
    return AsInt(m_higherLimit);
}

double omu_RangeErrorException::HigherLimitAsDouble() const
{
    return AsDouble(m_higherLimit);
}
