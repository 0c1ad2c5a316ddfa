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

const Node* FindChild(const Node& parent, Kind kind)
{
    const auto found = std::find_if(parent.children.begin(), parent.children.end(), [&](const Node& child) {
        return child.kind == kind;
    });
    return found == parent.children.end() ? nullptr : &*found;
}

const Node* FindChild(const Node& parent, Kind kind, const ExpandedName& name)
{
    const auto found = std::find_if(parent.children.begin(), parent.children.end(), [&](const Node& child) {
        return child.kind == kind && child.name == name;
    });
    return found == parent.children.end() ? nullptr : &*found;
}

Node* FindChild(Node& parent, Kind kind)
{
    return const_cast<Node*>(FindChild(std::as_const(parent), kind));
}

Node* FindChild(Node& parent, Kind kind, const ExpandedName& name)
{
    return const_cast<Node*>(FindChild(std::as_const(parent), kind, name));
}

std::optional<std::string> FindText(const Node& holder)
{
    const Node* const value = FindChild(holder, Kind::Value);
    if (value == nullptr || !std::holds_alternative<std::string>(value->content))
    {
        return std::nullopt;
    }
    return std::get<std::string>(value->content);
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
    const auto find = [&](const std::vector<xml::PrefixBinding>& bindings) {
        return std::find_if(bindings.begin(), bindings.end(), [&](const xml::PrefixBinding& each) {
            return each.namespaceUri == namespaceUri;
        });
    };
    if (const auto used = find(m_used); used != m_used.end())
    {
        return used->prefix;
    }
    xml::PrefixBinding binding{"", namespaceUri};
    if (const auto declared = find(m_prefixes); declared != m_prefixes.end())
    {
        binding = *declared;
    }
    for (int number = 1; binding.prefix.empty(); ++number)
    {
        const std::string made = "vendor" + std::to_string(number);
        const bool isTaken =
            std::any_of(m_prefixes.begin(),
                        m_prefixes.end(),
                        [&](const auto& each) { return each.prefix == made; }) ||
            std::any_of(m_used.begin(), m_used.end(), [&](const auto& each) { return each.prefix == made; });
        binding.prefix = isTaken ? "" : made;
    }
    return m_used.emplace_back(std::move(binding)).prefix;
}
} // namespace host::tickets
