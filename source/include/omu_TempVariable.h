#pragma once

#include "VEXomu_export.h"
#include "cow_String.h"

/// A short name for a script variable that no other temporary has while this one, or a copy of it, lives.
///
/// Ownership:  copies hold the same name; it is free again when the last of them is gone.
/// Threads:    the application's main thread; the names in use are those of the process.
/// Complexity: O(names in use).
/// Example:    omu_TempVariable part("part"), point("point");   // named p and p1
class VEXOMU_API omu_TempVariable
{
public:
    /// Takes no name: it reads "None".
    omu_TempVariable() : m_name(NO_NAME) {}
    /// Takes the first character of `base` ("_" when there is none), behind it the lowest of 1, 2, 3 ... when the
    /// character alone is in use.
    explicit omu_TempVariable(const cow_String& base);
    omu_TempVariable(const omu_TempVariable& other);
    omu_TempVariable& operator=(const omu_TempVariable& other);
    ~omu_TempVariable();

    /// The name.
    operator cow_String() const { return m_name; }

private:
    static constexpr const char* NO_NAME = "None";

    cow_String m_name;
};
