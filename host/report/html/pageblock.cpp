#include "host/report/html/pageblock.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "host/pipeline/resulttext.h"
#include "host/report/html/htmltext.h"
#include "host/report/html/pagedrawing.h"
#include "host/report/pageview.h"
#include "host/report/pagewords.h"
#include "host/tickets/ticketdiff.h"
#include "host/tickets/ticketdocument.h"
#include "host/tickets/ticketlisting.h"
#include "host/xml/text.h"

namespace host::report::html
{
namespace
{
std::string Tag(const char* kind, const char* text)
{
    return std::string(" <span class=\"tag ") + kind + "\">" + text + "</span>";
}

/// "215.9 x 279.4 mm", which can be broken before the sign only.
std::string FormatExtent(double width, double height, const char* unit)
{
    return xml::FormatNumber(width) + " &#215;&#160;" + xml::FormatNumber(height) + "&#160;" + unit;
}

/// The extent in millimetres, and below it where the box is and the extent in pixels.
std::string FormatMeasure(const MillimetreBox& box)
{
    std::string text = FormatExtent(box.width, box.height, "mm");
    if (box.left != 0.0 || box.top != 0.0)
    {
        text += "<span class=\"what\">at " + xml::FormatNumber(box.left) + ", " + xml::FormatNumber(box.top) +
                " mm</span>";
    }
    return text + "<span class=\"what\">" + FormatExtent(ToPixels(box.width), ToPixels(box.height), "px") +
           "</span>";
}

std::string FormatMeasure(const std::optional<MillimetreBox>& box)
{
    return box ? FormatMeasure(*box) : "not known";
}

/// A table of what the drawings show, with a column for each of them.
std::string FormatMeasures(const PageReport& page)
{
    const bool hasAfter = Decide(page) != Decision::Passed;
    const PageView before = ViewBefore(page);
    const PageView after = ViewAfter(page);
    std::string html = "<table class=\"measures\"><thead><tr><th scope=\"col\">Measure</th>";
    html += hasAfter ? "<th scope=\"col\">Before</th><th scope=\"col\">After</th>"
                     : "<th scope=\"col\">Before and after</th>";
    html += "</tr></thead><tbody>";
    const auto addRow = [&](const std::string& kind, const std::string& title, const auto& measure) {
        html += "<tr><th scope=\"row\" class=\"stroke " + kind + "\">" + title + "</th><td>" +
                measure(before, page.asked) + "</td>";
        html += hasAfter ? "<td>" + measure(after, page.given ? *page.given : page.asked) + "</td></tr>"
                         : "</tr>";
    };
    addRow("sheet", "Sheet", [](const PageView& view, const tickets::SheetFacts& ticket) {
        return EscapeHtmlName(ticket.mediaName) + "<br>" + FormatMeasure(view.sheet);
    });
    const auto addBox = [&](const char* kind, const char* title, auto PageView::*box) {
        addRow(kind, title, [&](const PageView& view, const auto&) { return FormatMeasure(view.*box); });
    };
    addBox("page-box", "Page box", &PageView::page);
    addBox("imageable", "Imageable area", &PageView::imageable);
    addBox("largest", "Upper limit", &PageView::largest);
    addBox("smallest", "Lower limit", &PageView::smallest);
    return html + "</tbody></table>";
}

std::string DescribeScaling(const tickets::SheetFacts& ticket)
{
    const auto& scale = ticket.scale;
    if (scale.widthPercent <= 0)
    {
        return EscapeHtmlName(ticket.scaling);
    }
    constexpr double micrometres = 1000.0;
    return EscapeHtmlName(ticket.scaling) + ", " + std::to_string(scale.widthPercent) + " &#215; " +
           std::to_string(scale.heightPercent) + " %, offset " +
           xml::FormatNumber(scale.offsetWidthMicrometres / micrometres) + " and " +
           xml::FormatNumber(scale.offsetHeightMicrometres / micrometres) + " mm";
}

std::string FormatNotes(const PageReport& page)
{
    std::string html;
    for (const std::string& note : NotesOn(page))
    {
        html += "<p class=\"note\"><b>Note:</b> " + EscapeHtml(note) + ".</p>";
    }
    return html;
}

/// How the content is moved, by the markup and by the ticket.
std::string FormatMovement(const PageReport& page)
{
    std::string html;
    if (page.isMarkupReplaced)
    {
        html += "<p><b>Transform:</b> ";
        if (const auto& transform = page.details->transform)
        {
            html += CodeOf(FormatMatrix(*transform)) + ", " + DescribeTransform(*transform) +
                    ". The page of " + FormatPageSize(page.before) + " px becomes one of " +
                    FormatPageSize(page.after) + " px.</p>";
        }
        else
        {
            html += "not to be found at the start of the new markup.</p>";
        }
    }
    if (page.given)
    {
        const std::string before = DescribeScaling(page.asked);
        const std::string after = DescribeScaling(*page.given);
        html += "<p><b>Scaling, for the printer to do:</b> " +
                (before == after ? "stays " + after : before + " becomes " + after) + ".</p>";
    }
    return html;
}

std::string FormatFigure(const char* caption, const std::string& drawing)
{
    return std::string("<figure><figcaption>") + caption + "</figcaption>" + drawing + "</figure>";
}

std::string FormatDrawings(const PageReport& page)
{
    const PageDrawings drawings = DrawPage(page);
    return "<div class=\"drawings\">" +
           (drawings.after.empty()
                ? FormatFigure("Before and after", drawings.before)
                : FormatFigure("Before", drawings.before) + FormatFigure("After", drawings.after)) +
           FormatMeasures(page) + "</div>";
}

const char* NameOf(tickets::TicketChange change)
{
    constexpr std::array names = {"unchanged", "changed", "added", "written out as in force", "removed"};
    return names.at(static_cast<std::size_t>(change));
}

std::string FormatCell(const tickets::TicketDifference& difference,
                       const std::optional<std::string>& value,
                       bool isMarked,
                       const std::string& instead)
{
    if (!value)
    {
        return "<td class=\"quiet\">" + instead + "</td>";
    }
    const std::string text = EscapeHtmlName(tickets::FormatValue(difference.path, *value));
    return isMarked ? "<td><mark>" + text + "</mark></td>" : "<td>" + text + "</td>";
}

std::string FormatDifference(const tickets::TicketDifference& difference)
{
    const bool isMarked = difference.change == tickets::TicketChange::Changed ||
                          difference.change == tickets::TicketChange::Added ||
                          difference.change == tickets::TicketChange::Removed;
    std::string absent = "not set";
    if (difference.inForce)
    {
        absent += ", in force: " + EscapeHtmlName(tickets::FormatValue(difference.path, *difference.inForce));
    }
    return "<tr><th scope=\"row\">" + EscapeHtmlName(difference.path) + "<span class=\"what\">" +
           NameOf(difference.change) + "</span></th>" +
           FormatCell(difference, difference.before, isMarked, absent) +
           FormatCell(difference, difference.after, isMarked, "not set") + "</tr>";
}

template <typename Wanted>
std::string FormatDifferences(const std::vector<tickets::TicketDifference>& differences, Wanted&& isWanted)
{
    std::string html =
        "<table class=\"diff\"><thead><tr><th scope=\"col\">Setting</th><th scope=\"col\">Before</th>"
        "<th scope=\"col\">After</th></tr></thead><tbody>";
    for (const tickets::TicketDifference& difference : differences)
    {
        html += isWanted(difference) ? FormatDifference(difference) : "";
    }
    return html + "</tbody></table>";
}

std::string FormatTicketDiff(const PageDetails& details)
{
    const auto differences =
        tickets::CompareTickets(details.ownTicket, details.effectiveTicket, details.newTicket);
    const auto isQuiet = [](const tickets::TicketDifference& difference) {
        return difference.change == tickets::TicketChange::Same ||
               difference.change == tickets::TicketChange::WrittenOut;
    };
    const auto quiet =
        static_cast<std::size_t>(std::count_if(differences.begin(), differences.end(), isQuiet));
    std::string html = FormatDifferences(differences, [&](const auto& each) { return !isQuiet(each); });
    if (quiet > 0)
    {
        html += "<details class=\"unchanged\"><summary>" + xml::CountOf(quiet, "setting") +
                (quiet == 1 ? " keeps its value" : " keep their values") + "</summary>" +
                FormatDifferences(differences, isQuiet) + "</details>";
    }
    return html;
}

std::string FormatTicket(const PageReport& page)
{
    std::string html = "<h4>Print ticket</h4>";
    const std::string old = page.oldTicket.empty() ? "No ticket of its own" : CodeOf(page.oldTicket);
    try
    {
        html += page.newTicket.empty()
                    ? "<p>" + old + (page.oldTicket.empty() ? ", and none is given.</p>" : " stays.</p>")
                    : "<p>" + old + " &#8594; " + CodeOf(page.newTicket) + "</p>" +
                          FormatTicketDiff(*page.details);
        html += "<details><summary>Settings in force for the page as it came</summary><pre tabindex=\"0\">" +
                EscapeHtml(tickets::FormatListing(tickets::ListTicket(page.details->effectiveTicket)), true) +
                "</pre></details>";
    }
    catch (const xml::MarkupError& fault)
    {
        html += "<p>The tickets cannot be compared: " + EscapeHtml(fault.what()) + "</p>";
    }
    return html;
}

} // namespace

void CallList::Add(const pipeline::TracedCall& call)
{
    constexpr std::size_t mostText = 65'536;
    ++m_count;
    if (m_text.size() >= mostText)
    {
        ++m_leftOut;
        return;
    }
    const std::string meaning = pipeline::DescribeResult(call.result);
    m_text += pipeline::FormatResult(call.result) + "  " + std::string(call.method) +
              (call.subject.empty() ? "" : "  " + EscapeHtml(call.subject)) +
              (meaning.empty() ? "" : "  (" + EscapeHtml(meaning) + ")") + "\n";
}

std::string CallList::Format(bool isUnfolded) const
{
    return std::string("<details class=\"calls\"") + (isUnfolded ? " open" : "") + "><summary>" +
           xml::CountOf(m_count, "pipeline call") + "</summary><pre tabindex=\"0\">" + m_text +
           (m_leftOut > 0 ? "... and " + std::to_string(m_leftOut) + " more" : "") + "</pre></details>";
}

PageBlock FormatPageBlock(const PageReport& page, const CallList& calls)
{
    const std::string number = std::to_string(page.number);
    std::string classes = "page";
    std::string tags;
    const bool isPassed = Decide(page) == Decision::Passed;
    for (const auto& [kind, isOfKind] : {std::pair("turned", page.isMarkupReplaced),
                                         std::pair("refitted", IsRefitted(page)),
                                         std::pair("passed", isPassed)})
    {
        classes += isOfKind ? std::string(" ") + kind : "";
        tags += isOfKind ? Tag(kind, kind) : "";
    }
    tags += page.markupFault.empty() ? "" : Tag("failed", "malformed");
    PageBlock block;
    block.head = "<section class=\"" + classes + "\" id=\"page-" + number + "\"><h3>Page " + number + tags +
                 "</h3><p class=\"quiet\">" + CodeOf(page.part) + "</p><p><b>Why:</b> " +
                 EscapeHtml(ExplainDecision(page)) + ".</p>" + FormatNotes(page);
    block.rest = FormatDrawings(page) + FormatMovement(page) + FormatTicket(page) + calls.Format(false) +
                 "</section>\n";
    return block;
}

std::string FormatSecondRunBlock(const PageReport& again)
{
    return "<p class=\"again\"><b>Run again:</b>" +
           Tag(IsStable(again) ? "stable" : "changes", NameSecondRun(again).c_str()) + " " +
           EscapeHtml(ExplainSecondRun(again)) + ".</p>";
}

std::string FormatFailureBlock(const std::string& part, const std::string& reason, const CallList& calls)
{
    return "<section class=\"page failed\" id=\"failed\"><h3>" +
           (part.empty() ? "Before the first part" : "At " + CodeOf(part)) + Tag("failed", "failed") +
           "</h3><p><b>Why:</b> " + EscapeHtml(reason) + "</p>" + calls.Format(true) + "</section>\n";
}
} // namespace host::report::html
