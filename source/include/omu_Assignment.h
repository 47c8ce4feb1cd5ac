#pragma once

#include "VEXomu_export.h"
#include "cow_String.h"

class omu_TempVariable;

/// The command text of one assignment, as a journal holds it.
///
/// Example:    omu_Assignment(temporary, call.CommandText()).CommandText()   // "p = session.part('wing')"
class VEXOMU_API omu_Assignment
{
public:
    omu_Assignment(const cow_String& left, const cow_String& right);
    omu_Assignment(const char* left, const cow_String& right);
    omu_Assignment(const omu_TempVariable& left, const cow_String& right);

    const cow_String& LeftSide() const noexcept { return m_left; }
    const cow_String& RightSide() const noexcept { return m_right; }
    const cow_String& CommandText() const noexcept { return m_commandText; }

private:
    cow_String m_left;
    cow_String m_right;
    cow_String m_commandText;
};
