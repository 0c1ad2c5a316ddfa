#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "host/tickets/jobtickets.h"

namespace host::report
{
/// A page's size in its markup's unit, 1/96 inch; empty where the markup does not say.
struct PageSize
{
    std::optional<double> width;
    std::optional<double> height;
};

/// What was seen of a page that went through the filter.
struct PageReport
{
    /// From 1 on, over all documents.
    std::size_t number = 0;
    std::string part;
    PageSize before;
    PageSize after;
    /// Of the page's effective ticket as it came.
    tickets::TicketFacts asked;
    /// Of the new ticket; empty when the page keeps its own.
    std::optional<tickets::SheetFacts> given;
    bool isMarkupReplaced = false;
    /// Part names; empty for none.
    std::string oldTicket;
    std::string newTicket;
};

enum class Decision
{
    Passed,
    Turned,
    Refitted,
    TurnedAndRefitted
};

/// Turned is a page whose markup was replaced, refitted one that was given a sheet within the limits that the
/// one it asked for exceeded.
Decision Decide(const PageReport& page);
const char* NameOf(Decision decision);

/// Why, in words: what of the ticket led to the decision.
std::string ExplainDecision(const PageReport& page);

/// In millimetres, as they are typed: "210x297".
std::string FormatSheet(base::xps::printschema::MediaSize size);

/// The same: "76.2x127-215.9x355.6".
std::string FormatLimits(const base::xps::printschema::MediaSizeLimits& limits);

/// "816x1056", to hundredths, or "?" for what the markup does not say.
std::string FormatPageSize(const PageSize& size);
} // namespace host::report
