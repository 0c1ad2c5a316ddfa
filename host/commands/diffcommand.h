#pragma once

#include "host/commandline.h"
#include "host/console.h"

namespace host
{
/// Tells what became of each part from one document to another. Throws opc::PackageError for one that cannot
/// be used.
ExitStatus Carry(const DiffCommand& command, Console& console);
} // namespace host
