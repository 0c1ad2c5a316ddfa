#pragma once

#include <string>
#include <string_view>

namespace base::xps
{
/// Reads the number at the start of the text, after blanks; 0 if there is none. The rest of the text is
/// ignored. Expects a decimal point whatever the process locale is, as XPS markup has it.
double ToNumber(std::wstring_view text);

/// Formats with two decimals and a decimal point.
std::wstring FormatNumber(double value);

/// Replaces the characters from `start` on that XML has predefined entities for.
void EscapeText(std::string& text, std::size_t start = 0);
} // namespace base::xps
