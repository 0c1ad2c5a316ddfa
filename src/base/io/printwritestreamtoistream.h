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

    /// Calls the print stream until it has taken all, takes nothing any more, or fails: MSXML writes each
    /// piece once and looks at no count. Unlike other streams this one insists on `bytesWritten`.
    STDMETHODIMP Write(const void* buffer, ULONG count, ULONG* bytesWritten) noexcept override;
    STDMETHODIMP Stat(STATSTG* statstg, DWORD flag) noexcept override;

    /// The first failure of all writes; STG_E_MEDIUMFULL when the print stream did not take all. For callers
    /// that hand this to a writer which does not look.
    [[nodiscard]] HRESULT GetResult() const noexcept { return m_result; }

private:
    [[nodiscard]] HRESULT WriteAndCount(const void* buffer, ULONG count, ULONG* bytesWritten) noexcept;

    utility::ComPtr<IPrintWriteStream> m_pStream;
    // In bytes, those of failed writes included.
    ULONGLONG m_size = 0;
    HRESULT m_result = S_OK;
};
} // namespace base::io
