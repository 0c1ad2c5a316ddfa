#pragma once

#include <string>

#include "sweep/watch.h"

// The outside as the module sees it: every function that it imports and every method that it calls, how each
// fails, and what changes hands.
namespace sweep
{
/// Null for a function that neither fails nor is known not to be failed.
const Function* FindImport(const std::string& name);

/// Null for an interface that the module has no business with.
const Interface* FindInterface(const IID& iid);
} // namespace sweep
