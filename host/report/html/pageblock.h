#pragma once

#include <string>

#include "host/report/html/calllist.h"
#include "host/report/pagereport.h"

namespace host::report::html
{
/// The block of one page, in two pieces: the result of the second run, known later, is inserted between them.
struct PageBlock
{
    std::string head;
    std::string rest;
};

/// The page must have details.
PageBlock FormatPageBlock(const PageReport& page, const CallList& calls);

/// What the second run did to the page, for between the pieces.
std::string FormatSecondRunBlock(const PageReport& again);

/// Where and why a job failed.
struct Failure
{
    /// Empty before the first part.
    std::string part;
    std::string reason;
};

/// The block in place of the page at which the job failed.
std::string FormatFailureBlock(const Failure& failure, const CallList& calls);
} // namespace host::report::html
