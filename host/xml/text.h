#pragma once

#include <charconv>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host::xml
{
/// Text of any origin as one line: control characters and line ends become single blanks.
std::string ToOneLine(std::string_view text);

/// "1 page", "2 pages".
std::string CountOf(std::size_t count, const char* what);

/// To hundredths and with no more decimals than it has; with a decimal point whatever the locale.
std::string FormatNumber(double value);

/// The word that a person most likely meant, whatever the case: the shortest one that contains `typed`, or
/// else the one with the fewest letters to change; empty if none is near.
std::string FindNearest(std::string_view typed, const std::vector<std::string>& words);

/// Letters beyond ASCII stay.
std::string ToLowerAscii(std::string_view text);

/// The whole of a text as a number, with a decimal point whatever the locale; empty for anything else.
/// `format` is what std::from_chars takes: a base or a format of floating-point numbers.
template <typename Number, typename... Format>
std::optional<Number> ParseNumber(std::string_view text, Format... format)
{
    Number number = {};
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, number, format...);
    return parsed.ec == std::errc() && parsed.ptr == end ? std::optional(number) : std::nullopt;
}

/// A number as XML Schema writes it, with blanks around it and a plus sign allowed; empty for anything else,
/// for an integer beyond 32 bits and for what is not finite.
std::optional<int> ParseInteger(std::string_view text);
std::optional<double> ParseDecimal(std::string_view text);
} // namespace host::xml
