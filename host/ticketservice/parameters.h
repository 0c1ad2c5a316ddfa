#pragma once

#include <set>

#include "ticketservice/printschema.h"

namespace host::ticketservice
{
using References = std::set<ExpandedName>;

/// The names of all parameters that an element or one below it refers to.
References ReferencesIn(const Element& element);

/// Removes the parameters of a ticket that were referred to before a change and are not any more. A parameter
/// that nothing ever referred to stays.
void RemoveOrphans(Element& ticket, const References& before);
} // namespace host::ticketservice
