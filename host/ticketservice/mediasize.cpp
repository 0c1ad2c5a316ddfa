#include "ticketservice/mediasize.h"

namespace host::ticketservice
{
namespace
{
std::optional<int> FindRequestedEdge(const Element& ticket, const Element& option, std::string_view name)
{
    const Element* edge = FindEdge(option, name);
    const Element* const reference = edge == nullptr ? nullptr : FindChild(*edge, Kind::ParameterRef);
    if (reference != nullptr)
    {
        edge = FindChild(ticket, Kind::ParameterInit, reference->name);
    }
    return edge == nullptr ? std::nullopt : ParseInteger(FindText(*edge).value_or(""));
}
} // namespace

const Element* FindEdge(const Element& option, std::string_view edge)
{
    const std::string suffix(edge);
    const Element* const found = FindChild(option, Kind::ScoredProperty, Keyword("MediaSize" + suffix));
    return found != nullptr ? found : FindChild(option, Kind::ScoredProperty, Keyword("PS" + suffix));
}

std::optional<Size> FindRequestedSize(const Element& ticket, const Element& option)
{
    const std::optional<int> width = FindRequestedEdge(ticket, option, "Width");
    const std::optional<int> height = FindRequestedEdge(ticket, option, "Height");
    if (!width || !height)
    {
        return std::nullopt;
    }
    return Size{*width, *height};
}
} // namespace host::ticketservice
