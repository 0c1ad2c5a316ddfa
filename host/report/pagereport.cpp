#include "host/report/pagereport.h"
#include "host/xml/text.h"

namespace host::report
{
using base::xps::printschema::MediaSize;
using base::xps::printschema::MediaSizeLimits;

namespace
{
std::string FormatExtent(const std::optional<double>& value)
{
    return value ? xml::FormatNumber(*value) : "?";
}

bool IsOutOfLimits(const PageReport& page)
{
    return !page.asked.limits.Contains(AsPrinted(page));
}

/// Whether the new ticket is about more than the turn.
bool HasOtherSheet(const PageReport& page)
{
    return page.given && (page.given->media != AsPrinted(page) || page.given->scaling != page.asked.scaling);
}

bool IsCustom(const std::string& scaling)
{
    return scaling == "Custom" || scaling == "CustomSquare";
}

std::string DescribeScaling(const tickets::SheetFacts& ticket)
{
    if (!IsCustom(ticket.scaling))
    {
        return "scaling stays " + ticket.scaling;
    }
    return "scaled to " + std::to_string(ticket.scale.widthPercent) + " %";
}

std::string ExplainOrientation(const PageReport& page)
{
    const MediaSize sheet = page.asked.media;
    const bool isUpright = sheet.widthMicrometres <= sheet.heightMicrometres;
    return page.asked.orientation + " on " + (isUpright ? "an upright" : "a landscape") + " sheet";
}

std::string ExplainFit(const PageReport& page)
{
    const std::string replaced = page.givenReplacement ? ", in whose place the device puts " +
                                                             page.givenReplacement->taken + ": for that"
                                                       : ",";
    return tickets::FormatSheet(AsPrinted(page)) + " mm is outside the limits: now " + page.given->mediaName +
           " " + tickets::FormatSheet(page.given->media) + " (" + page.givenOrigin + ")" + replaced + " " +
           DescribeScaling(*page.given);
}

} // namespace

bool IsRefitted(const PageReport& page)
{
    return IsOutOfLimits(page) && HasOtherSheet(page);
}

Decision Decide(const PageReport& page)
{
    if (page.isMarkupReplaced)
    {
        return IsRefitted(page) ? Decision::TurnedAndRefitted : Decision::Turned;
    }
    return IsRefitted(page) ? Decision::Refitted : Decision::Passed;
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
        return ExplainOrientation(page) + " within the limits";
    case Decision::Turned:
        return ExplainOrientation(page);
    case Decision::Refitted:
        return ExplainFit(page);
    case Decision::TurnedAndRefitted:
        return ExplainOrientation(page) + "; " + ExplainFit(page);
    }
    return "";
}
std::string SummariseDecision(const PageReport& page)
{
    if (!IsRefitted(page))
    {
        return page.isMarkupReplaced ? page.asked.orientation
                                     : std::string(IsOutOfLimits(page) ? "out of limits" : "within limits");
    }
    const MediaSize sheet = AsPrinted(page);
    const MediaSizeLimits& limits = page.asked.limits;
    if (limits == MediaSizeLimits())
    {
        return "no limits";
    }
    const bool isTooSmall = sheet.widthMicrometres < limits.minimum.widthMicrometres ||
                            sheet.heightMicrometres < limits.minimum.heightMicrometres;
    const bool isTooLarge = sheet.widthMicrometres > limits.maximum.widthMicrometres ||
                            sheet.heightMicrometres > limits.maximum.heightMicrometres;
    std::string text = isTooSmall && isTooLarge ? "bad shape" : isTooLarge ? "too large" : "too small";
    return IsCustom(page.given->scaling) ? text + " " + std::to_string(page.given->scale.widthPercent) + " %"
                                         : text;
}

std::string ExplainMarkupFault(const PageReport& page)
{
    return page.markupFault.empty() ? "" : "the new markup " + page.markupFault;
}

bool IsLandscape(const std::string& orientation)
{
    return orientation == "Landscape" || orientation == "ReverseLandscape";
}

MediaSize Rotated(MediaSize sheet)
{
    return {sheet.heightMicrometres, sheet.widthMicrometres};
}

MediaSize AsPrinted(const PageReport& page)
{
    const bool lies = IsLandscape(page.asked.orientation) != page.isMarkupReplaced;
    return lies ? Rotated(page.asked.media) : page.asked.media;
}

std::string FormatPageSize(const xps::PageSize& size)
{
    return FormatExtent(size.width) + "x" + FormatExtent(size.height);
}
} // namespace host::report
