#pragma once

#include <string>

#include "machines/sweep/watch.h"

// Every function that the module imports and every method that it calls, with how each fails and which
// resources it gives or takes.
namespace sweep
{
/// Null for a function that calls.txt does not list.
const Function* FindImport(const std::string& name);

/// Null for an interface that calls.txt does not list.
const Interface* FindInterface(const IID& iid);
} // namespace sweep
