#include "host/xml/text.h"

#include <array>
#include <charconv>

namespace host::xml
{
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
} // namespace host::xml
