#pragma once

#include <string>
#include <string_view>

#include "platform/win32.h"

namespace host::ticketservice
{
/// The bytes of a stream from its current position to its end, where it is left; short reads are read on.
/// Throws HresultError for a failing read, FormatError beyond 16 MB, which no print ticket comes near.
std::string ReadToEnd(IStream& stream);

/// Writes all bytes at the current position and leaves the stream behind them. Throws HresultError.
void WriteAll(IStream& stream, std::string_view bytes);
} // namespace host::ticketservice
