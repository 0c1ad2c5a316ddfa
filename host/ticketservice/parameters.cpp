#include "ticketservice/parameters.h"

namespace host::ticketservice
{
References ReferencesIn(const Element& element)
{
    References found;
    if (element.kind == Kind::ParameterRef)
    {
        found.insert(element.name);
    }
    for (const Element& child : element.children)
    {
        found.merge(ReferencesIn(child));
    }
    return found;
}

void RemoveOrphans(Element& ticket, const References& before)
{
    const References now = ReferencesIn(ticket);
    std::erase_if(ticket.children, [&](const Element& child) {
        return child.kind == Kind::ParameterInit && before.contains(child.name) && !now.contains(child.name);
    });
}
} // namespace host::ticketservice
