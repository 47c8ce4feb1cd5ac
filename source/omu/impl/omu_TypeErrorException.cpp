#include "omu_TypeErrorException.h"

#include "VEXCRT.h"
#include "obj_Stream.h"
#include "omu_TypeIds.h"

template <>
const uti_LabelEntry uti_LabelMap<omu_TypeErrorExceptionEnm>::ENTRIES[] = {
    {omu_MSG_ILLEGAL_TYPE, "omu_TypeErrorException_MSGID_00", "illegal argument type for built-in operation"},
    {omu_MSG_ARG, "omu_TypeErrorException_MSGID_01", "arg"},
    {omu_MSG_MISSING_ARGUMENTS, "omu_TypeErrorException_MSGID_02", "not all required arguments specified"},
    {omu_MSG_EXPECTED_GOT, "omu_TypeErrorException_MSGID_03", "; expected %1$s, got %2$s"},
    {omu_MSG_KEYWORD_ERROR, "omu_TypeErrorException_MSGID_04", "keyword error on %s"},
    {omu_MSG_FOUND_EXPECTING, "omu_TypeErrorException_MSGID_05", "; found %1$s, expecting %2$s"},
    {omu_MSG_TOO_MANY_ARGUMENTS, "omu_TypeErrorException_MSGID_06", "too many arguments"},
    {0, nullptr, nullptr},
};

std::uint32_t omu_TypeErrorException::DynTypeId() const
{
    return TypeId();
}

cow_String omu_TypeErrorException::PythonType() const
{
    return "TypeError";
}

std::uint32_t omu_TypeErrorException::TypeId()
{
    return omu_TypeIdOf(omu_TypeErrorExceptionRow);
}

void* omu_TypeErrorException::CtorFunc(bio_Ifilter&, void*)
{
    VEXCRT::_assert("omu_TypeErrorException::CtorFunc(): Illegal call to abstract class constructor.",
                    "source/omu/impl/omu_TypeErrorException", __LINE__);
    return nullptr;
}

void omu_TypeErrorException::DtorFunc(void* object)
{
    obj_Destroy<omu_TypeErrorException>(object);
}

void omu_TypeErrorException::ReadData(bio_Ifilter& in, void* object)
{
    nex_CommandException::ReadData(in, object);
}

void omu_TypeErrorException::WriteData(bio_Ofilter& out, const void* object)
{
    nex_CommandException::WriteData(out, object);
}

void omu_TypeErrorException::PrintData(pnt_PrettyPrint& out, const void* object)
{
    out.Open("omu_TypeErrorException");
    nex_CommandException::PrintData(out, object);
    out.Close();
}
