#include "host/tickets/ticketlisting.h"

#include <algorithm>
#include <optional>
#include <variant>

#include "host/tickets/ticketdocument.h"
#include "host/xml/text.h"

namespace host::tickets
{

namespace
{
using ReadLayer = std::pair<std::string, Document>;

using Value = std::variant<ExpandedName, std::string>;

/// What a feature or a parameter comes to; empty for other elements.
std::optional<Value> ValueOf(const Node& element)
{
    if (element.kind == Kind::Feature)
    {
        const Node* const option = FindChild(&element, Kind::Option);
        return option == nullptr ? std::nullopt : std::optional<Value>(option->name);
    }
    const auto text = element.kind == Kind::ParameterInit ? FindText(&element) : std::nullopt;
    return text ? std::optional<Value>(*text) : std::nullopt;
}

std::string ToText(const Value& value, const NameDisplay& display)
{
    const auto* const name = std::get_if<ExpandedName>(&value);
    return name != nullptr ? display(*name) : std::get<std::string>(value);
}

std::string FindOrigin(const Node& element,
                       const Value& value,
                       const std::vector<ReadLayer>& layers,
                       const NameDisplay& display)
{
    for (const auto& [name, document] : layers)
    {
        if (const Node* const found = FindChild(&document.root, element.kind, element.name))
        {
            const auto wanted = ValueOf(*found);
            if (wanted == value)
            {
                return name;
            }
            return "device; " + name + " asked for " + (wanted ? ToText(*wanted, display) : "nothing");
        }
    }
    return "device";
}

void AddProperties(const Node& element, const NameDisplay& display, ListedSetting& setting)
{
    const Node* const option = FindChild(&element, Kind::Option);
    for (const Node& property : option == nullptr ? std::vector<Node>() : option->children)
    {
        if (const auto value = FindText(&property))
        {
            setting.properties.emplace_back(display(property.name), *value);
        }
    }
}
} // namespace

TicketListing ListTicket(const std::string& ticket, const std::vector<TicketLayer>& layers)
{
    std::vector<ReadLayer> read;
    for (const TicketLayer& layer : layers)
    {
        read.emplace_back(layer.name, ReadDocument(layer.bytes, Kind::PrintTicket));
    }
    const Document document = ReadDocument(ticket, Kind::PrintTicket);
    const NameDisplay display(document.prefixes);
    TicketListing listing;
    for (const Node& element : document.root.children)
    {
        if (const auto value = ValueOf(element))
        {
            ListedSetting& setting = listing.settings.emplace_back();
            setting.name = display(element.name);
            setting.value = ToText(*value, display);
            AddProperties(element, display, setting);
            setting.origin = layers.empty() ? "" : FindOrigin(element, *value, read, display);
        }
    }
    const auto usual = read.empty() ? std::vector<xml::PrefixBinding>() : read.back().second.prefixes;
    for (const xml::PrefixBinding& binding : display.Used())
    {
        const bool isUsual = std::any_of(usual.begin(), usual.end(), [&](const xml::PrefixBinding& each) {
            return each.prefix == binding.prefix && each.namespaceUri == binding.namespaceUri;
        });
        if (!isUsual)
        {
            listing.prefixes.push_back(binding);
        }
    }
    return listing;
}

std::string FormatValue(std::string_view name, const std::string& value)
{
    const bool isLength = (name.ends_with("Width") || name.ends_with("Height")) &&
                          !name.ends_with("ScaleWidth") && !name.ends_with("ScaleHeight");
    const auto micrometres = isLength ? xml::ParseInteger(value) : std::nullopt;
    constexpr double perMillimetre = 1000.0;
    return micrometres ? value + " (" + xml::FormatNumber(*micrometres / perMillimetre) + " mm)" : value;
}

std::string FormatListing(const TicketListing& listing)
{
    std::string text;
    for (const ListedSetting& setting : listing.settings)
    {
        text += "    " + setting.name + " = " + setting.value;
        for (const auto& [name, value] : setting.properties)
        {
            text.append(", ").append(name).append(" ").append(FormatValue(name, value));
        }
        text += (setting.origin.empty() ? "" : "  (" + setting.origin + ")") + "\n";
    }
    for (const auto& [prefix, namespaceUri] : listing.prefixes)
    {
        text.append("    ").append(prefix).append(" is ").append(namespaceUri).append("\n");
    }
    return text;
}
} // namespace host::tickets
