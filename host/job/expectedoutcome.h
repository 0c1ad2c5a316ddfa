#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/report/pagereport.h"

namespace host::job
{
/// What becomes of a document.
struct ExpectedOutcome
{
    /// The decision for each page that the filter sends, in order.
    std::vector<report::Decision> pages;
    /// How the job ends: "done", "failed 0x80070005" with the filter's result, "failed" with any result, or
    /// "unusable" for a document that cannot be read.
    std::string end = "done";
};

/// "passed turned*3 turned+refitted failed 0x80070005". Throws std::runtime_error, naming the word that it
/// does not understand, and for no word at all.
ExpectedOutcome ParseOutcome(std::string_view text);

/// Inverse of ParseOutcome; equal neighbours become "turned*3".
std::string FormatOutcome(const ExpectedOutcome& outcome);

/// The result of running a case.
struct CaseResult
{
    ExpectedOutcome outcome;
    /// Why each page came to its decision.
    std::vector<std::string> reasons;
    /// Why the job ended early, and at which part.
    std::string endReason;
    /// What the filter did not release; empty for nothing.
    std::string leaks;
};

/// The differences from what was expected, one line each without its end. A filter's leaks always count.
std::vector<std::string> FindDifferences(const ExpectedOutcome& expected, const CaseResult& actual);
} // namespace host::job
