#pragma once

#include <optional>
#include <string>

#include "platform/win32.h"

namespace host::pipeline
{
/// Gives a loaded filter a user whose locale prints on "Letter" or "A4", whatever the locale of this process
/// is: the filter asks the system for the measurement system when no ticket names a sheet that fits. Without
/// a paper it gets the system's own answer. One setting holds for all modules of the process.
///
/// Returns false for a module that does not import the function by which the filter asks.
[[nodiscard]] bool SetUserPaper(HMODULE module, const std::optional<std::string>& paper);
} // namespace host::pipeline
