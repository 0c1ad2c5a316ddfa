#pragma once

#include "platform/win32.h"

#include <prntvpt.h>

#include "host/tickets/ticketdocument.h"
#include "host/ticketservice/device.h"

// What a provider does with print tickets.
namespace host::ticketservice
{
/// Whether a name of the root level belongs to a scope, of which each includes the narrower ones. Its prefix
/// says so (Print Schema, "Scoping Prefix"): Page, Document or Job at the start of the local name, in any
/// namespace, as vendors follow the rule too. A name without one is not bound to a level and belongs to every
/// scope.
bool IsWithin(EPrintTicketScope scope, const ExpandedName& name);

/// Merges two print tickets at a scope (Print Schema, "Supporting PrintTicket Deltas").
///
/// Both give only what is within the scope, and of siblings with the same name only the first counts. A
/// Feature, ParameterInit or Property of the delta replaces the base's of the same name whole; the others are
/// added behind. Parameters that only replaced features referred to go with them. The prefixes of the base
/// come before those of the delta. A delta without content leaves the base as it is within the scope.
Document Merge(Document base, Document delta, EPrintTicketScope scope);

/// Makes a merged ticket one that the device can print; true when something had to be replaced.
///
/// What the device describes is checked, and everything else, a vendor's own features above all, is left
/// alone: an option that it does not offer gives way to its default, as does a custom media size beyond its
/// limits; a number beyond its ParameterDef's limits becomes the nearest limit; a parameter that is missing
/// or no number takes the default value. Of a feature with one choice only the first option counts.
bool ResolveConflicts(Node& ticket, const Device& device);

/// The device's print capabilities with PageImageableSize filled in for the media size and orientation that a
/// ticket asks for; a ticket without settings stands for the device's defaults.
///
/// A media size that the device does not offer by its name counts with the size that the ticket gives, if a
/// custom medium takes that, else as the default one. Sizes and origins are those of the page as it is read
/// (Print Schema, "PageImageableSize"): with a landscape orientation the sheet's width is the page's height.
Document DescribeFor(const Device& device, const Node& ticket);
} // namespace host::ticketservice
