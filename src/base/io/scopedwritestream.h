#pragma once

#include <utility>

#include "base/utility/comptr.h"
#include "platform/filterpipeline.h"

namespace base::io
{
/// A write stream that somebody obtained and therefore owes a Close: made once, at the latest when this
/// object goes.
class ScopedWriteStream
{
public:
    ScopedWriteStream() = default;
    ScopedWriteStream(const ScopedWriteStream&) = delete;
    ScopedWriteStream& operator=(const ScopedWriteStream&) = delete;
    ~ScopedWriteStream() { Close(); }

    IPrintWriteStream* Get() const noexcept { return m_pStream.Get(); }

    /// Address for a callee's out-parameter; there must be no stream yet.
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
