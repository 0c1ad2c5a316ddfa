#pragma once

#include "base/io/printstreamadapter.h"
#include "base/utility/comptr.h"

namespace base::io
{
/// A readable, seekable IStream over a print stream, from which XML readers read parts and tickets.
class PrintReadStreamToIStream final : public PrintStreamAdapter
{
public:
    /// Keeps a reference to `stream`. Throws HresultError with E_POINTER for null.
    explicit PrintReadStreamToIStream(IPrintReadStream* stream)
        : PrintStreamAdapter(stream), m_pStream(stream)
    {
    }

    /// Reads until `count` bytes are read, the print stream ends, or it fails: Wine's SAX reader takes a
    /// short read as the end. E_POINTER without `bytesRead`, which other streams do not require.
    STDMETHODIMP Read(void* buffer, ULONG count, ULONG* bytesRead) noexcept override;
    STDMETHODIMP Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* newPosition) noexcept override;
    STDMETHODIMP Stat(STATSTG* statstg, DWORD flag) noexcept override;

private:
    [[nodiscard]] HRESULT Measure() noexcept;

    utility::ComPtr<IPrintReadStream> m_pStream;
    // In bytes; 0 until measured, so an empty stream is measured each time.
    ULONGLONG m_size = 0;
};
} // namespace base::io
