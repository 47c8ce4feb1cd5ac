#include "omu_Reference.h"

#include "cow_String.h"
#include "pnt_PrettyPrint.h"

#include <ostream>

cow_String omu_Reference::AsString() const
{
    return "catid:" + cow_String(catalogId) + ", id:" + cow_String(id) + ", type:" + cow_String(typeId);
}

std::ostream& operator<<(std::ostream& out, const omu_Reference& reference)
{
    return out << reference.AsString().view();
}

pnt_PrettyPrint& operator<<(pnt_PrettyPrint& out, const omu_Reference& reference)
{
    return out << reference.AsString();
}
