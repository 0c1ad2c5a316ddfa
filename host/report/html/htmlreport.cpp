#include "host/report/html/htmlreport.h"

#include <utility>

#include "embedded/reporttexts.h"
#include "host/opc/temporaryfile.h"
#include "host/report/html/htmltext.h"

namespace host::report::html
{
namespace
{
/// The policy protects even against a text that the escaping missed: nothing is loaded, and no other script
/// runs.
std::string FormatHead(const std::string& title)
{
    std::string html =
        "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">"
        "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src ";
    html.append(kStyleSource).append("; script-src ").append(kScriptSource);
    html += "; base-uri 'none'; form-action 'none'\">"
            "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"><title>" +
            EscapeHtml(title) + "</title><style>";
    return html.append(kStyle).append("</style></head>\n<body><main><h1>" + EscapeHtml(title) + "</h1>\n");
}

std::string FormatSummary(const std::vector<SummaryRow>& summary)
{
    std::string html = "<section class=\"card\"><h2>The job</h2><table class=\"job\"><tbody>";
    for (const SummaryRow& row : summary)
    {
        html += "<tr><th scope=\"row\">" + row.title + "</th><td>" + row.html + "</td></tr>\n";
    }
    return html + "</tbody></table></section>\n";
}

std::string FormatFoot()
{
    return std::string("</main><script>").append(kScript).append("</script></body></html>\n");
}
} // namespace

HtmlReport::HtmlReport(std::filesystem::path target) : m_target(std::move(target)), m_pieces(m_target) {}

void HtmlReport::TakePage(const PageReport& page)
{
    const std::lock_guard lock(m_lock);
    m_page = page;
}

void HtmlReport::TakeCall(const pipeline::TracedCall& call)
{
    const std::lock_guard lock(m_lock);
    m_calls.Add(call);
    if (call.role == pipeline::CallRole::HandsOutPart && !call.subject.empty())
    {
        m_part = call.subject;
    }
    if (FAILED(call.result))
    {
        m_result = call.role == pipeline::CallRole::RunsFilter ? call.result : m_result;
    }
    else if (call.role == pipeline::CallRole::TakesPart)
    {
        if (m_page)
        {
            const PageBlock block = FormatPageBlock(*m_page, m_calls);
            m_blocks.push_back({Keep(block.head), Keep(block.rest), {}, Decide(*m_page)});
            m_decisions.Add(m_blocks.back().decision);
            m_page.reset();
        }
        m_calls = {};
    }
}

void HtmlReport::AddSecondRun(const PageReport& page)
{
    m_hasSecondRun = true;
    m_blocks.at(page.number - 1).again = Keep(FormatSecondRunBlock(page));
}

void HtmlReport::AddFailure(const std::string& part, const std::string& reason)
{
    const std::string block = FormatFailureBlock(part.empty() ? m_part : part, reason, m_calls);
    m_blocks.push_back({Keep(block), {}, {}, {}});
    m_hasFailed = true;
}

void HtmlReport::Finish(const std::string& title, const std::vector<SummaryRow>& summary)
{
    opc::ReplacedFile file(m_target);
    file.Write(FormatHead(title));
    file.Write(FormatSummary(summary));
    file.Write("<h2>Pages</h2>\n" + FormatOverview() + FormatFilter());
    for (const Block& block : m_blocks)
    {
        file.Write(Load(block.head));
        file.Write(Load(block.again));
        file.Write(Load(block.rest));
    }
    file.Write(FormatFoot());
    file.Commit();
}

HtmlReport::Piece HtmlReport::Keep(std::string_view html)
{
    return {m_pieces.Append(html), html.size()};
}

std::string HtmlReport::Load(const Piece& piece)
{
    std::string html(piece.size, '\0');
    if (piece.size > 0)
    {
        m_pieces.Read(piece.offset, html.data(), html.size());
    }
    return html;
}

std::string HtmlReport::FormatOverview() const
{
    constexpr std::size_t fewPages = 10;
    const std::size_t pages = m_decisions.All();
    if (pages <= fewPages)
    {
        return {};
    }
    std::string html = "<nav class=\"overview\" aria-label=\"Overview\">";
    for (std::size_t first = 0; first < pages;)
    {
        std::size_t next = first + 1;
        while (next < pages && m_blocks[next].decision == m_blocks[first].decision)
        {
            ++next;
        }
        html += "<a href=\"#page-" + std::to_string(first + 1) + "\">" + std::to_string(first + 1) +
                (next > first + 1 ? "-" + std::to_string(next) : "") + " " +
                NameOf(m_blocks[first].decision) + "</a> ";
        first = next;
    }
    return html + (m_hasFailed ? "<a href=\"#failed\">failed</a>" : "") + "</nav>\n";
}

std::string HtmlReport::FormatFilter() const
{
    const std::size_t both = m_decisions.Of(Decision::TurnedAndRefitted);
    const std::pair<const char*, std::size_t> kinds[] = {
        {"turned", m_decisions.Of(Decision::Turned) + both},
        {"refitted", m_decisions.Of(Decision::Refitted) + both},
        {"passed", m_decisions.Of(Decision::Passed)},
        {"failed", m_hasFailed ? 1 : 0}};
    std::string html =
        "<div class=\"filter\" id=\"filter\" role=\"group\" aria-label=\"Pages to show\" hidden>";
    for (const auto& [kind, count] : kinds)
    {
        if (count == 0)
        {
            continue;
        }
        html += std::string("<label><input type=\"checkbox\" value=\"") + kind + "\" checked> " + kind +
                " (" + std::to_string(count) + ")</label>";
    }
    if (m_hasSecondRun)
    {
        html += "<label><input type=\"checkbox\" id=\"unstable\"> only those that would change again</label>";
    }
    return html + "<span class=\"quiet\" id=\"shown\" role=\"status\"></span></div>\n";
}
} // namespace host::report::html
