#pragma once

#include "pnt_debugPrint.h"

#include <sstream>
#include <string>

/// What `call` writes to the debugging text.
template <class Call> std::string DebugText(Call call)
{
    std::ostringstream text;
    pnt_debugPrint().SetStream(&text);
    pnt_debugPrint().StartDebug();
    call();
    pnt_debugPrint().EndDebug();
    pnt_debugPrint().SetStream(nullptr);
    return text.str();
}
