#pragma once

#include "host/commandline.h"
#include "host/console.h"

namespace host
{
/// Tells the tickets of a document. Throws opc::PackageError for an input and std::runtime_error for anything
/// else that cannot be used.
ExitStatus Carry(const TicketsCommand& command, Console& console);
} // namespace host
