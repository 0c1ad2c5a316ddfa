#include "base/io/printreadstreamtoistream.h"

namespace base::io
{
STDMETHODIMP PrintReadStreamToIStream::Read(void* buffer, ULONG count, ULONG* bytesRead) noexcept
{
    if (buffer == nullptr || bytesRead == nullptr)
    {
        return E_POINTER;
    }
    if (count != 0)
    {
        // Set before anything can fail: MSXML in Wine 8 uses the count before it checks the result.
        *bytesRead = 0;
    }
    if (const HRESULT stamped = StampAccess(); FAILED(stamped))
    {
        return stamped;
    }
    if (count == 0)
    {
        return S_OK;
    }
    auto* const bytes = static_cast<BYTE*>(buffer);
    HRESULT hr = S_OK;
    ULONG read = 0;
    BOOL endOfFile = FALSE;
    do
    {
        // A stream that fails may not set the count.
        read = 0;
        hr = m_pStream->ReadBytes(bytes + *bytesRead, count - *bytesRead, &read, &endOfFile);
        *bytesRead += read;
    } while (SUCCEEDED(hr) && read != 0 && endOfFile == FALSE && *bytesRead < count);
    return hr;
}

STDMETHODIMP PrintReadStreamToIStream::Seek(LARGE_INTEGER move,
                                            DWORD origin,
                                            ULARGE_INTEGER* newPosition) noexcept
{
    ULONGLONG position = 0;
    const HRESULT hr = m_pStream->Seek(move.QuadPart, origin, &position);
    if (SUCCEEDED(hr) && newPosition != nullptr)
    {
        newPosition->QuadPart = position;
    }
    return hr;
}

STDMETHODIMP PrintReadStreamToIStream::Stat(STATSTG* statstg, DWORD flag) noexcept
{
    if (statstg == nullptr)
    {
        return E_POINTER;
    }
    if (m_size == 0)
    {
        if (const HRESULT measured = Measure(); FAILED(measured))
        {
            return measured;
        }
    }
    return Describe(L"PrintReadStream", m_size, flag, *statstg);
}

HRESULT PrintReadStreamToIStream::Measure() noexcept
{
    ULONGLONG position = 0;
    if (const HRESULT hr = m_pStream->Seek(0, STREAM_SEEK_CUR, &position); FAILED(hr))
    {
        return hr;
    }
    ULONGLONG length = 0;
    if (const HRESULT hr = m_pStream->Seek(0, STREAM_SEEK_END, &length); FAILED(hr))
    {
        return hr;
    }
    ULONGLONG restored = 0;
    const HRESULT hr = m_pStream->Seek(static_cast<LONGLONG>(position), STREAM_SEEK_SET, &restored);
    if (SUCCEEDED(hr))
    {
        m_size = length;
    }
    return hr;
}
} // namespace base::io
