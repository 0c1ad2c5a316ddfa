#pragma once

#include "host/commandline.h"
#include "host/console.h"

namespace host
{
/// Runs the filter over a document and tells what became of each page. Throws InterruptedError after Ctrl-C,
/// opc::PackageError for an input and std::runtime_error for anything else that cannot be used.
ExitStatus Carry(const RunCommand& command, Console& console);
} // namespace host
