#pragma once

#include "ticketservice/printschema.h"
#include "ticketservice/scope.h"

namespace host::ticketservice
{
/// Merges two print tickets at a scope (Print Schema, "Supporting PrintTicket Deltas").
///
/// Both give only what is within the scope, and of siblings with the same name only the first counts. A
/// Feature, ParameterInit or Property of the delta replaces the base's of the same name whole; the others are
/// added behind. Parameters that only replaced features referred to go with them. The prefixes of the base
/// come before those of the delta. A delta without content leaves the base as it is within the scope.
Document Merge(Document base, Document delta, Scope scope);
} // namespace host::ticketservice
