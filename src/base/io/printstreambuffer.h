#pragma once

#include <cstdint>
#include <streambuf>

#include "base/utility/comptr.h"
#include "platform/filterpipeline.h"

namespace base::io
{
/// Lets standard streams read from or write to a print stream. Nothing is buffered: every operation calls the
/// print stream. Seeking is possible forward only, relative to the current position. The reading half has no
/// caller in this module (docs/surface.md).
///
/// If the print stream fails on a single character, the result is end-of-file; on a bulk write
/// std::overflow_error is thrown. Reading from a write stream, and the reverse, throws std::logic_error. The
/// caller closes the print stream.
class PrintStreamBuffer : public std::streambuf
{
public:
    explicit PrintStreamBuffer(IPrintWriteStream* stream) : m_pWriteStream(stream) {}
    explicit PrintStreamBuffer(IPrintReadStream* stream) : m_pReadStream(stream) {}

protected:
    int_type overflow(int_type c) override;
    int_type underflow() override;
    int_type uflow() override;
    std::streamsize xsgetn(char* buffer, std::streamsize count) override;
    std::streamsize xsputn(const char* text, std::streamsize count) override;
    pos_type seekoff(off_type offset,
                     std::ios_base::seekdir direction,
                     std::ios_base::openmode which) override;
    pos_type seekpos(pos_type position, std::ios_base::openmode which) override;

private:
    [[nodiscard]] HRESULT ReadOnce(char* buffer, ULONG count, ULONG& read);
    void Skip(off_type count);
    void Fill(off_type count);

    utility::ComPtr<IPrintWriteStream> m_pWriteStream;
    std::uint32_t m_bytesWritten = 0;
    utility::ComPtr<IPrintReadStream> m_pReadStream;
    // Includes a character that was peeked at.
    std::uint32_t m_bytesRead = 0;
};
} // namespace base::io
