#include "host/ticketservice/operations.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>
#include <utility>

#include "host/tickets/parameters.h"

namespace host::ticketservice
{
namespace
{
/// Whether a name begins with a prefix as a word of its own: "Documentation" does not begin with "Document".
bool HasPrefix(std::string_view name, std::string_view prefix)
{
    const bool begins = name.starts_with(prefix);
    const char next = name.size() > prefix.size() ? name[prefix.size()] : '\0';
    return begins && !(next >= 'a' && next <= 'z');
}

/// The narrowest scope that a name belongs to.
EPrintTicketScope NarrowestScope(std::string_view name)
{
    if (HasPrefix(name, "Job"))
    {
        return kPTJobScope;
    }
    return HasPrefix(name, "Document") ? kPTDocumentScope : kPTPageScope;
}

void KeepFirstOfSiblings(Node& parent)
{
    std::set<std::tuple<Kind, ExpandedName>> seen;
    std::erase_if(parent.children, [&](const Node& child) {
        return !child.name.local.empty() && !seen.emplace(child.kind, child.name).second;
    });
    std::for_each(parent.children.begin(), parent.children.end(), KeepFirstOfSiblings);
}

void KeepScope(Node& ticket, EPrintTicketScope scope)
{
    std::erase_if(ticket.children, [&](const Node& child) { return !IsWithin(scope, child.name); });
}
} // namespace

bool IsWithin(EPrintTicketScope scope, const ExpandedName& name)
{
    return NarrowestScope(name.local) <= scope;
}

Document Merge(Document base, Document delta, EPrintTicketScope scope)
{
    tickets::References references = tickets::ReferencesIn(base.root);
    references.merge(tickets::ReferencesIn(delta.root));
    for (Node* const ticket : {&base.root, &delta.root})
    {
        KeepScope(*ticket, scope);
        KeepFirstOfSiblings(*ticket);
    }
    std::vector<Node>& settings = base.root.children;
    std::map<std::tuple<Kind, ExpandedName>, std::size_t> known;
    for (std::size_t index = 0; index < settings.size(); ++index)
    {
        known.emplace(std::tuple(settings[index].kind, settings[index].name), index);
    }
    for (Node& setting : delta.root.children)
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
    tickets::RemoveOrphans(base.root, references);
    base.prefixes.insert(base.prefixes.end(), delta.prefixes.begin(), delta.prefixes.end());
    return base;
}
} // namespace host::ticketservice
