#include "host/tickets/parameters.h"

#include "host/xml/text.h"

namespace host::tickets
{
using base::xps::printschema::MediaSize;

namespace
{
std::optional<int> FindRequestedEdge(const Node& ticket, const Node& option, std::string_view name)
{
    const Node* const edge = FindEdge(option, name);
    const Node* const reference = FindChild(edge, Kind::ParameterRef);
    const Node* const holder =
        reference == nullptr ? edge : FindChild(&ticket, Kind::ParameterInit, reference->name);
    return xml::ParseInteger(FindText(holder).value_or(""));
}
} // namespace

const Node* FindEdge(const Node& option, std::string_view edge)
{
    const std::string suffix(edge);
    const Node* const found = FindChild(&option, Kind::ScoredProperty, Keyword("MediaSize" + suffix));
    return found != nullptr ? found : FindChild(&option, Kind::ScoredProperty, Keyword("PS" + suffix));
}

std::optional<MediaSize> FindRequestedSize(const Node& ticket, const Node& option)
{
    const std::optional<int> width = FindRequestedEdge(ticket, option, "Width");
    const std::optional<int> height = FindRequestedEdge(ticket, option, "Height");
    if (!width || !height)
    {
        return std::nullopt;
    }
    return MediaSize{*width, *height};
}

References ReferencesIn(const Node& element)
{
    References found;
    if (element.kind == Kind::ParameterRef)
    {
        found.insert(element.name);
    }
    for (const Node& child : element.children)
    {
        found.merge(ReferencesIn(child));
    }
    return found;
}

void RemoveOrphans(Node& ticket, const References& before)
{
    const References now = ReferencesIn(ticket);
    std::erase_if(ticket.children, [&](const Node& child) {
        return child.kind == Kind::ParameterInit && before.contains(child.name) && !now.contains(child.name);
    });
}
} // namespace host::tickets
