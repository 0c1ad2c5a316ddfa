#pragma once

#include "host/app/commandline.h"
#include "host/app/console.h"

// One function for each command of the program. All throw opc::PackageError for a document and
// std::runtime_error for any other file or argument that cannot be used; those that run the filter throw
// InterruptedError after Ctrl-C.
namespace host::app
{
/// Runs the filter over a document and shows what it did to each page.
ExitStatus Execute(const RunCommand& command, Console& console);

/// Lists the tickets of a document and where their values come from.
ExitStatus Execute(const TicketsCommand& command, Console& console);

/// Runs a table of cases. A line of the table that cannot be used is reported on stderr.
ExitStatus Execute(const BatchCommand& command, Console& console);

/// Compares two documents part by part.
ExitStatus Execute(const DiffCommand& command, Console& console);
} // namespace host::app
