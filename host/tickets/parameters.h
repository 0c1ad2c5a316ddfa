#pragma once

#include <optional>
#include <set>
#include <string_view>

#include "base/xps/printschema/vocabulary/mediasize.h"
#include "host/tickets/ticketdocument.h"

namespace host::tickets
{
/// The scored property by which a media option tells one edge, "Width" or "Height": MediaSizeWidth and so on,
/// PSWidth for PostScript's custom media; null when there is none. Lends.
const Node* FindEdge(const Node& option, std::string_view edge);

/// The size that a ticket asks for with a media option of its own: in the option, or in the parameters that
/// it refers to; none when it is not complete.
std::optional<base::xps::printschema::MediaSize> FindRequestedSize(const Node& ticket, const Node& option);

using References = std::set<ExpandedName>;

/// The names of all parameters that an element or one below it refers to.
References ReferencesIn(const Node& element);

/// Removes the parameters of a ticket that were referred to before a change and are not any more. A parameter
/// that nothing ever referred to stays.
void RemoveOrphans(Node& ticket, const References& before);
} // namespace host::tickets
