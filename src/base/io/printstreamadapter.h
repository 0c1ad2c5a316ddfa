#pragma once

#include "base/utility/comobject.h"
#include "platform/filterpipeline.h"

namespace base::io
{
/// What both views of a pipeline stream as an IStream have in common: the time stamps, the fabricated
/// description, and everything that such a view cannot do.
///
/// Used by one thread at a time. Nothing here throws once an adapter is constructed.
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
    /// Stamps all three times with now. Throws HresultError: E_POINTER without a stream, or the clock's code.
    explicit PrintStreamAdapter(const IUnknown* stream);

    [[nodiscard]] HRESULT StampAccess() noexcept { return CoFileTimeNow(&m_accessTime); }

    /// Fills `description` for a stream of `size` bytes. The name, wanted with STATFLAG_DEFAULT only, is the
    /// caller's to free with CoTaskMemFree; E_OUTOFMEMORY leaves it null and the rest filled.
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
