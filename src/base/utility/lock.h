#pragma once

#include "platform/win32.h"

namespace base::utility
{
/// A lock that needs no memory, for std::lock_guard: MinGW's std::mutex allocates when it is first taken, and
/// taking it can therefore fail.
class Lock
{
public:
    Lock() = default;
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    ~Lock() = default;

    // NOLINTBEGIN(readability-identifier-naming): the names that std::lock_guard calls.
    void lock() noexcept { AcquireSRWLockExclusive(&m_lock); }
    void unlock() noexcept { ReleaseSRWLockExclusive(&m_lock); }
    // NOLINTEND(readability-identifier-naming)

private:
    SRWLOCK m_lock = SRWLOCK_INIT;
};
} // namespace base::utility
