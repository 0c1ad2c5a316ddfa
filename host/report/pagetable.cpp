#include "host/report/pagetable.h"

#include <array>
#include <string_view>

#include <nlohmann/json.hpp>

#include "host/report/secondrun.h"
#include "host/xml/text.h"

namespace host::report
{
using base::xps::printschema::MediaSize;

namespace
{
struct Column
{
    const char* title;
    std::size_t width;
};

// The last one is as wide as it needs to be.
constexpr std::array kColumns = {Column{"page", 5},
                                 Column{"before, px", 16},
                                 Column{"after, px", 16},
                                 Column{"asks for", 17},
                                 Column{"medium, mm", 32},
                                 Column{"limits, mm", 23},
                                 Column{"decision", 17},
                                 Column{"reason; ticket", 0}};

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

/// Why, and what is wrong with the outcome.
std::string FormatReason(const PageReport& page)
{
    const std::string fault = ExplainMarkupFault(page);
    return ExplainDecision(page) + (fault.empty() ? "" : "; " + xml::ToOneLine(fault));
}

std::string FormatTickets(const PageReport& page)
{
    const std::string old = page.oldTicket.empty() ? "none" : page.oldTicket;
    return page.newTicket.empty() ? old : old + " -> " + page.newTicket;
}

nlohmann::json ToJson(const std::optional<double>& value)
{
    return value ? nlohmann::json(*value) : nlohmann::json(nullptr);
}

nlohmann::json ToJson(const xps::PageSize& size)
{
    return {{"width", ToJson(size.width)}, {"height", ToJson(size.height)}};
}

nlohmann::json ToJson(MediaSize size)
{
    return {{"widthMicrometres", size.widthMicrometres}, {"heightMicrometres", size.heightMicrometres}};
}

nlohmann::json ToJson(const tickets::SheetFacts& facts)
{
    nlohmann::json media = ToJson(facts.media);
    media["name"] = facts.mediaName;
    return {{"orientation", facts.orientation}, {"media", media}, {"scaling", facts.scaling}};
}

nlohmann::json ToJson(const tickets::TicketFacts& facts)
{
    nlohmann::json object = ToJson(static_cast<const tickets::SheetFacts&>(facts));
    object["limits"] = {{"minimum", ToJson(facts.limits.minimum)}, {"maximum", ToJson(facts.limits.maximum)}};
    return object;
}

nlohmann::json ToJson(const tickets::Replacement& replacement)
{
    return {{"wanted", replacement.wanted}, {"taken", replacement.taken}};
}

nlohmann::json ToJson(const std::vector<tickets::Replacement>& replacements)
{
    nlohmann::json array = nlohmann::json::array();
    for (const tickets::Replacement& replacement : replacements)
    {
        array.push_back(ToJson(replacement));
    }
    return array;
}

nlohmann::json NameOrNull(const std::string& name)
{
    return name.empty() ? nlohmann::json(nullptr) : nlohmann::json(name);
}

std::string ToLine(const nlohmann::json& object)
{
    return object.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}
} // namespace

std::string FormatTableHead()
{
    Cells cells;
    for (std::size_t index = 0; index < cells.size(); ++index)
    {
        cells[index] = kColumns[index].title;
    }
    return FormatLine(cells);
}

std::string FormatTableLine(const PageReport& page)
{
    return FormatLine({std::to_string(page.number),
                       FormatPageSize(page.before),
                       FormatPageSize(page.after),
                       page.asked.orientation,
                       page.asked.mediaName + " " + tickets::FormatSheet(page.asked.media),
                       tickets::FormatLimits(page.asked.limits),
                       NameOf(Decide(page)),
                       FormatReason(page) + "; " + FormatTickets(page)});
}

std::string FormatJson(const PageReport& page)
{
    const nlohmann::json object = {
        {"page", page.number},
        {"part", page.part},
        {"before", ToJson(page.before)},
        {"after", ToJson(page.after)},
        {"asked", ToJson(page.asked)},
        {"replacements", ToJson(page.replacements)},
        {"given", page.given ? ToJson(*page.given) : nlohmann::json(nullptr)},
        {"givenReplacement",
         page.givenReplacement ? ToJson(*page.givenReplacement) : nlohmann::json(nullptr)},
        {"decision", NameOf(Decide(page))},
        {"reason", ExplainDecision(page)},
        {"markupFault", NameOrNull(page.markupFault)},
        {"oldTicket", NameOrNull(page.oldTicket)},
        {"newTicket", NameOrNull(page.newTicket)}};
    return ToLine(object);
}

std::string FormatSecondRunLine(const PageReport& page)
{
    return "page " + std::to_string(page.number) + " " + NameSecondRun(page) + ": " + ExplainSecondRun(page) +
           "\n";
}

std::string FormatSecondRunJson(const PageReport& page)
{
    const nlohmann::json again = {
        {"page", page.number},
        {"part", page.part},
        {"isStable", IsJudged(page) ? nlohmann::json(IsStable(page)) : nlohmann::json(nullptr)},
        {"decision", NameOf(Decide(page))},
        {"reason", ExplainSecondRun(page)}};
    return ToLine({{"again", again}});
}
} // namespace host::report
