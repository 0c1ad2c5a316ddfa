#pragma once

#include <utility>

#include "base/utility/comptr.h"
#include "platform/filterpipeline.h"

namespace base::io
{
/// Owns a write stream that must be closed. Closes it exactly once: in Close, or else on destruction. The
/// result of closing is ignored.
class ScopedWriteStream
{
public:
    ScopedWriteStream() = default;
    ScopedWriteStream(const ScopedWriteStream&) = delete;
    ScopedWriteStream& operator=(const ScopedWriteStream&) = delete;
    ~ScopedWriteStream() { Close(); }

    IPrintWriteStream* Get() const noexcept { return m_pStream.Get(); }

    /// Address for a callee's out-parameter; the object must hold no stream.
    IPrintWriteStream** Receive() noexcept { return m_pStream.Receive(); }

    void Close() noexcept
    {
        if (const auto stream = std::exchange(m_pStream, {}))
        {
            stream->Close();
        }
    }

private:
    utility::ComPtr<IPrintWriteStream> m_pStream;
};
} // namespace base::io
