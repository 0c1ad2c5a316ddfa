#pragma once

#include "host/tickets/ticketdocument.h"
#include "host/ticketservice/device.h"

namespace host::ticketservice
{
/// Makes a merged ticket one that the device can print; true when something had to be replaced.
///
/// What the device describes is checked, and everything else, a vendor's own features above all, is left
/// alone: an option that it does not offer gives way to its default, as does a custom media size beyond its
/// limits; a number beyond its ParameterDef's limits becomes the nearest limit; a parameter that is missing
/// or no number takes the default value. Of a feature with one choice only the first option counts.
bool ResolveConflicts(tickets::Node& ticket, const Device& device);
} // namespace host::ticketservice
