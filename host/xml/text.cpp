#include "host/xml/text.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace host::xml
{
namespace
{
std::string_view TrimNumber(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r\n";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    text.remove_suffix(text.size() - (text.find_last_not_of(blanks) + 1));
    // The parser does not take a plus sign.
    text.remove_prefix(text.starts_with('+') && !text.starts_with("+-") ? 1 : 0);
    return text;
}
} // namespace

std::string ToOneLine(std::string_view text)
{
    std::string line;
    for (const char c : text)
    {
        const bool isControl = static_cast<unsigned char>(c) < ' ' || c == '\x7F';
        const char shown = isControl ? ' ' : c;
        if (shown != ' ' || (!line.empty() && line.back() != ' '))
        {
            line += shown;
        }
    }
    while (line.ends_with(' '))
    {
        line.pop_back();
    }
    return line;
}

std::string CountOf(std::size_t count, const char* what)
{
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string FormatNumber(double value)
{
    std::array<char, 400> digits{};
    constexpr int decimals = 2;
    const auto end = std::to_chars(
        digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed, decimals);
    std::string text(digits.data(), end.ptr);
    text.erase(text.find_last_not_of('0') + 1);
    return text.ends_with('.') ? text.substr(0, text.size() - 1) : text;
}

std::optional<int> ParseInteger(std::string_view text)
{
    return ParseNumber<int>(TrimNumber(text));
}

std::optional<double> ParseDecimal(std::string_view text)
{
    const auto number = ParseNumber<double>(TrimNumber(text), std::chars_format::fixed);
    return number && std::isfinite(*number) ? number : std::nullopt;
}
} // namespace host::xml
