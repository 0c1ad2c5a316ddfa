#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "host/report/pagereport.h"

// What is said of a page, in words that every format takes.
namespace host::report
{
const char* NameOf(Decision decision);

/// The reason in words: what in the ticket led to the decision.
std::string ExplainDecision(const PageReport& page);

/// The reason in at most 15 characters: "within limits", "Landscape", "too large 65 %".
std::string SummariseDecision(const PageReport& page);

/// What else is worth knowing of a page, one short text each: what the device replaced, what its ticket
/// lacks, a medium that got another name, a page that does not suit its sheet, and faults of the new markup.
std::vector<std::string> NotesOn(const PageReport& page);

/// The reason of the decision and the notes on one line.
std::string ExplainWithNotes(const PageReport& page);

/// "816x1056", to hundredths, with "?" for a length that the markup does not give.
std::string FormatPageSize(const xps::PageSize& size);

// A page in a second run, over the output of the first. Its markup fault is that of the markup that the first
// run wrote.

/// False for malformed markup, which readers may understand in different ways.
bool IsJudged(const PageReport& page);

/// Whether the second run leaves the page alone.
bool IsStable(const PageReport& page);

/// "stable", "not judged", or "would be" and what.
std::string NameSecondRun(const PageReport& page);

/// Why.
std::string ExplainSecondRun(const PageReport& page);

/// The number of pages of a run for each decision.
class DecisionCounts
{
public:
    void Add(Decision decision) { ++m_counts.at(static_cast<std::size_t>(decision)); }

    std::size_t Of(Decision decision) const { return m_counts.at(static_cast<std::size_t>(decision)); }
    std::size_t All() const { return m_counts[0] + m_counts[1] + m_counts[2] + m_counts[3]; }

    /// "2 passed; 1 turned; 0 refitted; 1 turned, refitted".
    std::string Format() const;

private:
    std::array<std::size_t, std::size(kDecisions)> m_counts{};
};
} // namespace host::report
