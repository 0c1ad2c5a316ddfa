#pragma once

#include <string>

#include "host/report/pagereport.h"

namespace host::report
{
/// The table's first line.
std::string FormatTableHead();

/// One line of the table, with what is wrong with the new markup.
std::string FormatTableLine(const PageReport& page);

/// The same as one JSON object on one line. Page sizes are in 1/96 inch, sheets in micrometres.
std::string FormatJson(const PageReport& page);

/// The same for a page in a second run.
std::string FormatSecondRunLine(const PageReport& page);
std::string FormatSecondRunJson(const PageReport& page);
} // namespace host::report
