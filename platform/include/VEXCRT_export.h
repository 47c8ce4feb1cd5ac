#pragma once

/// Marks what VEXCRT lets its users link to, and gives the other libraries the two spellings to choose from.
#if defined(_WIN32)
#define VEXCRT_SYMBOL_EXPORT __declspec(dllexport)
#define VEXCRT_SYMBOL_IMPORT __declspec(dllimport)
#else
#define VEXCRT_SYMBOL_EXPORT __attribute__((visibility("default")))
#define VEXCRT_SYMBOL_IMPORT __attribute__((visibility("default")))
#endif

#if defined(VEXCRT_EXPORTS)
#define VEXCRT_API VEXCRT_SYMBOL_EXPORT
#else
#define VEXCRT_API VEXCRT_SYMBOL_IMPORT
#endif
