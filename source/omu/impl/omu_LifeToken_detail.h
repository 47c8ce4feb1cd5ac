#pragma once

#include "cow_String.h"
#include "thr_RefCount.h"

class omu_InterfaceObj;

/// What the references to one kernel object share with it: the object while it lives, and how it called itself when the
/// first reference was made.
/// Ownership: counted; the object and every reference hold one share.
struct omu_LifeToken
{
    thr_RefCount holders{1};
    omu_InterfaceObj* target; // null once the object is gone
    cow_String name;
};

inline void omu_ReleaseLife(omu_LifeToken* token) noexcept
{
    if (token != nullptr && token->holders.Lower()) {
        delete token;
    }
}
