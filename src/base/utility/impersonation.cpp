#include "base/utility/impersonation.h"

#include "base/logging/errors.h"

namespace base::utility
{
namespace
{
HRESULT Assume(HANDLE token) noexcept
{
    if (token == nullptr)
    {
        return HRESULT_FROM_WIN32(ERROR_INVALID_HANDLE);
    }
    return SetThreadToken(nullptr, token) ? S_OK : exception::GetLastFailure();
}
} // namespace

Impersonation::Impersonation(HANDLE token) noexcept : m_result(Assume(token)) {}

Impersonation::~Impersonation()
{
    if (SUCCEEDED(m_result))
    {
        SetThreadToken(nullptr, nullptr);
    }
}
} // namespace base::utility
