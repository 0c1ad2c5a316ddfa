#include <cstdlib>

#include "platform/win32.h"

// MinGW links the C++ runtime and its thread library into the module. Every thread that handles an exception
// or runs a once-function costs a TLS index, two handles and some memory, and none of it is given back when
// the module is unloaded: a process that loads the module about a thousand times runs out of TLS indexes and
// aborts. The functions below take the place of those that bring this about: by the option --wrap the linker
// sends calls of NAME to __wrap_NAME. All but pthread_once belong to the Itanium C++ ABI.

namespace __gnu_cxx
{
/// Frees the runtime's reserve for exceptions that are thrown when memory has run out. Declared in no header.
void __freeres(); // NOLINT(bugprone-reserved-identifier): the runtime's name
} // namespace __gnu_cxx

namespace
{
/// The exceptions that a thread handles, laid out as the C++ ABI has it.
struct ThreadExceptions
{
    void* caughtExceptions;
    unsigned int uncaughtExceptions;
};

// Guards the state of all function-local statics.
SRWLOCK g_staticsLock = SRWLOCK_INIT;
CONDITION_VARIABLE g_staticInitialized = CONDITION_VARIABLE_INIT;

/// A slot for each thread's exceptions, which is freed, with what it holds, when the module is unloaded. A
/// fiber-local slot, unlike a thread-local one, can be freed together with the values of all threads.
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

    /// Null for a thread that has handled no exception.
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
                // No exception can be thrown about this. The runtime itself aborts here, too.
                std::abort();
            }
        }
        return exceptions;
    }

private:
    static void WINAPI Free(void* exceptions) { HeapFree(GetProcessHeap(), 0, exceptions); }

    DWORD m_index;
};

// Made before every other static of the module and destroyed after them.
__attribute__((init_priority(101))) const ThreadExceptionsSlot g_threadExceptions;

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

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): the linker's names
extern "C"
{
    ThreadExceptions* __wrap___cxa_get_globals_fast() noexcept
    {
        return g_threadExceptions.Find();
    }

    ThreadExceptions* __wrap___cxa_get_globals() noexcept
    {
        return g_threadExceptions.FindOrMake();
    }

    int __wrap___cxa_guard_acquire(StaticGuard* guard) noexcept
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

    void __wrap___cxa_guard_release(StaticGuard* guard) noexcept
    {
        EndInitialization(guard, true);
    }

    void __wrap___cxa_guard_abort(StaticGuard* guard) noexcept
    {
        EndInitialization(guard, false);
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
