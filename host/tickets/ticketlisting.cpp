#include "host/tickets/ticketlisting.h"

#include <algorithm>
#include <optional>
#include <variant>

#include "host/tickets/ticketdocument.h"
#include "host/tickets/ticketreader.h"

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
        const Node* const option = FindChild(element, Kind::Option);
        return option == nullptr ? std::nullopt : std::optional<Value>(option->name);
    }
    const auto text = element.kind == Kind::ParameterInit ? FindText(element) : std::nullopt;
    return text ? std::optional<Value>(*text) : std::nullopt;
}

std::string ToText(const Value& value, const NameDisplay& display)
{
    const auto* const name = std::get_if<ExpandedName>(&value);
    return name != nullptr ? display(*name) : std::get<std::string>(value);
}

/// What comes with a feature's option, as ", MediaSizeWidth 215900"; empty for a parameter.
std::string ListProperties(const Node& element, const NameDisplay& display)
{
    std::string text;
    const Node* const option = FindChild(element, Kind::Option);
    for (const Node& property : option == nullptr ? std::vector<Node>() : option->children)
    {
        if (const auto value = FindText(property))
        {
            text.append(", ").append(display(property.name)).append(" ").append(*value);
        }
    }
    return text;
}

std::string FindOrigin(const Node& element,
                       const Value& value,
                       const std::vector<ReadLayer>& layers,
                       const NameDisplay& display)
{
    for (const auto& [name, document] : layers)
    {
        if (const Node* const found = FindChild(document.root, element.kind, element.name))
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

/// One line for each thing that a ticket selects; `explain` gives its end.
template <typename Explanation>
std::string ListSelections(const Document& ticket, Explanation&& explain)
{
    const NameDisplay display(ticket.prefixes);
    std::string listing;
    for (const Node& element : ticket.root.children)
    {
        if (const auto value = ValueOf(element))
        {
            listing.append("    ").append(display(element.name)).append(" = ");
            listing.append(ToText(*value, display)).append(ListProperties(element, display));
            listing.append(explain(element, *value, display)).append("\n");
        }
    }
    return listing;
}
} // namespace

std::string ListTicket(const std::string& ticket)
{
    return ListSelections(ReadDocument(ticket, Kind::PrintTicket),
                          [](const Node&, const Value&, const NameDisplay&) { return std::string(); });
}

std::string ListTicketWithOrigins(const std::string& effective, const std::vector<TicketLayer>& layers)
{
    std::vector<ReadLayer> read;
    read.reserve(layers.size());
    for (const TicketLayer& layer : layers)
    {
        read.emplace_back(layer.name, ReadDocument(layer.bytes, Kind::PrintTicket));
    }
    return ListSelections(ReadDocument(effective, Kind::PrintTicket),
                          [&](const Node& element, const Value& value, const NameDisplay& display) {
                              return "  (" + FindOrigin(element, value, read, display) + ")";
                          });
}
} // namespace host::tickets
