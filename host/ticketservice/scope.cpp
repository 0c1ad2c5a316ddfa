#include "ticketservice/scope.h"

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
Scope NarrowestScope(std::string_view name)
{
    if (HasPrefix(name, "Job"))
    {
        return Scope::Job;
    }
    return HasPrefix(name, "Document") ? Scope::Document : Scope::Page;
}
} // namespace

bool IsWithin(Scope scope, const ExpandedName& name)
{
    return NarrowestScope(name.local) <= scope;
}
} // namespace host::ticketservice
