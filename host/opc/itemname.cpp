#include "host/opc/itemname.h"

#include <charconv>

#include "host/opc/partname.h"

namespace host::opc
{
namespace
{
/// The number in "[12]", without leading zeros.
std::optional<std::uint32_t> ParseBracketed(std::string_view text)
{
    if (text.size() < 3 || text.front() != '[' || text.back() != ']')
    {
        return std::nullopt;
    }
    const std::string_view digits = text.substr(1, text.size() - 2);
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool isWhole = error == std::errc() && end == digits.data() + digits.size();
    const bool isPlain = digits.size() == 1 || digits.front() != '0';
    return isWhole && isPlain ? std::optional(number) : std::nullopt;
}
} // namespace

ItemRole ParseItemName(std::string_view itemName)
{
    const ItemRole whole{itemName, std::nullopt, false};
    const std::size_t separator = itemName.find_last_of("/\\");
    if (separator == std::string_view::npos)
    {
        return whole;
    }
    const std::string_view segment = itemName.substr(separator + 1);
    const std::size_t bracketEnd = segment.find(']');
    if (bracketEnd == std::string_view::npos)
    {
        return whole;
    }
    const auto piece = ParseBracketed(segment.substr(0, bracketEnd + 1));
    const std::string ending = ToLowerAscii(segment.substr(bracketEnd + 1));
    if (!piece.has_value() || (ending != ".piece" && ending != ".last.piece"))
    {
        return whole;
    }
    return {itemName.substr(0, separator), piece, ending == ".last.piece"};
}
} // namespace host::opc
