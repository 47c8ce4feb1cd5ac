#pragma once

#include "VEXomu_export.h"
#include "cow_String.h"

class omu_Arguments;

/// The command text of one method call, as a journal holds it: it runs again.
///
/// Complexity: O(length of the text), at construction.
/// Example:    omu_MethodCall("session.model('m')", "addNode", arguments).CommandText()
class VEXOMU_API omu_MethodCall
{
public:
    /// With an empty path it is the call of a function.
    omu_MethodCall(const cow_String& objectPath, const cow_String& methodName, const omu_Arguments& arguments);

    const cow_String& ObjectPath() const noexcept { return m_objectPath; }
    const cow_String& MethodName() const noexcept { return m_methodName; }
    const cow_String& CommandText() const noexcept { return m_commandText; }

private:
    cow_String m_objectPath;
    cow_String m_methodName;
    cow_String m_commandText;
};
