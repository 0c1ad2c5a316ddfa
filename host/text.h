#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host
{
/// Text of any origin as one line: control characters and line ends become single blanks.
std::string ToOneLine(std::string_view text);

/// "1 page", "2 pages".
std::string CountOf(std::size_t count, const char* what);
} // namespace host
