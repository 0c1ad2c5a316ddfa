#pragma once

#include "ticketservice/printschema.h"

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
/// Page, Document or Job at the start of the local name, in any namespace, as vendors follow the rule too. A
/// name without one is not bound to a level and belongs to every scope.
bool IsWithin(Scope scope, const ExpandedName& name);
} // namespace host::ticketservice
