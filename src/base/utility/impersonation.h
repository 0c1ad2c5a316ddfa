#pragma once

#include "platform/win32.h"

namespace base::utility
{
/// Impersonates a user on the current thread while this object lives. Check GetResult before doing anything
/// as the user.
class Impersonation
{
public:
    /// The caller keeps the token. A null token fails: it would leave the thread as it is.
    explicit Impersonation(HANDLE token) noexcept;
    Impersonation(const Impersonation&) = delete;
    Impersonation& operator=(const Impersonation&) = delete;
    ~Impersonation();

    HRESULT GetResult() const noexcept { return m_result; }

private:
    HRESULT m_result;
};
} // namespace base::utility
