#pragma once

#include "platform/win32.h"

namespace base::utility
{
/// Lets the current thread act as a user for as long as this object lives. What comes of it must be asked
/// before anything is done in the user's name.
class Impersonation
{
public:
    /// The token stays the caller's. A null token, which would leave the thread as it is, is refused.
    explicit Impersonation(HANDLE token) noexcept;
    Impersonation(const Impersonation&) = delete;
    Impersonation& operator=(const Impersonation&) = delete;
    ~Impersonation();

    HRESULT GetResult() const noexcept { return m_result; }

private:
    HRESULT m_result;
};
} // namespace base::utility
