#pragma once

#include <cstdlib>
#include <string>

/// Sets a variable of the process's environment.
inline void SetVariable(const char* name, const std::string& value)
{
#ifdef _WIN32
    _putenv_s(name, value.c_str());
#else
    setenv(name, value.c_str(), 1);
#endif
}
