#pragma once

#include <cstddef>
#include <string>

#include "host/pipeline/calltrace.h"
#include "host/report/pagereport.h"

namespace host::report::html
{
/// The pipeline calls for one part. Beyond a limit they are only counted.
class CallList
{
public:
    void Add(const pipeline::TracedCall& call);

    /// A list that can be unfolded, with the result, the method, what each call was about, and the result's
    /// meaning.
    std::string Format(bool isUnfolded) const;

private:
    std::string m_text;
    std::size_t m_count = 0;
    std::size_t m_leftOut = 0;
};

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

/// The block in place of the page at which the job failed. The part is empty before the first one.
std::string FormatFailureBlock(const std::string& part, const std::string& reason, const CallList& calls);
} // namespace host::report::html
