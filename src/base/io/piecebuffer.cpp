#include "base/io/piecebuffer.h"

namespace base::io
{
PieceBuffer::int_type PieceBuffer::overflow(int_type c)
{
    if (sync() != 0)
    {
        return traits_type::eof();
    }
    if (traits_type::eq_int_type(c, traits_type::eof()))
    {
        return traits_type::not_eof(c);
    }
    return sputc(traits_type::to_char_type(c));
}

int PieceBuffer::sync()
{
    const char* const piece = pbase();
    const std::streamsize count = pptr() - piece;
    // First, so that a target which throws is not given the piece once more.
    Empty();
    return m_target.sputn(piece, count) == count ? 0 : -1;
}
} // namespace base::io
