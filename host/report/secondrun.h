#pragma once

#include <string>

#include "host/report/pagereport.h"

namespace host::report
{
// What is said of a page in a run over the output of another. Its fault is that of the markup which the other
// run wrote.

/// Nothing can be said of markup that readers do not understand alike.
bool IsJudged(const PageReport& page);

/// Whether the other run's work is done.
bool IsStable(const PageReport& page);

/// "stable", "not judged", or "would be" and what.
std::string NameAgain(const PageReport& page);

/// Why.
std::string ExplainAgain(const PageReport& page);
} // namespace host::report
