#include "host/tickets/namedisplay.h"

#include <algorithm>

namespace host::tickets
{
std::string NameDisplay::operator()(const ticketservice::ExpandedName& name) const
{
    if (name.namespaceUri == ticketservice::kKeywordsNamespace || name.namespaceUri.empty())
    {
        return name.local;
    }
    const auto binding = std::find_if(m_prefixes.begin(), m_prefixes.end(), [&](const auto& candidate) {
        return candidate.namespaceUri == name.namespaceUri;
    });
    return (binding == m_prefixes.end() ? name.namespaceUri : binding->prefix) + ":" + name.local;
}
} // namespace host::tickets
