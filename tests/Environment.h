#pragma once

#include <cstdlib>
#include <string>

/// Sets a variable of the process's environment, or removes it (null).
inline void SetVariable(const char* name, const char* value)
{
#ifdef _WIN32
    _putenv_s(name, value != nullptr ? value : "");
#else
    value != nullptr ? setenv(name, value, 1) : unsetenv(name);
#endif
}

inline void SetVariable(const char* name, const std::string& value)
{
    SetVariable(name, value.c_str());
}
