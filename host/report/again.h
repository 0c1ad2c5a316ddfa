#pragma once

#include <string>

#include "host/report/pagereport.h"

namespace host::report
{
/// What is said of a page that comes from a run over the output of another: whether that one's work is done.
bool IsStable(const PageReport& page);

/// "stable", or "would be" and what.
std::string NameAgain(const PageReport& page);

/// Why. Of a page with details also what the printer makes of its ticket, if that is why. COM must be
/// initialised on the thread.
std::string ExplainAgain(const PageReport& page);
} // namespace host::report
