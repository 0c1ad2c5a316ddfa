#include "base/io/printstreamadapter.h"

#include <algorithm>
#include <string_view>

#include "base/logging/errors.h"

namespace base::io
{
namespace
{
/// Copies the name; null when memory runs out. The block has four bytes for each character and for the
/// terminator, more than the name needs.
wchar_t* CopyName(std::wstring_view name) noexcept
{
    constexpr std::size_t bytesPerCharacter = 4;
    auto* copy = static_cast<wchar_t*>(CoTaskMemAlloc((name.size() + 1) * bytesPerCharacter));
    if (copy != nullptr)
    {
        *std::copy(name.begin(), name.end(), copy) = L'\0';
    }
    return copy;
}
} // namespace

PrintStreamAdapter::PrintStreamAdapter(const IUnknown* stream)
{
    if (stream == nullptr)
    {
        exception::ThrowIfFailed(E_POINTER);
    }
    for (FILETIME* stamp : {&m_modificationTime, &m_creationTime, &m_accessTime})
    {
        exception::ThrowIfFailed(CoFileTimeNow(stamp));
    }
}

HRESULT PrintStreamAdapter::Describe(const wchar_t* name,
                                     ULONGLONG size,
                                     DWORD flag,
                                     STATSTG& description) const noexcept
{
    description = {};
    description.type = STGTY_STREAM;
    description.cbSize.QuadPart = size;
    description.mtime = m_modificationTime;
    description.ctime = m_creationTime;
    description.atime = m_accessTime;
    description.grfMode = STGM_SHARE_DENY_WRITE;
    description.grfLocksSupported = LOCK_WRITE;
    if (flag != STATFLAG_DEFAULT)
    {
        return S_OK;
    }
    description.pwcsName = CopyName(name);
    return description.pwcsName != nullptr ? S_OK : E_OUTOFMEMORY;
}
} // namespace base::io
