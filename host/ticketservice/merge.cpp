#include "ticketservice/merge.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>
#include <utility>

#include "ticketservice/parameters.h"

namespace host::ticketservice
{
namespace
{
void KeepFirstOfSiblings(Element& parent)
{
    std::set<std::tuple<Kind, ExpandedName>> seen;
    std::erase_if(parent.children, [&](const Element& child) {
        return !child.name.local.empty() && !seen.emplace(child.kind, child.name).second;
    });
    std::for_each(parent.children.begin(), parent.children.end(), KeepFirstOfSiblings);
}

void KeepScope(Element& ticket, Scope scope)
{
    std::erase_if(ticket.children, [&](const Element& child) { return !IsWithin(scope, child.name); });
}
} // namespace

Document Merge(Document base, Document delta, Scope scope)
{
    References references = ReferencesIn(base.root);
    references.merge(ReferencesIn(delta.root));
    for (Element* const ticket : {&base.root, &delta.root})
    {
        KeepScope(*ticket, scope);
        KeepFirstOfSiblings(*ticket);
    }
    std::vector<Element>& settings = base.root.children;
    std::map<std::tuple<Kind, ExpandedName>, std::size_t> known;
    for (std::size_t index = 0; index < settings.size(); ++index)
    {
        known.emplace(std::tuple(settings[index].kind, settings[index].name), index);
    }
    for (Element& setting : delta.root.children)
    {
        const auto replaced = known.find({setting.kind, setting.name});
        if (replaced != known.end())
        {
            settings[replaced->second] = std::move(setting);
        }
        else
        {
            settings.push_back(std::move(setting));
        }
    }
    RemoveOrphans(base.root, references);
    base.prefixes.insert(base.prefixes.end(), delta.prefixes.begin(), delta.prefixes.end());
    return base;
}
} // namespace host::ticketservice
