#pragma once

#include "platform/win32.h"

// Tokens of the user who submitted a job.
namespace support
{
/// Whether the current thread has a token of its own.
inline bool IsThreadImpersonating()
{
    HANDLE token = nullptr;
    const bool hasToken = OpenThreadToken(GetCurrentThread(), TOKEN_QUERY, TRUE, &token) != FALSE;
    if (hasToken)
    {
        CloseHandle(token);
    }
    return hasToken;
}

/// Creates a token to impersonate the current user; the caller closes it.
inline HANDLE OpenUserToken()
{
    HANDLE primary = nullptr;
    HANDLE impersonation = nullptr;
    OpenProcessToken(GetCurrentProcess(), TOKEN_DUPLICATE | TOKEN_QUERY, &primary);
    DuplicateToken(primary, SecurityImpersonation, &impersonation);
    CloseHandle(primary);
    return impersonation;
}

/// A token that lives as long as the program.
inline HANDLE UserToken()
{
    static HANDLE token = OpenUserToken();
    return token;
}
} // namespace support
