#pragma once

#include "uti_Redirection.h"
#include "uti_Spawn.h"

/// What a command text says.
class uti_Spawn::Parser
{
public:
    explicit Parser(const cow_String& command);

    /// `env`, or this process's environment when it is empty, with the command's overrides. Empty without overrides when
    /// `env` is.
    Environment EnvironmentOver(const Environment& env) const;

    cow_String name;
    utl_FilePath path;
    ArgumentList args;
    Environment overrides;
    uti_Redirection redirection;
};
