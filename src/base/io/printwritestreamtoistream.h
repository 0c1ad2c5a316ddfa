#pragma once

#include "base/io/printstreamadapter.h"
#include "base/utility/comptr.h"

namespace base::io
{
/// A write-only IStream over a print stream, for XML writers. Whoever obtained the print stream closes it.
class PrintWriteStreamToIStream final : public PrintStreamAdapter
{
public:
    /// Shares `stream`. Throws HresultError with E_POINTER for null.
    explicit PrintWriteStreamToIStream(IPrintWriteStream* stream)
        : PrintStreamAdapter(stream), m_pStream(stream)
    {
    }

    /// Unlike other streams this one insists on `bytesWritten`.
    STDMETHODIMP Write(const void* buffer, ULONG count, ULONG* bytesWritten) noexcept override;
    STDMETHODIMP Stat(STATSTG* statstg, DWORD flag) noexcept override;

    /// What came of all writes: the first failure, or STG_E_MEDIUMFULL after one that took less than it was
    /// given. For whoever hands this to a writer that does not look.
    [[nodiscard]] HRESULT GetResult() const noexcept { return m_result; }

private:
    [[nodiscard]] HRESULT WriteAndCount(const void* buffer, ULONG count, ULONG* bytesWritten) noexcept;

    utility::ComPtr<IPrintWriteStream> m_pStream;
    // Of all bytes written, also by writes that failed half-way.
    ULONGLONG m_size = 0;
    HRESULT m_result = S_OK;
};
} // namespace base::io
