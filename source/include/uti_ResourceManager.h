#pragma once

#include "VEXomu_export.h"
#include "cow_String.h"
#include "thr_ThreadSingleton.h"
#include "thr_ThreadSingletonBase.h"

#include <functional>
#include <utility>

class uti_ResourceManager;
extern template class VEXOMU_API thr_ThreadSingletonBase<uti_ResourceManager>;
extern template class VEXOMU_API thr_ThreadSingleton<uti_ResourceManager>;

/// Decides which text a user sees where the program has a label and a default text: the place where
/// translations come in. Without a lookup the default text is shown.
///
/// Ownership:  one instance for each thread, made on first use and destroyed when the thread ends; owns its lookup,
///             which starts as a copy of the process's.
/// Threads:    every thread has its own lookup; install it on each thread that shows texts.
/// Errors:     Text throws what the lookup throws.
/// Example:    thr_ThreadSingleton<uti_ResourceManager>::Instance().InstallLookup(uti_MessageFile("messages.de"));
class VEXOMU_API uti_ResourceManager : public thr_ThreadSingletonBase<uti_ResourceManager>
{
public:
    /// The text to show for a label and its default text. It must not install another lookup.
    using Lookup = std::function<cow_String(const char* label, const char* defaultText)>;

    /// The text to show.
    cow_String Text(const char* label, const char* defaultText) const;

    /// Replaces the calling thread's lookup; an empty one shows the default texts again.
    void InstallLookup(Lookup lookup) { m_lookup = std::move(lookup); }

    /// Replaces the lookup that threads start with. Those that have a manager already keep theirs.
    static void InstallForNewThreads(Lookup lookup);

private:
    friend class thr_ThreadSingleton<uti_ResourceManager>;

    uti_ResourceManager();
    static int Finalize();

    Lookup m_lookup;
};
