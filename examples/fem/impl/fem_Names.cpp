#include "fem_Names.h"

#include "omu_KeyErrorException.h"
#include "omu_ValueErrorException.h"

void fem_CheckNewName(const char* kind, const cow_String& name, bool isTaken)
{
    if (name.IsEmpty()) {
        omu_ValueErrorException(cow_String("a ") + kind + " needs a name")
            .Throw("examples/fem/impl/fem_Names", __LINE__);
    }
    if (isTaken) {
        omu_ValueErrorException(cow_String("there is a ") + kind + " named '" + name + "' already")
            .Throw("examples/fem/impl/fem_Names", __LINE__);
    }
}

void fem_ThrowUnknownName(const char* kind, const cow_String& name)
{
    omu_KeyErrorException(cow_String("there is no ") + kind + " named '" + name + "'")
        .Throw("examples/fem/impl/fem_Names", __LINE__);
}
