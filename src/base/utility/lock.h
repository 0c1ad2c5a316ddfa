#pragma once

#include "platform/win32.h"

namespace base::utility
{
/// A lock for std::lock_guard that allocates no memory. MinGW's std::mutex allocates when it is first locked,
/// so that locking can fail.
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
