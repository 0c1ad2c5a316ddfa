#pragma once

#include <string>

#include "host/report/pagereport.h"

namespace host::report
{
// The words for a page in a second run, over the output of the first. Its markup fault is that of the markup
// that the first run wrote.

/// False for malformed markup, which readers may understand in different ways.
bool IsJudged(const PageReport& page);

/// Whether the second run leaves the page alone.
bool IsStable(const PageReport& page);

/// "stable", "not judged", or "would be" and what.
std::string NameSecondRun(const PageReport& page);

/// Why.
std::string ExplainSecondRun(const PageReport& page);
} // namespace host::report
