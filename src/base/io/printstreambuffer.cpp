#include "base/io/printstreambuffer.h"

#include <algorithm>
#include <array>
#include <limits>
#include <stdexcept>

namespace base::io
{
namespace
{
using Traits = std::char_traits<char>;

// A forward seek reads or writes pieces of this many bytes.
constexpr std::streamsize kPiece = 4096;

ULONG ForOneCall(std::streamsize count) noexcept
{
    constexpr std::streamsize limit = std::numeric_limits<ULONG>::max();
    return static_cast<ULONG>(std::clamp<std::streamsize>(count, 0, limit));
}

/// Returns whether the seek is relative to the current position, the only kind that moves.
bool IsRelativeToCurrent(std::ios_base::seekdir direction)
{
    switch (direction)
    {
    case std::ios_base::cur:
        return true;
    case std::ios_base::beg:
    case std::ios_base::end:
        return false;
    default:
        throw std::invalid_argument("invalide std::ios_base::seekdir");
    }
}
} // namespace

PrintStreamBuffer::int_type PrintStreamBuffer::overflow(int_type c)
{
    if (Traits::eq_int_type(c, Traits::eof()) || !m_pWriteStream)
    {
        return Traits::eof();
    }
    const char byte = Traits::to_char_type(c);
    ULONG written = 0;
    const HRESULT hr = m_pWriteStream->WriteBytes(&byte, 1, &written);
    m_bytesWritten += written;
    return SUCCEEDED(hr) && written == 1 ? c : Traits::eof();
}

PrintStreamBuffer::int_type PrintStreamBuffer::uflow()
{
    char byte = 0;
    ULONG read = 0;
    return SUCCEEDED(ReadOnce(&byte, 1, read)) && read == 1 ? Traits::to_int_type(byte) : Traits::eof();
}

PrintStreamBuffer::int_type PrintStreamBuffer::underflow()
{
    const int_type c = uflow();
    if (Traits::eq_int_type(c, Traits::eof()))
    {
        return c;
    }
    ULONGLONG position = 0;
    return SUCCEEDED(m_pReadStream->Seek(-1, STREAM_SEEK_CUR, &position)) ? c : Traits::eof();
}

std::streamsize PrintStreamBuffer::xsgetn(char* buffer, std::streamsize count)
{
    // Return the bytes read before a failure; the next call fails again.
    ULONG read = 0;
    static_cast<void>(ReadOnce(buffer, ForOneCall(count), read));
    return static_cast<std::streamsize>(read);
}

std::streamsize PrintStreamBuffer::xsputn(const char* text, std::streamsize count)
{
    if (!m_pWriteStream)
    {
        throw std::logic_error("write data from buffer which to use for read.");
    }
    ULONG written = 0;
    const HRESULT hr = m_pWriteStream->WriteBytes(text, ForOneCall(count), &written);
    m_bytesWritten += written;
    if (FAILED(hr))
    {
        throw std::overflow_error("IPrintWriteStream::WriteBytes failed.");
    }
    return static_cast<std::streamsize>(written);
}

PrintStreamBuffer::pos_type PrintStreamBuffer::seekoff(off_type offset,
                                                       std::ios_base::seekdir direction,
                                                       std::ios_base::openmode which)
{
    if (offset < 0)
    {
        return pos_type(off_type(-1));
    }
    if ((which & std::ios_base::in) != 0 && IsRelativeToCurrent(direction))
    {
        Skip(offset);
        return m_bytesRead;
    }
    if ((which & std::ios_base::out) != 0 && IsRelativeToCurrent(direction))
    {
        Fill(offset);
        return m_bytesWritten;
    }
    return pos_type(off_type(-1));
}

PrintStreamBuffer::pos_type PrintStreamBuffer::seekpos(pos_type position, std::ios_base::openmode which)
{
    return seekoff(position, std::ios_base::beg, which);
}

HRESULT PrintStreamBuffer::ReadOnce(char* buffer, ULONG count, ULONG& read)
{
    if (!m_pReadStream)
    {
        throw std::logic_error("read data from buffer which to use for write.");
    }
    BOOL endOfFile = FALSE;
    const HRESULT hr = m_pReadStream->ReadBytes(buffer, count, &read, &endOfFile);
    m_bytesRead += read;
    return hr;
}

void PrintStreamBuffer::Skip(off_type count)
{
    std::array<char, kPiece> discarded;
    std::streamsize moved = 0;
    do
    {
        moved = xsgetn(discarded.data(), std::min(count, kPiece));
        count -= moved;
    } while (count > 0 && moved > 0);
}

void PrintStreamBuffer::Fill(off_type count)
{
    static constexpr std::array<char, kPiece> zeros{};
    std::streamsize moved = 0;
    do
    {
        moved = xsputn(zeros.data(), std::min(count, kPiece));
        count -= moved;
    } while (count > 0 && moved > 0);
}
} // namespace base::io
