#include "base/xps/page/markuptext.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

#include "base/logging/log.h"

namespace base::xps
{
namespace
{
constexpr std::wstring_view kBlanks = L" \t\r\n\v\f";
// The characters of numbers in XPS markup: no names of infinities, no hexadecimal digits.
constexpr std::wstring_view kNumberCharacters = L"0123456789.eE+-";

std::wstring_view FromFirstNot(std::wstring_view text, std::wstring_view skipped)
{
    text.remove_prefix(std::min(text.find_first_not_of(skipped), text.size()));
    return text;
}

/// Whether a number outside the range of a double is too small for it, not too large.
bool IsTooSmall(std::string_view number)
{
    const std::size_t mantissaEnd = std::min(number.find_first_of("eE"), number.size());
    const std::string_view mantissa = number.substr(0, mantissaEnd);
    const auto point = static_cast<long long>(std::min(mantissa.find('.'), mantissa.size()));
    const auto firstDigit = static_cast<long long>(mantissa.find_first_of("123456789"));

    std::string_view digits = number.substr(std::min(mantissaEnd + 1, number.size()));
    if (digits.starts_with('+'))
    {
        digits.remove_prefix(1);
    }
    long long exponent = 0;
    const std::errc error = std::from_chars(digits.data(), digits.data() + digits.size(), exponent).ec;
    // An exponent this large decides alone, whatever the mantissa.
    return error == std::errc::result_out_of_range ? digits.starts_with('-') : point + exponent < firstDigit;
}

// In one pass: replacing in place would take minutes for a million characters.
void ReplaceAll(std::string& text, std::size_t start, char character, std::string_view entity)
{
    if (text.find(character, start) == std::string::npos)
    {
        return;
    }
    std::string replaced(text, 0, start);
    for (const char c : std::string_view(text).substr(start))
    {
        c == character ? replaced.append(entity) : replaced.append(1, c);
    }
    text = std::move(replaced);
}
} // namespace

double ToNumber(std::wstring_view text)
{
    text = FromFirstNot(text, kBlanks);
    if (text.starts_with(L'+'))
    {
        text.remove_prefix(1);
        if (text.starts_with(L'-'))
        {
            return 0.0;
        }
    }
    text = text.substr(0, text.find_first_not_of(kNumberCharacters));
    std::string digits(text.size(), '\0');
    std::transform(text.begin(), text.end(), digits.begin(), [](wchar_t c) { return static_cast<char>(c); });

    double value = 0.0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc::result_out_of_range)
    {
        return value;
    }
    const std::string_view number(digits.data(), static_cast<std::size_t>(end - digits.data()));
    const double magnitude = IsTooSmall(number) ? 0.0 : std::numeric_limits<double>::infinity();
    return number.starts_with('-') ? -magnitude : magnitude;
}

std::wstring FormatNumber(double value)
{
    return logging::FormatWString(L"%.2f", value);
}

void EscapeText(std::string& text, std::size_t start)
{
    // The ampersand comes first: later it would escape the other entities.
    constexpr std::pair<char, std::string_view> entities[] = {
        {'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}, {'\'', "&apos;"}};
    for (const auto& [character, entity] : entities)
    {
        ReplaceAll(text, start, character, entity);
    }
}
} // namespace base::xps
