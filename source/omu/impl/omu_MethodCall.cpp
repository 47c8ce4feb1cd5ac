#include "omu_MethodCall.h"

#include "omu_Arguments.h"

omu_MethodCall::omu_MethodCall(const cow_String& objectPath, const cow_String& methodName,
                               const omu_Arguments& arguments)
    : m_objectPath(objectPath), m_methodName(methodName), m_commandText(objectPath)
{
    if (!objectPath.IsEmpty()) {
        m_commandText.Append('.');
    }
    m_commandText += methodName;
    m_commandText += arguments.AsString(0);
}
