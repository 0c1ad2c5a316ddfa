#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "base/xps/printschema/imageableareareader.h"
#include "host/tickets/replacement.h"
#include "host/tickets/ticketfacts.h"
#include "host/xps/pagemarkup.h"

namespace host::report
{
/// How closely a page is looked at: each level takes more time.
enum class Detail
{
    None,
    Tickets,
    /// And where the printer can print.
    All
};

/// What only those want to know of a page who look at it closely.
struct PageDetails
{
    /// Bytes of tickets; empty for none.
    std::string effectiveTicket;
    std::string ownTicket;
    std::string newTicket;
    /// As the page is read, before and after; empty where the printer could not be asked.
    std::optional<base::xps::printschema::ImageableArea> areaBefore;
    std::optional<base::xps::printschema::ImageableArea> areaAfter;
    /// What the new markup does to the page's content.
    std::optional<xps::ContentTransform> transform;
};

/// What was seen of a page that went through the filter.
struct PageReport
{
    /// From 1 on, over all documents.
    std::size_t number = 0;
    std::string part;
    xps::PageSize before;
    xps::PageSize after;
    /// Of the page's effective ticket as it came.
    tickets::TicketFacts asked;
    /// What the page's tickets ask for in vain.
    std::vector<tickets::Replacement> replacements;
    /// Of the new ticket; empty when the page keeps its own.
    std::optional<tickets::SheetFacts> given;
    /// Where the printer does not take the sheet that a refitted page is given.
    std::optional<tickets::Replacement> givenReplacement;
    bool isMarkupReplaced = false;
    /// What is wrong with the new markup, as xps::PageMarkup has it; empty for nothing.
    std::string markupFault;
    /// Whether the pipeline did not take the page for that.
    bool isRefused = false;
    /// Part names; empty for none.
    std::string oldTicket;
    std::string newTicket;
    /// Empty when nobody asked for them.
    std::optional<PageDetails> details;
};

enum class Decision
{
    Passed,
    Turned,
    Refitted,
    TurnedAndRefitted
};

/// Turned is a page whose markup was replaced, refitted one that was given another sheet or scaling
/// because the sheet that it asked for lies outside the limits.
Decision Decide(const PageReport& page);
const char* NameOf(Decision decision);
bool IsRefitted(const PageReport& page);

/// Why, in words: what of the ticket led to the decision, and what the printer has changed of it.
std::string ExplainDecision(const PageReport& page);

/// "the new markup is not well-formed: line 3, column 14: ..."; empty where nothing is wrong with it.
std::string ExplainMarkupFault(const PageReport& page);

/// Whether an orientation lays the page across its sheet.
bool IsLandscape(const std::string& orientation);

base::xps::printschema::MediaSize Rotated(base::xps::printschema::MediaSize sheet);

/// The sheet that the limits are held against: as the page lies on it, upright once it has been turned.
base::xps::printschema::MediaSize AsPrinted(const PageReport& page);

/// "816x1056", to hundredths, or "?" for what the markup does not say.
std::string FormatPageSize(const xps::PageSize& size);
} // namespace host::report
