#include "base/io/printwritestreamtoistream.h"

namespace base::io
{
STDMETHODIMP PrintWriteStreamToIStream::Write(const void* buffer, ULONG count, ULONG* bytesWritten) noexcept
{
    const HRESULT hr = WriteAndCount(buffer, count, bytesWritten);
    if (SUCCEEDED(m_result))
    {
        m_result = SUCCEEDED(hr) && count != 0 && *bytesWritten < count ? STG_E_MEDIUMFULL : hr;
    }
    return hr;
}

STDMETHODIMP PrintWriteStreamToIStream::Stat(STATSTG* statstg, DWORD flag) noexcept
{
    return statstg == nullptr ? E_POINTER : Describe(L"PrintWriteStream", m_size, flag, *statstg);
}

HRESULT PrintWriteStreamToIStream::WriteAndCount(const void* buffer,
                                                 ULONG count,
                                                 ULONG* bytesWritten) noexcept
{
    if (buffer == nullptr || bytesWritten == nullptr)
    {
        return E_POINTER;
    }
    // A write updates the time of access; the time of modification stays that of construction.
    if (const HRESULT stamped = StampAccess(); FAILED(stamped))
    {
        return stamped;
    }
    if (count == 0)
    {
        return S_OK;
    }
    const auto* const bytes = static_cast<const BYTE*>(buffer);
    *bytesWritten = 0;
    HRESULT hr = S_OK;
    ULONG taken = 0;
    do
    {
        // A stream that fails may not set the count.
        taken = 0;
        hr = m_pStream->WriteBytes(bytes + *bytesWritten, count - *bytesWritten, &taken);
        *bytesWritten += taken;
    } while (SUCCEEDED(hr) && taken != 0 && *bytesWritten < count);
    m_size += *bytesWritten;
    return hr;
}
} // namespace base::io
