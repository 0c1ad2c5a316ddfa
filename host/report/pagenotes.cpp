#include "host/report/pagenotes.h"

#include "host/report/pageview.h"
#include "host/xml/text.h"

namespace host::report
{
namespace
{
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
} // namespace host::report
