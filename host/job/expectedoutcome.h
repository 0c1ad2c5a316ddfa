#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/report/pagereport.h"
#include "platform/win32.h"

namespace host::job
{
/// How a job comes to its end.
enum class JobEnd
{
    Done,
    /// The filter answered with a failure.
    FilterFailed,
    /// The document cannot be read.
    Unusable
};

/// What becomes of a document: of its pages in order, as far as the filter sent them, and of the job.
struct Course
{
    std::vector<report::Decision> pages;
    JobEnd end = JobEnd::Done;
    /// Of a failed filter; empty where any will do.
    std::optional<HRESULT> result;
};

/// "passed turned*3 turned+refitted failed 0x80070005". Throws std::runtime_error, naming the word that it
/// does not understand, and for no word at all.
Course ParseCourse(std::string_view text);

/// The same way round, pages that are alike in one word.
std::string FormatCourse(const Course& course);

/// What a run came to.
struct JobResult
{
    std::vector<report::PageReport> pages;
    JobEnd end = JobEnd::Done;
    HRESULT result = S_OK;
    /// Why it ended before its time, and at which part.
    std::string reason;
    /// What the filter has not let go of; empty for nothing.
    std::string leftover;

    Course ToCourse() const;
};

/// How a result differs from what was expected, a line each without its end; empty for a case that came out
/// as expected. What a filter has not let go of always counts.
std::vector<std::string> FindDifferences(const Course& expected, const JobResult& actual);
} // namespace host::job
