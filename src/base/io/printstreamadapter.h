#pragma once

#include "base/utility/comobject.h"
#include "platform/filterpipeline.h"

namespace base::io
{
/// The common base of the two IStream adapters over print streams: the time stamps, the description, and
/// E_NOTIMPL for what neither adapter supports.
///
/// Used by one thread at a time. Only construction throws.
class PrintStreamAdapter : public utility::ComObject<IStream>
{
public:
    STDMETHODIMP Read(void*, ULONG, ULONG*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Write(const void*, ULONG, ULONG*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Seek(LARGE_INTEGER, DWORD, ULARGE_INTEGER*) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP SetSize(ULARGE_INTEGER) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) noexcept override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP Commit(DWORD) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Revert() noexcept override { return E_NOTIMPL; }
    STDMETHODIMP LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) noexcept override { return E_NOTIMPL; }
    STDMETHODIMP Clone(IStream**) noexcept override { return E_NOTIMPL; }

protected:
    /// Sets all three times to the current time. Throws HresultError: E_POINTER without a stream, or the
    /// clock's code.
    explicit PrintStreamAdapter(const IUnknown* stream);

    [[nodiscard]] HRESULT StampAccess() noexcept { return CoFileTimeNow(&m_accessTime); }

    /// Fills `description` for a stream of `size` bytes. The name is set for STATFLAG_DEFAULT only; the
    /// caller frees it with CoTaskMemFree. With E_OUTOFMEMORY the name is null and the rest is filled.
    [[nodiscard]] HRESULT Describe(const wchar_t* name,
                                   ULONGLONG size,
                                   DWORD flag,
                                   STATSTG& description) const noexcept;

private:
    FILETIME m_modificationTime{};
    FILETIME m_creationTime{};
    FILETIME m_accessTime{};
};
} // namespace base::io
