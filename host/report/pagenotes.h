#pragma once

#include <string>
#include <vector>

#include "host/report/pagereport.h"

namespace host::report
{
/// What else is worth knowing of a page, one short text each: what the device replaced, what its ticket
/// lacks, a medium that got another name, a page that does not suit its sheet, and faults of the new markup.
std::vector<std::string> NotesOn(const PageReport& page);

/// The reason of the decision and the notes on one line.
std::string ExplainWithNotes(const PageReport& page);
} // namespace host::report
