#include "host/tickets/ticketdocument.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <utility>

namespace host::tickets
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
template <typename Predicate>
const Node* FindIf(const Node* parent, Predicate&& isWanted)
{
    if (parent == nullptr)
    {
        return nullptr;
    }
    const auto found = std::find_if(parent->children.begin(), parent->children.end(), isWanted);
    return found == parent->children.end() ? nullptr : &*found;
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

const Node* FindChild(const Node* parent, Kind kind)
{
    return FindIf(parent, [&](const Node& child) { return child.kind == kind; });
}

const Node* FindChild(const Node* parent, Kind kind, const ExpandedName& name)
{
    return FindIf(parent, [&](const Node& child) { return child.kind == kind && child.name == name; });
}

const Node* FindSelectedOption(const Node& ticket, const ExpandedName& feature)
{
    return FindChild(FindChild(&ticket, Kind::Feature, feature), Kind::Option);
}

const Node* FindPropertyValue(const Node& element, const ExpandedName& name)
{
    return FindChild(FindChild(&element, Kind::Property, name), Kind::Value);
}

std::optional<std::string> FindText(const Node* holder)
{
    const Node* const value = FindChild(holder, Kind::Value);
    const std::string* const text = value == nullptr ? nullptr : std::get_if<std::string>(&value->content);
    return text == nullptr ? std::nullopt : std::optional(*text);
}

std::string NameDisplay::operator()(const ExpandedName& name) const
{
    if (name.namespaceUri == kKeywordsNamespace || name.namespaceUri.empty())
    {
        return name.local;
    }
    return PrefixOf(name.namespaceUri) + ":" + name.local;
}

const std::string& NameDisplay::PrefixOf(const std::string& namespaceUri) const
{
    const auto find =
        [](const std::vector<xml::PrefixBinding>& bindings, auto member, const std::string& text) {
            return std::find_if(bindings.begin(), bindings.end(), [&](const xml::PrefixBinding& each) {
                return each.*member == text;
            });
        };
    if (const auto used = find(m_used, &xml::PrefixBinding::namespaceUri, namespaceUri); used != m_used.end())
    {
        return used->prefix;
    }
    const auto declared = find(m_prefixes, &xml::PrefixBinding::namespaceUri, namespaceUri);
    std::string prefix = declared == m_prefixes.end() ? "" : declared->prefix;
    for (int number = 1; prefix.empty(); ++number)
    {
        const std::string made = "vendor" + std::to_string(number);
        const bool isTaken = find(m_prefixes, &xml::PrefixBinding::prefix, made) != m_prefixes.end() ||
                             find(m_used, &xml::PrefixBinding::prefix, made) != m_used.end();
        prefix = isTaken ? "" : made;
    }
    return m_used.emplace_back(xml::PrefixBinding{std::move(prefix), namespaceUri}).prefix;
}
} // namespace host::tickets
