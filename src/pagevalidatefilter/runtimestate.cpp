#include <cstdlib>

#include "platform/win32.h"

// MinGW links the C++ runtime and its thread library into the module. They allocate a TLS index, two handles
// and some memory when a thread handles an exception or runs a once-function. Nothing of this is freed when
// the module is unloaded: a process that loads the module about a thousand times runs out of TLS indexes and
// aborts. The functions below replace the ones that allocate: the linker finds them before it searches
// the libraries. All but pthread_once belong to the Itanium C++ ABI.

namespace __gnu_cxx
{
/// Frees the memory that the runtime reserves for exceptions when memory has run out. No header declares it.
void __freeres(); // NOLINT(bugprone-reserved-identifier): the runtime's name
} // namespace __gnu_cxx

namespace
{
/// The exceptions that a thread handles, in the layout of the C++ ABI.
struct ThreadExceptions
{
    void* caughtExceptions;
    unsigned int uncaughtExceptions;
};

// Guards the guard variables of all function-local statics.
SRWLOCK g_staticsLock = SRWLOCK_INIT;
CONDITION_VARIABLE g_staticInitialized = CONDITION_VARIABLE_INIT;

/// The slot of each thread's exceptions. It is freed when the module is unloaded. Freeing a fiber-local slot,
/// unlike a thread-local one, also frees the values of all threads.
class ThreadExceptionsSlot
{
public:
    ThreadExceptionsSlot() noexcept : m_index(FlsAlloc(&Free)) {}
    ThreadExceptionsSlot(const ThreadExceptionsSlot&) = delete;
    ThreadExceptionsSlot& operator=(const ThreadExceptionsSlot&) = delete;
    ~ThreadExceptionsSlot()
    {
        FlsFree(m_index);
        __gnu_cxx::__freeres();
    }

    /// Null if the thread has handled no exception.
    ThreadExceptions* Find() const noexcept { return static_cast<ThreadExceptions*>(FlsGetValue(m_index)); }

    ThreadExceptions* FindOrMake() const noexcept
    {
        ThreadExceptions* exceptions = Find();
        if (exceptions == nullptr)
        {
            exceptions = static_cast<ThreadExceptions*>(
                HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(ThreadExceptions)));
            if (exceptions == nullptr || FlsSetValue(m_index, exceptions) == FALSE)
            {
                // No exception can be thrown here. The runtime itself aborts as well.
                std::abort();
            }
        }
        return exceptions;
    }

private:
    static void WINAPI Free(void* exceptions) { HeapFree(GetProcessHeap(), 0, exceptions); }

    DWORD m_index;
};

// Created before all other statics of the module and destroyed after them.
__attribute__((init_priority(101))) const ThreadExceptionsSlot g_threadExceptions;

/// The guard variable of a function-local static. The compiler tests the first byte; the runtime may use the
/// others.
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

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): the linker's names
extern "C"
{
    ThreadExceptions* __cxa_get_globals_fast() noexcept
    {
        return g_threadExceptions.Find();
    }

    ThreadExceptions* __cxa_get_globals() noexcept
    {
        return g_threadExceptions.FindOrMake();
    }

    int __cxa_guard_acquire(StaticGuard* guard) noexcept
    {
        AcquireSRWLockExclusive(&g_staticsLock);
        while (guard->isBeingInitialized)
        {
            SleepConditionVariableSRW(&g_staticInitialized, &g_staticsLock, INFINITE, 0);
        }
        const bool isOurs = !guard->isInitialized;
        guard->isBeingInitialized = isOurs;
        ReleaseSRWLockExclusive(&g_staticsLock);
        return isOurs ? 1 : 0;
    }

    void __cxa_guard_release(StaticGuard* guard) noexcept
    {
        EndInitialization(guard, true);
    }

    void __cxa_guard_abort(StaticGuard* guard) noexcept
    {
        EndInitialization(guard, false);
    }

    // The runtime's once-functions throw nothing.
    int pthread_once(long* control, void (*initialize)())
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
