#include "base/io/piecebuffer.h"

namespace base::io
{
PieceBuffer::int_type PieceBuffer::overflow(int_type c)
{
    if (sync() != 0)
    {
        return traits_type::eof();
    }
    return traits_type::eq_int_type(c, traits_type::eof()) ? traits_type::not_eof(c)
                                                           : sputc(traits_type::to_char_type(c));
}

int PieceBuffer::sync()
{
    const std::streamsize count = pptr() - pbase();
    Empty();
    return m_target.sputn(pbase(), count) == count ? 0 : -1;
}
} // namespace base::io
