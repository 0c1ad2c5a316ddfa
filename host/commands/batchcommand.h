#pragma once

#include "host/commandline.h"
#include "host/console.h"

namespace host
{
/// Runs the filter over the documents of a table, one after the other and writing nothing, and tells what
/// came out otherwise than expected. A document that cannot be read and a filter that fails are results of
/// their case. Throws InterruptedError after Ctrl-C and std::runtime_error for a table that cannot be read;
/// lines of it that cannot be used are told on stderr.
ExitStatus Carry(const BatchCommand& command, Console& console);
} // namespace host
