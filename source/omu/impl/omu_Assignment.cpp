#include "omu_Assignment.h"

#include "omu_TempVariable.h"

omu_Assignment::omu_Assignment(const cow_String& left, const cow_String& right)
    : m_left(left), m_right(right), m_commandText(left + " = " + right)
{}

omu_Assignment::omu_Assignment(const char* left, const cow_String& right) : omu_Assignment(cow_String(left), right) {}

omu_Assignment::omu_Assignment(const omu_TempVariable& left, const cow_String& right)
    : omu_Assignment(cow_String(left), right)
{}
