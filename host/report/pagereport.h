#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "base/xps/printschema/tickets/imageableareareader.h"
#include "host/tickets/replacement.h"
#include "host/tickets/ticketfacts.h"
#include "host/xps/pagemarkup.h"

namespace host::report
{
/// Facts that only detailed reports show; collecting them takes time.
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

/// The facts of a page that the filter has sent.
struct PageReport
{
    /// From 1 on, over all documents.
    std::size_t number = 0;
    std::string part;
    xps::PageSize before;
    xps::PageSize after;
    /// From the page's effective ticket before the filter.
    tickets::TicketFacts asked;
    /// What the page's tickets ask for and the device replaces.
    std::vector<tickets::Replacement> replacements;
    /// From the new ticket; empty when the page keeps its own.
    std::optional<tickets::SheetFacts> given;
    /// Which sheet a refitted page is given: "the document's sheet" or what else the filter takes.
    std::string givenOrigin;
    /// Set when the device does not take the sheet of a refitted page.
    std::optional<tickets::Replacement> givenReplacement;
    bool isMarkupReplaced = false;
    /// What is wrong with the new markup, as xps::PageMarkup has it; empty for nothing.
    std::string markupFault;
    /// Whether the pipeline refused the page because of it.
    bool isRefused = false;
    /// Part names; empty for none.
    std::string oldTicket;
    std::string newTicket;
    /// Empty unless they were asked for.
    std::optional<PageDetails> details;
};

enum class Decision
{
    Passed,
    Turned,
    Refitted,
    TurnedAndRefitted
};

inline constexpr Decision kDecisions[] = {
    Decision::Passed, Decision::Turned, Decision::Refitted, Decision::TurnedAndRefitted};

/// Where the sheet of a refitted page comes from when no ticket has one that fits.
inline constexpr const char* kUserPaper = "the user's paper";

/// Turned is a page whose markup was replaced, refitted one that was given another sheet or scaling
/// because the sheet that it asked for lies outside the limits.
Decision Decide(const PageReport& page);
bool IsRefitted(const PageReport& page);
bool IsOutOfLimits(const PageReport& page);

/// Whether an orientation lays the page across its sheet.
bool IsLandscape(const std::string& orientation);

base::xps::printschema::MediaSize Rotated(base::xps::printschema::MediaSize sheet);

/// The sheet that is compared with the limits: as it lies when the page is printed, upright after a turn.
base::xps::printschema::MediaSize AsPrinted(const PageReport& page);
} // namespace host::report
