#pragma once

#include "host/tickets/ticketdocument.h"

namespace host::ticketservice
{
/// Which levels a merge is about; each includes those named before it.
enum class Scope
{
    Page,
    Document,
    Job
};

/// Whether a name of the root level belongs to a scope. Its prefix says so (Print Schema, "Scoping Prefix"):
/// Page, Document or Job at the start of the local name, in any namespace, as vendors follow the
/// rule too. A name without one is not bound to a level and belongs to every scope.
bool IsWithin(Scope scope, const tickets::ExpandedName& name);

/// Merges two print tickets at a scope (Print Schema, "Supporting PrintTicket Deltas").
///
/// Both give only what is within the scope, and of siblings with the same name only the first counts. A
/// Feature, ParameterInit or Property of the delta replaces the base's of the same name whole; the others are
/// added behind. Parameters that only replaced features referred to go with them. The prefixes of the base
/// come before those of the delta. A delta without content leaves the base as it is within the scope.
tickets::Document Merge(tickets::Document base, tickets::Document delta, Scope scope);
} // namespace host::ticketservice
