#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host::xml
{
/// Text of any origin as one line: control characters and line ends become single blanks.
std::string ToOneLine(std::string_view text);

/// Whether a byte of UTF-8 goes on with the character of the one before it.
constexpr bool IsUtf8Continuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// "1 page", "2 pages".
std::string CountOf(std::size_t count, const char* what);

/// To hundredths and with no more decimals than it has; with a decimal point whatever the locale.
std::string FormatNumber(double value);
} // namespace host::xml
