#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/report/pagereport.h"
#include "platform/win32.h"

namespace host::job
{
/// How a job ends.
enum class JobEnd
{
    Done,
    /// The filter reported a failure.
    FilterFailed,
    /// The document cannot be read.
    Unusable
};

/// The decision for each page that the filter sent, in order, and the end of the job.
struct ExpectedOutcome
{
    std::vector<report::Decision> pages;
    JobEnd end = JobEnd::Done;
    /// The failure of the filter; empty where any will do.
    std::optional<HRESULT> result;
};

/// "passed turned*3 turned+refitted failed 0x80070005". Throws std::runtime_error, naming the word that it
/// does not understand, and for no word at all.
ExpectedOutcome ParseOutcome(std::string_view text);

/// Inverse of ParseOutcome; equal neighbours become "turned*3".
std::string FormatOutcome(const ExpectedOutcome& outcome);

/// The result of running a case.
struct CaseResult
{
    std::vector<report::PageReport> pages;
    JobEnd end = JobEnd::Done;
    HRESULT result = S_OK;
    /// Why it ended early, and at which part.
    std::string reason;
    /// What the filter did not release; empty for nothing.
    std::string leaks;

    ExpectedOutcome ToOutcome() const;
};

/// The differences from what was expected, one line each without its end. A filter's leaks always count.
std::vector<std::string> FindDifferences(const ExpectedOutcome& expected, const CaseResult& actual);
} // namespace host::job
