#pragma once

#include "host/commandline.h"

namespace host
{
/// Throws FileError when a file that a run is to write is one that it reads, or when two of them are the
/// same.
void RequireFilesOfTheirOwn(const RunCommand& command);
} // namespace host
