#include "ticketservice/printschema.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <initializer_list>
#include <utility>

namespace host::ticketservice
{
namespace
{
// In the order of the enumerators.
constexpr std::array<std::string_view, 10> kKindNames = {"PrintTicket",
                                                         "PrintCapabilities",
                                                         "Feature",
                                                         "Option",
                                                         "Property",
                                                         "ScoredProperty",
                                                         "ParameterInit",
                                                         "ParameterDef",
                                                         "ParameterRef",
                                                         "Value"};

bool IsOneOf(Kind kind, std::initializer_list<Kind> kinds)
{
    return std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
}

template <typename Number, typename... Format>
std::optional<Number> ParseWhole(std::string_view text, Format... format)
{
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t first = std::min(text.find_first_not_of(blanks), text.size());
    text.remove_prefix(first);
    text.remove_suffix(text.size() - (text.find_last_not_of(blanks) + 1));
    // XML Schema allows a plus sign, which from_chars does not take.
    if (text.starts_with('+') && !text.starts_with("+-"))
    {
        text.remove_prefix(1);
    }
    Number number = {};
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, number, format...);
    if (parsed.ec != std::errc() || parsed.ptr != end)
    {
        return std::nullopt;
    }
    return number;
}
} // namespace

ExpandedName Keyword(std::string_view local)
{
    return {std::string(kKeywordsNamespace), std::string(local)};
}

ExpandedName Framework(std::string_view local)
{
    return {std::string(kFrameworkNamespace), std::string(local)};
}

std::string_view NameOf(Kind kind)
{
    return kKindNames.at(static_cast<std::size_t>(kind));
}

std::optional<Kind> FindKind(std::string_view localName)
{
    const auto found = std::find(kKindNames.begin(), kKindNames.end(), localName);
    if (found == kKindNames.end())
    {
        return std::nullopt;
    }
    return static_cast<Kind>(found - kKindNames.begin());
}

bool MayHold(Kind parent, Kind child)
{
    switch (parent)
    {
    case Kind::PrintTicket:
        return IsOneOf(child, {Kind::Feature, Kind::ParameterInit, Kind::Property});
    case Kind::PrintCapabilities:
        return IsOneOf(child, {Kind::Feature, Kind::ParameterDef, Kind::Property});
    case Kind::Feature:
        // The schema has no ScoredProperty here, but there are tickets that name their option in one.
        return IsOneOf(child, {Kind::Feature, Kind::Option, Kind::Property, Kind::ScoredProperty});
    case Kind::Option:
        return IsOneOf(child, {Kind::Property, Kind::ScoredProperty});
    case Kind::ScoredProperty:
        return IsOneOf(child, {Kind::ParameterRef, Kind::Value, Kind::Property, Kind::ScoredProperty});
    case Kind::Property:
        return IsOneOf(child, {Kind::Value, Kind::Property});
    case Kind::ParameterInit:
        return child == Kind::Value;
    case Kind::ParameterDef:
        return child == Kind::Property;
    case Kind::ParameterRef:
    case Kind::Value:
        break;
    }
    return false;
}

const Element* FindChild(const Element& parent, Kind kind)
{
    const auto found = std::find_if(parent.children.begin(),
                                    parent.children.end(),
                                    [&](const Element& child) { return child.kind == kind; });
    return found == parent.children.end() ? nullptr : &*found;
}

const Element* FindChild(const Element& parent, Kind kind, const ExpandedName& name)
{
    const auto found =
        std::find_if(parent.children.begin(), parent.children.end(), [&](const Element& child) {
            return child.kind == kind && child.name == name;
        });
    return found == parent.children.end() ? nullptr : &*found;
}

Element* FindChild(Element& parent, Kind kind)
{
    return const_cast<Element*>(FindChild(std::as_const(parent), kind));
}

Element* FindChild(Element& parent, Kind kind, const ExpandedName& name)
{
    return const_cast<Element*>(FindChild(std::as_const(parent), kind, name));
}

std::optional<std::string> FindText(const Element& holder)
{
    const Element* const value = FindChild(holder, Kind::Value);
    if (value == nullptr || !std::holds_alternative<std::string>(value->content))
    {
        return std::nullopt;
    }
    return std::get<std::string>(value->content);
}

std::optional<int> ParseInteger(std::string_view text)
{
    return ParseWhole<int>(text);
}

std::optional<double> ParseDecimal(std::string_view text)
{
    const std::optional<double> number = ParseWhole<double>(text, std::chars_format::fixed);
    return number && std::isfinite(*number) ? number : std::nullopt;
}
} // namespace host::ticketservice
