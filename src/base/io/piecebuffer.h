#pragma once

#include <array>
#include <streambuf>

namespace base::io
{
/// Collects what is written and passes it on in large pieces: a page's markup is made of thousands of tags,
/// and each of them would be a call of the pipeline. Who writes flushes; what is left when the buffer goes is
/// lost.
class PieceBuffer final : public std::streambuf
{
public:
    /// The target is borrowed. What it throws, and a write that it does not take whole, fails the write or
    /// the flush that was the occasion.
    explicit PieceBuffer(std::streambuf& target) : m_target(target) { Empty(); }

protected:
    int_type overflow(int_type c) override;
    int sync() override;

private:
    void Empty() { setp(m_piece.data(), m_piece.data() + m_piece.size()); }

    std::streambuf& m_target;
    std::array<char, 8192> m_piece;
};
} // namespace base::io
