#include "host/xml/text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <utility>

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

/// How many letters are to be added, left out or replaced.
std::size_t CountEdits(std::string_view from, std::string_view to)
{
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t line = 1; line <= from.size(); ++line)
    {
        std::size_t diagonal = std::exchange(row[0], line);
        for (std::size_t column = 1; column <= to.size(); ++column)
        {
            const std::size_t replaced = diagonal + (from[line - 1] == to[column - 1] ? 0 : 1);
            diagonal = row[column];
            row[column] = std::min({replaced, row[column] + 1, row[column - 1] + 1});
        }
    }
    return row.back();
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

std::string ToLowerAscii(std::string_view text)
{
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
    });
    return lower;
}

std::string FindNearest(std::string_view typed, const std::vector<std::string>& words)
{
    const std::string wanted = ToLowerAscii(typed);
    std::string nearest;
    std::size_t least = wanted.size() / 3 + 2;
    for (const std::string& word : words)
    {
        const std::string candidate = ToLowerAscii(word);
        // A word that contains the text is nearer than any that does not.
        const bool contains = wanted.size() > 1 && candidate.find(wanted) != candidate.npos;
        const std::size_t distance = contains ? 0 : CountEdits(wanted, candidate);
        if (distance < least || (contains && distance == least && word.size() < nearest.size()))
        {
            nearest = word;
            least = distance;
        }
    }
    return nearest;
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
