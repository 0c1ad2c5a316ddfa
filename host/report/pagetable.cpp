#include "host/report/pagetable.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <utility>

#include "host/report/pageview.h"
#include "host/report/pagewords.h"
#include "host/xml/text.h"

namespace host::report
{
using base::xps::printschema::MediaSize;

namespace
{
constexpr std::size_t kNarrowest = 80;
constexpr std::size_t kIndent = 8;

struct Column
{
    const char* title;
    std::size_t width;
};

// The last one is as wide as it needs to be.
constexpr std::array kColumns = {Column{"page", kIndent},
                                 Column{"decision", 18},
                                 Column{"page, mm", 20},
                                 Column{"sheet, mm", 19},
                                 Column{"reason", 0}};

using Cells = std::array<std::string, kColumns.size()>;

std::string FormatLine(const Cells& cells)
{
    std::string line;
    for (std::size_t index = 0; index < cells.size(); ++index)
    {
        line += cells[index];
        if (index + 1 < cells.size())
        {
            const std::size_t width = kColumns[index].width;
            line.append(cells[index].size() < width ? width - cells[index].size() : 1, ' ');
        }
    }
    return line + "\n";
}

/// The last blank up to `end` at which a text can be broken: not before a unit. npos for none.
std::size_t FindBreak(std::string_view text, std::size_t end)
{
    std::size_t blank = text.rfind(' ', end);
    while (blank != text.npos && blank > 0 && text.substr(blank + 1).starts_with("mm"))
    {
        blank = text.rfind(' ', blank - 1);
    }
    return blank;
}

/// Text below a row, broken at blanks.
std::string Wrap(std::string_view text, std::size_t width)
{
    const std::size_t room = width - kIndent;
    std::string lines;
    while (!text.empty())
    {
        std::size_t end = text.size();
        if (end > room)
        {
            const std::size_t blank = FindBreak(text, room);
            end = blank != text.npos && blank > 0 ? blank : std::min(text.find(' '), text.size());
        }
        lines.append(kIndent, ' ').append(text.substr(0, end)).append("\n");
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

std::string FormatWhole(double millimetres)
{
    return xml::FormatNumber(std::round(millimetres));
}

std::string FormatPage(const xps::PageSize& size)
{
    const auto format = [](const std::optional<double>& edge) {
        return edge ? FormatWhole(ToMillimetres(*edge)) : std::string("?");
    };
    return format(size.width) + "x" + format(size.height);
}

std::string FormatSheet(MediaSize sheet)
{
    constexpr double micrometres = 1000.0;
    return FormatWhole(sheet.widthMicrometres / micrometres) + "x" +
           FormatWhole(sheet.heightMicrometres / micrometres);
}

std::string Join(const std::string& before, const std::string& after)
{
    return before == after ? before : before + " -> " + after;
}

std::string FormatTickets(const PageReport& page)
{
    const std::string old = page.oldTicket.empty() ? "none" : page.oldTicket;
    return page.newTicket.empty() ? old : old + " -> " + page.newTicket;
}

std::string FormatAsked(const tickets::SheetFacts& facts)
{
    return facts.orientation + " " + facts.mediaName + " " + tickets::FormatSheet(facts.media);
}

std::string FormatDetails(const PageReport& page, std::size_t width)
{
    const auto& asked = page.asked;
    return Wrap("why: " + ExplainDecision(page), width) +
           Wrap("asks for: " + FormatAsked(asked) + " mm, limits " + tickets::FormatLimits(asked.limits) +
                    " mm",
                width) +
           (page.given ? Wrap("is given: " + FormatAsked(*page.given) + " mm", width) : "") +
           Wrap("page: " + Join(FormatPageSize(page.before), FormatPageSize(page.after)) + " px, " +
                    page.part,
                width) +
           Wrap("ticket: " + FormatTickets(page), width);
}
} // namespace

PageTable::PageTable(bool showsDetails, std::size_t width)
    : m_showsDetails(showsDetails), m_width(std::max(width, kNarrowest))
{
}

std::string PageTable::Add(const PageReport& page)
{
    const MediaSize sheet = page.asked.media;
    Cells cells = {"",
                   NameOf(Decide(page)),
                   Join(FormatPage(page.before), FormatPage(page.after)),
                   Join(FormatSheet(sheet), FormatSheet(page.given ? page.given->media : sheet)),
                   ExplainDecision(page)};
    if (m_showsDetails || FormatLine(cells).size() > m_width + 1)
    {
        cells.back() = SummariseDecision(page);
    }
    std::string rest = m_showsDetails ? FormatDetails(page, m_width) : "";
    for (const std::string& note : NotesOn(page))
    {
        rest += Wrap("note: " + note, m_width);
    }
    std::string row = FormatLine(cells).substr(kIndent) + rest;
    if (!m_showsDetails && row == m_row && page.number == m_last + 1)
    {
        m_last = page.number;
        return {};
    }
    std::string done = Finish();
    m_row = std::move(row);
    m_first = m_last = page.number;
    return m_showsDetails ? done + Finish() : done;
}

std::string PageTable::Finish()
{
    if (m_row.empty())
    {
        return {};
    }
    std::string text;
    if (!std::exchange(m_hasHead, true))
    {
        Cells titles;
        std::transform(kColumns.begin(), kColumns.end(), titles.begin(), [](const Column& column) {
            return column.title;
        });
        text = FormatLine(titles);
    }
    std::string number = std::to_string(m_first) + (m_first < m_last ? "-" + std::to_string(m_last) : "");
    number.append(number.size() < kIndent ? kIndent - number.size() : 1, ' ');
    return text + number + std::exchange(m_row, {});
}
} // namespace host::report
