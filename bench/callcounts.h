#pragma once

#include <map>
#include <string>

#include "bench/pagejob.h"

namespace bench
{
/// How often something is called for one page, by name.
using CallCounts = std::map<std::string, double>;

/// What each further small page of a job costs: calls of the pipeline and of the platform's ticket provider,
/// and DOM documents, of which each is loaded once.
CallCounts CountCallsOfPage(PageKind kind);
} // namespace bench
