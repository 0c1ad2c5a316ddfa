#include "host/report/pagewords.h"

#include "host/report/pageview.h"
#include "host/xml/text.h"

namespace host::report
{
using base::xps::printschema::MediaSize;
using base::xps::printschema::MediaSizeLimits;

namespace
{
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

/// "the new markup is not well-formed: line 3, column 14: ..."; empty where nothing is wrong with it.
std::string ExplainMarkupFault(const PageReport& page)
{
    return page.markupFault.empty() ? "" : "the new markup " + page.markupFault;
}

std::string FormatBox(const MillimetreBox& box)
{
    return xml::FormatNumber(box.width) + "x" + xml::FormatNumber(box.height) + " mm";
}

/// "lies across" or "is larger than" its sheet; empty for a page that suits it.
std::string CompareWithSheet(const PageReport& page)
{
    const PageView view = ViewAfter(page);
    if (!view.page || view.sheet.width == 0.0)
    {
        return {};
    }
    // Documents round their sizes to pixels.
    constexpr double tolerance = 0.5;
    const double margin = view.page->width - view.page->height;
    const double sheetMargin = view.sheet.width - view.sheet.height;
    if ((margin > tolerance && sheetMargin < -tolerance) || (margin < -tolerance && sheetMargin > tolerance))
    {
        return "lies across";
    }
    const bool isLarger =
        view.page->width > view.sheet.width + tolerance || view.page->height > view.sheet.height + tolerance;
    return isLarger ? "is larger than" : "";
}
} // namespace

const char* NameOf(Decision decision)
{
    constexpr std::array names = {"passed", "turned", "refitted", "turned, refitted"};
    return names.at(static_cast<std::size_t>(decision));
}

std::string ExplainDecision(const PageReport& page)
{
    const bool isTurned = page.isMarkupReplaced;
    if (IsRefitted(page))
    {
        return (isTurned ? ExplainOrientation(page) + "; " : "") + ExplainFit(page);
    }
    return ExplainOrientation(page) + (isTurned ? "" : " within the limits");
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

std::vector<std::string> NotesOn(const PageReport& page)
{
    std::vector<std::string> notes;
    for (const tickets::Replacement& replacement : page.replacements)
    {
        notes.push_back(replacement.wanted + " is asked for, in whose place the device puts " +
                        replacement.taken);
    }
    for (const std::string& feature : page.asked.keptFeatures)
    {
        notes.push_back("the ticket does not give " + feature + ", so that of the part before holds");
    }
    if (!page.asked.prefixWithoutLimits.empty())
    {
        notes.push_back("no limits under the prefix " + page.asked.prefixWithoutLimits);
    }
    if (page.given && page.given->mediaName != page.asked.mediaName && !IsRefitted(page))
    {
        notes.push_back("the medium's name becomes " + page.given->mediaName);
    }
    if (const std::string relation = CompareWithSheet(page); !relation.empty())
    {
        const PageView view = ViewAfter(page);
        const bool isScaled = view.page->width != ToMillimetres(*page.after.width);
        notes.push_back(std::string("the page") + (isScaled ? ", scaled to " : " of ") +
                        FormatBox(*view.page) + (isScaled ? ", " : " ") + relation + " its sheet of " +
                        FormatBox(view.sheet));
    }
    if (!page.markupFault.empty())
    {
        notes.push_back(xml::ToOneLine(ExplainMarkupFault(page)));
    }
    return notes;
}

std::string ExplainWithNotes(const PageReport& page)
{
    std::string text = ExplainDecision(page);
    for (const std::string& note : NotesOn(page))
    {
        text += "; " + note;
    }
    return text;
}

std::string FormatPageSize(const xps::PageSize& size)
{
    const auto format = [](const std::optional<double>& edge) {
        return edge ? xml::FormatNumber(*edge) : std::string("?");
    };
    return format(size.width) + "x" + format(size.height);
}

bool IsJudged(const PageReport& page)
{
    return page.markupFault.empty();
}

bool IsStable(const PageReport& page)
{
    return IsJudged(page) && !page.isMarkupReplaced && page.newTicket.empty();
}

std::string NameSecondRun(const PageReport& page)
{
    if (!IsJudged(page))
    {
        return "not judged";
    }
    if (IsStable(page))
    {
        return "stable";
    }
    const Decision decision = Decide(page);
    return std::string("would be ") +
           (decision == Decision::Passed ? "given another ticket" : NameOf(decision));
}

std::string ExplainSecondRun(const PageReport& page)
{
    if (!IsJudged(page))
    {
        return ExplainMarkupFault(page);
    }
    if (IsStable(page))
    {
        return ExplainWithNotes(page);
    }
    return page.asked.mediaName + " " + tickets::FormatSheet(page.asked.media) + " mm; " +
           ExplainWithNotes(page);
}

std::string DecisionCounts::Format() const
{
    std::string text;
    for (const Decision decision : kDecisions)
    {
        text += (text.empty() ? "" : "; ") + std::to_string(Of(decision)) + " " + NameOf(decision);
    }
    return text;
}
} // namespace host::report
