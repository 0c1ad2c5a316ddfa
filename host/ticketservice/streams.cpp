#include "ticketservice/streams.h"

#include <algorithm>
#include <array>

#include "base/logging/errors.h"
#include "ticketservice/printschema.h"

namespace host::ticketservice
{
using base::exception::ThrowIfFailed;

std::string ReadToEnd(IStream& stream)
{
    constexpr std::size_t limit = 16U << 20U;
    std::string bytes;
    std::array<char, 16384> piece;
    for (;;)
    {
        ULONG count = 0;
        ThrowIfFailed(stream.Read(piece.data(), static_cast<ULONG>(piece.size()), &count));
        if (count == 0)
        {
            return bytes;
        }
        bytes.append(piece.data(), std::min<std::size_t>(count, piece.size()));
        if (bytes.size() > limit)
        {
            throw FormatError("the document is larger than 16 MB");
        }
    }
}

void WriteAll(IStream& stream, std::string_view bytes)
{
    constexpr std::size_t largestPiece = 1U << 20U;
    while (!bytes.empty())
    {
        ULONG count = 0;
        ThrowIfFailed(
            stream.Write(bytes.data(), static_cast<ULONG>(std::min(bytes.size(), largestPiece)), &count));
        if (count == 0)
        {
            ThrowIfFailed(STG_E_MEDIUMFULL);
        }
        bytes.remove_prefix(std::min<std::size_t>(count, bytes.size()));
    }
}
} // namespace host::ticketservice
