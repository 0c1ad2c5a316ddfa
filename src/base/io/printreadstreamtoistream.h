#pragma once

#include "base/io/printstreamadapter.h"
#include "base/utility/comptr.h"

namespace base::io
{
/// A readable, seekable IStream over a print stream, for XML readers that take parts and tickets.
class PrintReadStreamToIStream final : public PrintStreamAdapter
{
public:
    /// Shares `stream`. Throws HresultError with E_POINTER for null.
    explicit PrintReadStreamToIStream(IPrintReadStream* stream)
        : PrintStreamAdapter(stream), m_pStream(stream)
    {
    }

    /// Calls the print stream until it has given all, is at its end, or fails: the SAX reader of Wine takes a
    /// short read for the end. Unlike other streams this one insists on `bytesRead`.
    STDMETHODIMP Read(void* buffer, ULONG count, ULONG* bytesRead) noexcept override;
    STDMETHODIMP Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* newPosition) noexcept override;
    STDMETHODIMP Stat(STATSTG* statstg, DWORD flag) noexcept override;

private:
    [[nodiscard]] HRESULT Measure() noexcept;

    utility::ComPtr<IPrintReadStream> m_pStream;
    // In bytes; 0 until measured, so that an empty stream is measured each time.
    ULONGLONG m_size = 0;
};
} // namespace base::io
