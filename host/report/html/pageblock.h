#pragma once

#include <string>

#include "host/report/html/calllist.h"
#include "host/report/pagereport.h"

namespace host::report::html
{
/// The part of the HTML report that is about one page, in two pieces, so that something can be put in between
/// that is known later only.
struct PageBlock
{
    std::string head;
    std::string rest;
};

/// Of a page with details. COM must be initialised on the thread.
PageBlock FormatPageBlock(const PageReport& page, const CallList& calls);

/// What another run would do to the page: goes in between.
std::string FormatAgainBlock(const PageReport& again);

/// What a job failed of.
struct Failure
{
    /// Empty before the first part.
    std::string part;
    std::string reason;
};

/// In place of a page, where the job failed.
std::string FormatFailureBlock(const Failure& failure, const CallList& calls);
} // namespace host::report::html
