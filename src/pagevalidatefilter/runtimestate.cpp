#include "pagevalidatefilter/runtimestate.h"

#include <cstdlib>

#include "platform/win32.h"

// MinGW links its thread library and the C++ runtime into the module. They register every thread that handles
// an exception or runs a once-function with a TLS index, two handles and some memory, and give none of it
// back when the module is unloaded: a process that loads the module about a thousand times runs out of TLS
// indexes and aborts. The functions below stand in for the ones that do so. The linker sends every call of
// NAME to __wrap_NAME (option
// --wrap). All but pthread_once are functions of the Itanium C++ ABI.

namespace __gnu_cxx
{
/// Frees the runtime's reserve for exceptions that are thrown when memory has run out. Declared in no header.
void __freeres(); // NOLINT(bugprone-reserved-identifier): the runtime's name
} // namespace __gnu_cxx

namespace pagevalidatefilter
{
namespace
{
/// The exceptions that a thread handles, laid out as the C++ ABI has it.
struct ThreadExceptions
{
    void* caughtExceptions;
    unsigned int uncaughtExceptions;
};

// A fiber-local slot, unlike a thread-local one, can be freed together with the values of all threads.
DWORD g_threadExceptions = FLS_OUT_OF_INDEXES;

// Guards the state of all function-local statics.
SRWLOCK g_staticsLock = SRWLOCK_INIT;
CONDITION_VARIABLE g_staticInitialized = CONDITION_VARIABLE_INIT;

void WINAPI FreeThreadExceptions(void* exceptions)
{
    HeapFree(GetProcessHeap(), 0, exceptions);
}

ThreadExceptions* FindThreadExceptions() noexcept
{
    return static_cast<ThreadExceptions*>(FlsGetValue(g_threadExceptions));
}

/// The guard variable of a function-local static. The compiler tests the first byte; the others are the
/// runtime's.
struct StaticGuard
{
    bool isInitialized;
    bool isBeingInitialized;
};

void EndInitialization(StaticGuard* guard, bool isInitialized) noexcept
{
    AcquireSRWLockExclusive(&g_staticsLock);
    *guard = {isInitialized, false};
    ReleaseSRWLockExclusive(&g_staticsLock);
    WakeAllConditionVariable(&g_staticInitialized);
}
} // namespace

bool AttachRuntime() noexcept
{
    g_threadExceptions = FlsAlloc(&FreeThreadExceptions);
    return g_threadExceptions != FLS_OUT_OF_INDEXES;
}

void DetachRuntime() noexcept
{
    FlsFree(g_threadExceptions);
    __gnu_cxx::__freeres();
}
} // namespace pagevalidatefilter

using pagevalidatefilter::StaticGuard;
using pagevalidatefilter::ThreadExceptions;

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): the names that the linker looks
// for
extern "C"
{
    ThreadExceptions* __wrap___cxa_get_globals_fast() noexcept
    {
        return pagevalidatefilter::FindThreadExceptions();
    }

    ThreadExceptions* __wrap___cxa_get_globals() noexcept
    {
        ThreadExceptions* exceptions = pagevalidatefilter::FindThreadExceptions();
        if (exceptions == nullptr)
        {
            exceptions = static_cast<ThreadExceptions*>(
                HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(ThreadExceptions)));
            if (exceptions == nullptr ||
                FlsSetValue(pagevalidatefilter::g_threadExceptions, exceptions) == FALSE)
            {
                // An exception cannot be thrown for it. The runtime itself aborts here, too.
                std::abort();
            }
        }
        return exceptions;
    }

    int __wrap___cxa_guard_acquire(StaticGuard* guard) noexcept
    {
        AcquireSRWLockExclusive(&pagevalidatefilter::g_staticsLock);
        while (guard->isBeingInitialized)
        {
            SleepConditionVariableSRW(
                &pagevalidatefilter::g_staticInitialized, &pagevalidatefilter::g_staticsLock, INFINITE, 0);
        }
        const bool isOurs = !guard->isInitialized;
        guard->isBeingInitialized = isOurs;
        ReleaseSRWLockExclusive(&pagevalidatefilter::g_staticsLock);
        return isOurs ? 1 : 0;
    }

    void __wrap___cxa_guard_release(StaticGuard* guard) noexcept
    {
        pagevalidatefilter::EndInitialization(guard, true);
    }

    void __wrap___cxa_guard_abort(StaticGuard* guard) noexcept
    {
        pagevalidatefilter::EndInitialization(guard, false);
    }

    // The runtime's own once-functions throw nothing.
    int __wrap_pthread_once(long* control, void (*initialize)())
    {
        constexpr long untouched = 0;
        constexpr long done = 1;
        constexpr long running = 2;
        for (;;)
        {
            switch (InterlockedCompareExchange(control, running, untouched))
            {
            case untouched:
                initialize();
                InterlockedExchange(control, done);
                return 0;
            case done:
                return 0;
            default:
                SwitchToThread();
            }
        }
    }
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
