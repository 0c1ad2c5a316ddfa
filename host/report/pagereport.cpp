#include "host/report/pagereport.h"

#include <array>
#include <charconv>

namespace host::report
{
using base::xps::printschema::MediaSize;
using base::xps::printschema::MediaSizeLimits;

namespace
{
/// With no more decimals than it has, and a decimal point whatever the locale.
std::string FormatNumber(double value)
{
    std::array<char, 64> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    return std::string(digits.data(), end);
}

std::string FormatExtent(const std::optional<double>& value)
{
    return value ? FormatNumber(*value) : "?";
}

bool IsLandscape(MediaSize sheet)
{
    return sheet.widthMicrometres > sheet.heightMicrometres;
}

/// The sheet as the page lies on it under a landscape orientation, and as the filter looks at it.
MediaSize AsOriented(const tickets::TicketFacts& ticket)
{
    const bool isTurned = ticket.orientation == "Landscape" || ticket.orientation == "ReverseLandscape";
    return isTurned ? MediaSize{ticket.media.heightMicrometres, ticket.media.widthMicrometres} : ticket.media;
}

/// The sheet that the limits are held against: a page that is turned lies upright on it.
MediaSize AsPrinted(const PageReport& page)
{
    const MediaSize sheet = AsOriented(page.asked);
    return page.isMarkupReplaced ? MediaSize{sheet.heightMicrometres, sheet.widthMicrometres} : sheet;
}

bool IsOutOfLimits(const PageReport& page)
{
    return !page.asked.limits.Contains(AsPrinted(page));
}

std::string DescribeSheet(const tickets::TicketFacts& ticket)
{
    return ticket.mediaName + " (" + FormatMillimetres(ticket.media) + ")";
}

std::string DescribeLimits(const MediaSizeLimits& limits)
{
    return FormatMillimetres(limits.minimum) + " to " + FormatMillimetres(limits.maximum);
}

std::string DescribeScaling(const tickets::TicketFacts& ticket)
{
    if (ticket.scaling != "Custom" && ticket.scaling != "CustomSquare")
    {
        return "scaling stays " + ticket.scaling;
    }
    return "scaled to " + std::to_string(ticket.scale.widthPercent) + " %";
}

std::string ExplainTurn(const PageReport& page)
{
    const char* const shape = IsLandscape(page.asked.media) ? "landscape" : "upright";
    return page.asked.orientation + " on " + shape + " " + DescribeSheet(page.asked);
}

std::string ExplainFit(const PageReport& page)
{
    std::string text =
        FormatMillimetres(AsPrinted(page)) + " is outside " + DescribeLimits(page.asked.limits);
    if (page.given)
    {
        text += ": refitted to " + DescribeSheet(*page.given) + ", " + DescribeScaling(*page.given);
    }
    return text;
}
} // namespace

Decision Decide(const PageReport& page)
{
    const bool isRefitted = page.given.has_value() && IsOutOfLimits(page);
    if (page.isMarkupReplaced)
    {
        return isRefitted ? Decision::TurnedAndRefitted : Decision::Turned;
    }
    return isRefitted ? Decision::Refitted : Decision::Passed;
}

const char* NameOf(Decision decision)
{
    switch (decision)
    {
    case Decision::Passed:
        return "passed";
    case Decision::Turned:
        return "turned";
    case Decision::Refitted:
        return "refitted";
    case Decision::TurnedAndRefitted:
        return "turned, refitted";
    }
    return "";
}

std::string ExplainDecision(const PageReport& page)
{
    switch (Decide(page))
    {
    case Decision::Passed:
        return page.asked.orientation + " on " + DescribeSheet(page.asked) + ", within the limits";
    case Decision::Turned:
        return ExplainTurn(page);
    case Decision::Refitted:
        return ExplainFit(page);
    case Decision::TurnedAndRefitted:
        return ExplainTurn(page) + "; " + ExplainFit(page);
    }
    return "";
}

std::string FormatMillimetres(MediaSize size)
{
    constexpr double micrometres = 1000.0;
    return FormatNumber(size.widthMicrometres / micrometres) + " x " +
           FormatNumber(size.heightMicrometres / micrometres) + " mm";
}

std::string FormatPageSize(const PageSize& size)
{
    return FormatExtent(size.width) + " x " + FormatExtent(size.height);
}
} // namespace host::report
