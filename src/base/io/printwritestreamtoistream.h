#pragma once

#include "base/io/printstreamadapter.h"
#include "base/utility/comptr.h"

namespace base::io
{
/// A write-only IStream over a print stream, for XML writers. The caller closes the print stream.
class PrintWriteStreamToIStream final : public PrintStreamAdapter
{
public:
    /// Keeps a reference to `stream`. Throws HresultError with E_POINTER for null.
    explicit PrintWriteStreamToIStream(IPrintWriteStream* stream)
        : PrintStreamAdapter(stream), m_pStream(stream)
    {
    }

    /// Writes until all bytes are written, the print stream accepts no more, or it fails: MSXML writes each
    /// piece once and ignores the count. E_POINTER without `bytesWritten`, which other streams do not
    /// require.
    STDMETHODIMP Write(const void* buffer, ULONG count, ULONG* bytesWritten) noexcept override;
    STDMETHODIMP Stat(STATSTG* statstg, DWORD flag) noexcept override;

    /// The first failure of all writes; STG_E_MEDIUMFULL when the print stream did not accept all bytes. For
    /// callers whose XML writer ignores failures.
    [[nodiscard]] HRESULT GetResult() const noexcept { return m_result; }

private:
    [[nodiscard]] HRESULT WriteAndCount(const void* buffer, ULONG count, ULONG* bytesWritten) noexcept;

    utility::ComPtr<IPrintWriteStream> m_pStream;
    // In bytes, including those of failed writes.
    ULONGLONG m_size = 0;
    HRESULT m_result = S_OK;
};
} // namespace base::io
