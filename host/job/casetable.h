#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/job/expectedoutcome.h"
#include "host/job/joboptions.h"

namespace host::job
{
/// A job and its expected outcome.
struct Case
{
    /// The number in the table, from 1 on.
    std::size_t line = 0;
    Job job;
    /// Document, options and device as they stand in the table.
    std::string title;
    ExpectedOutcome expected;
};

/// A line that cannot be understood, and why.
struct LineFault
{
    std::size_t line = 0;
    std::string reason;
};

struct CaseTable
{
    std::vector<Case> cases;
    std::vector<LineFault> faults;
};

/// Reads a table in UTF-8, with a byte-order mark or without: a case a line, its columns between "|" in any
/// width: document, options of `run`, device description, expected outcome. "#" at the start of a line or
/// after a blank starts a comment. Relative paths start at `folder`.
CaseTable ReadCaseTable(std::string_view text, const std::filesystem::path& folder);

/// The table with other outcomes in the lines that have one here, by their numbers; all else stays as it is.
std::string RecordOutcomes(std::string_view text, const std::map<std::size_t, ExpectedOutcome>& outcomes);
} // namespace host::job
