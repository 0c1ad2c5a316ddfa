#pragma once

#include <string>
#include <string_view>

namespace base::xps
{
/// The number that the text begins with, after blanks; 0 when there is none. What follows it is not looked
/// at. A decimal point whatever the process locale, as XPS markup has it.
double ToNumber(std::wstring_view text);

/// With two decimals and a decimal point.
std::wstring FormatNumber(double value);

/// Substitutes the five predefined entities of XML, from an index on.
void EscapeText(std::string& text, std::size_t start = 0);
} // namespace base::xps
