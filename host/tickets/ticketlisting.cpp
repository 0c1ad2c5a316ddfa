#include "host/tickets/ticketlisting.h"

#include <algorithm>
#include <optional>
#include <variant>

#include "host/tickets/namedisplay.h"
#include "host/ticketservice/documentreader.h"

namespace host::tickets
{
using ticketservice::Element;
using ticketservice::ExpandedName;
using ticketservice::Kind;

namespace
{
using ReadLayer = std::pair<std::string, ticketservice::Document>;

using Value = std::variant<ExpandedName, std::string>;

/// What a feature or a parameter comes to; empty for other elements.
std::optional<Value> ValueOf(const Element& element)
{
    if (element.kind == Kind::Feature)
    {
        const Element* const option = ticketservice::FindChild(element, Kind::Option);
        return option == nullptr ? std::nullopt : std::optional<Value>(option->name);
    }
    const auto text = element.kind == Kind::ParameterInit ? ticketservice::FindText(element) : std::nullopt;
    return text ? std::optional<Value>(*text) : std::nullopt;
}

std::string ToText(const Value& value, const NameDisplay& display)
{
    const auto* const name = std::get_if<ExpandedName>(&value);
    return name != nullptr ? display(*name) : std::get<std::string>(value);
}

/// What comes with a feature's option, as ", MediaSizeWidth 215900"; empty for a parameter.
std::string ListProperties(const Element& element, const NameDisplay& display)
{
    std::string text;
    const Element* const option = ticketservice::FindChild(element, Kind::Option);
    for (const Element& property : option == nullptr ? std::vector<Element>() : option->children)
    {
        if (const auto value = ticketservice::FindText(property))
        {
            text.append(", ").append(display(property.name)).append(" ").append(*value);
        }
    }
    return text;
}

std::string FindOrigin(const Element& element,
                       const Value& value,
                       const std::vector<ReadLayer>& layers,
                       const NameDisplay& display)
{
    for (const auto& [name, document] : layers)
    {
        if (const Element* const found = ticketservice::FindChild(document.root, element.kind, element.name))
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
std::string ListSelections(const ticketservice::Document& ticket, Explanation&& explain)
{
    const NameDisplay display(ticket.prefixes);
    std::string listing;
    for (const Element& element : ticket.root.children)
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
    return ListSelections(ticketservice::ReadDocument(ticket, Kind::PrintTicket),
                          [](const Element&, const Value&, const NameDisplay&) { return std::string(); });
}

std::string ListTicketWithOrigins(const std::string& effective, const std::vector<TicketLayer>& layers)
{
    std::vector<ReadLayer> read;
    read.reserve(layers.size());
    for (const TicketLayer& layer : layers)
    {
        read.emplace_back(layer.name, ticketservice::ReadDocument(layer.bytes, Kind::PrintTicket));
    }
    return ListSelections(ticketservice::ReadDocument(effective, Kind::PrintTicket),
                          [&](const Element& element, const Value& value, const NameDisplay& display) {
                              return "  (" + FindOrigin(element, value, read, display) + ")";
                          });
}
} // namespace host::tickets
