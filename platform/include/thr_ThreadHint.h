#pragma once

/// A pointer of each thread to its T: a short cut for the library that owns T, and for those that link to it where that
/// exports the template's instance; never the only way to T.
///
/// Threads:    each thread sees its own pointer, null at first. Where the system takes thread_local storage away before
///             the thread's singletons are destroyed, there is no short cut and Get always gives null.
/// Complexity: one load. Room for it is reserved in every thread, so: one pointer, for what is asked for all the time.
template <class T> class thr_ThreadHint
{
public:
    thr_ThreadHint() = delete;

#if defined(_WIN32)
    static T* Get() noexcept { return nullptr; }
    static void Set(T*) noexcept {}
#else
    static T* Get() noexcept { return value; }
    static void Set(T* pointer) noexcept { value = pointer; }

private:
    [[gnu::tls_model("initial-exec")]] static constinit thread_local inline T* value = nullptr;
#endif
};
