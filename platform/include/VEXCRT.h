#pragma once

#include "VEXCRT_export.h"

/// The runtime shim: where every failed assertion of the system is reported.
///
/// An assertion marks a programming error, never bad input. Reporting one does not stop the program: the code after the
/// report handles the bad case as its class promises.
///
/// Threads: reporting and installing a handler are safe from any thread.
namespace VEXCRT
{
/// Receives a failed assertion: its condition or text, the source it stands in (without file ending), and the line.
using AssertHandler = void (*)(const char* condition, const char* source, int line);

/// Reports a failed assertion to the installed handler. The default handler writes one line
/// "Assertion failed: <condition>, file <source>, line <line>" to standard error and returns; with
/// VEXCRT_ABORT_ON_ASSERT in the environment, whatever its value, it aborts the process instead of returning.
VEXCRT_API void _assert(const char* condition, const char* source, int line);

/// Installs `handler` (null: the default one) and returns the handler it replaces.
VEXCRT_API AssertHandler SetAssertHandler(AssertHandler handler);
} // namespace VEXCRT
