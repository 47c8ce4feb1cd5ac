#pragma once

#include "VEXCRT_export.h"
#include "thr_ThreadSingleton.h"

#include <array>
#include <cstdint>
#include <string>

#if defined(test_second_EXPORTS)
#define SECOND_API VEXCRT_SYMBOL_EXPORT
#else
#define SECOND_API VEXCRT_SYMBOL_IMPORT
#endif

class omu_Primitive;
class second_Shared;
extern template class SECOND_API thr_ThreadSingletonBase<second_Shared>;
extern template class SECOND_API thr_ThreadSingleton<second_Shared>;

/// A per-thread singleton of a user's library.
class SECOND_API second_Shared : public thr_ThreadSingletonBase<second_Shared>
{
public:
    static int Destroyed();

private:
    friend class thr_ThreadSingleton<second_Shared>;
    friend class thr_ThreadSingletonBase<second_Shared>;

    second_Shared() = default;
    ~second_Shared();
};

/// A user's library beside a user's program: both link the same VEXomu.
namespace second
{
enum class Error
{
    ARGUMENT,
    RANGE,
    SYSTEM,
    TEXT,
    TOO_LONG ///< of the standard library, thrown by VEXutl
};
SECOND_API void Throw(Error error);
/// The first that fits: "argument", "type", "system", "text", "nex" or "other", and what the error says.
SECOND_API std::string Caught(void (*thrower)());

/// Where this library finds the instances of process and thread.
SECOND_API std::array<const void*, 6> Instances();

constexpr std::uint32_t ROW = (300U << 16) + 1;
/// Registers a class of this library at ROW.
SECOND_API void Register();
/// (1, 'a', [2.5]), owned by the caller.
SECOND_API omu_Primitive* NewTuple();
} // namespace second
