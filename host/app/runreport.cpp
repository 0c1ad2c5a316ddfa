#include "host/app/runreport.h"

#include <exception>
#include <utility>

#include "host/opc/files.h"
#include "host/pipeline/resulttext.h"
#include "host/report/html/htmltext.h"
#include "host/tickets/ticketlisting.h"
#include "host/xml/text.h"

namespace host::app
{
using report::html::CodeOf;
using report::html::EscapeHtml;

namespace
{
std::string CodeOfPath(const std::filesystem::path& path)
{
    return CodeOf(opc::ToUtf8Path(path));
}

std::string DescribePrinter(const job::Job& job)
{
    if (job.printer)
    {
        return CodeOf(*job.printer) + " of the spooler, with the platform's provider";
    }
    return job.device ? CodeOfPath(*job.device) : "the built-in one";
}

std::string DescribeOptions(const job::Job& job)
{
    std::string html;
    const auto add = [&](const char* option, const std::optional<std::string>& value) {
        if (value)
        {
            html += (html.empty() ? "" : " ") + CodeOf(option + (" " + *value));
        }
    };
    add("--user-ticket", job.userTicket ? std::optional(opc::ToUtf8Path(*job.userTicket)) : std::nullopt);
    add("--orientation", job.overrides.orientation);
    add("--media", job.overrides.media);
    add("--limits", job.overrides.limits);
    add("--paper", job.paper);
    add("--tessel-type", job.tesselType ? std::optional(std::to_string(*job.tesselType)) : std::nullopt);
    add("--ns-prefix", job.privatePrefix);
    add("--module", job.module ? std::optional(opc::ToUtf8Path(*job.module)) : std::nullopt);
    for (const auto& [isSet, option] : {std::pair(job.overridesDocument, "--override"),
                                        std::pair(job.acceptsMalformed, "--accept-malformed")})
    {
        html += isSet ? (html.empty() ? "" : " ") + CodeOf(option) : "";
    }
    return html.empty() ? "none" : html;
}

std::string DescribeCall(HRESULT result)
{
    const std::string meaning = pipeline::DescribeResult(result);
    return "<code>" + pipeline::FormatResult(result) + "</code>" +
           (meaning.empty() ? "" : " (" + EscapeHtml(meaning) + ")");
}
} // namespace

RunReport::RunReport(const RunCommand& command) : m_command(command), m_report(command.report.value()) {}

void RunReport::ShowUserTicket(const std::string& ticket)
{
    const tickets::TicketOverrides& changes = m_command.job.overrides;
    const bool isChanged = changes.orientation || changes.media || changes.limits;
    m_userTicket = std::string("<details><summary>") +
                   (m_command.job.userTicket ? "of the file" : "the usual one") +
                   (isChanged ? ", changed by options" : "") + "</summary><pre tabindex=\"0\">" +
                   report::html::EscapeHtmlLines(tickets::FormatListing(tickets::ListTicket(ticket))) +
                   "</pre></details>";
}

void RunReport::TakePage(const report::PageReport& page)
{
    const std::lock_guard lock(m_lock);
    m_page = page;
}

void RunReport::TakeCall(const pipeline::TracedCall& call)
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
            m_report.AddPage(*std::exchange(m_page, std::nullopt), m_calls);
        }
        m_calls.Clear();
    }
}

void RunReport::ShowSecondRun(const std::string& summary)
{
    m_secondRun = EscapeHtml(summary);
}

void RunReport::Finish(const job::JobOutcome& outcome)
{
    Write("done, " + DescribeCall(outcome.result),
          m_command.job.output ? CodeOfPath(*m_command.job.output) : "nothing written");
}

void RunReport::Fail(const std::string& reason, const std::string& part) noexcept
{
    if (m_report.HasFailed())
    {
        return;
    }
    try
    {
        const std::string why = xml::ToOneLine(reason);
        m_report.AddFailure({part.empty() ? m_part : part, why}, m_calls);
        std::string outcome = "<b>failed</b>, <a href=\"#failed\">" + EscapeHtml(why) + "</a>";
        if (FAILED(m_result) && why.find(pipeline::FormatResult(m_result)) == std::string::npos)
        {
            outcome += "; the filter answered " + DescribeCall(m_result);
        }
        Write(outcome, m_isWritten ? CodeOfPath(*m_command.job.output) : "not written");
    }
    catch (const std::exception&)
    {
        // The run's own failure is what counts.
    }
}

void RunReport::Write(const std::string& outcome, const std::string& output)
{
    const job::Job& job = m_command.job;
    const report::DecisionCounts& decisions = m_report.Decisions();
    std::vector<report::html::SummaryRow> rows = {
        {"Document", CodeOfPath(m_command.job.document)},
        {"Outcome", outcome},
        {"Output", output},
        {"Pages",
         std::to_string(decisions.All()) +
             (decisions.All() < m_allPages ? " of " + std::to_string(m_allPages) : " in all") + ": " +
             decisions.Format()},
    };
    if (!m_secondRun.empty())
    {
        rows.push_back({"Run again", m_secondRun});
    }
    rows.insert(rows.end(),
                {{"Time", m_watch.FormatElapsed()},
                 {"Device", DescribePrinter(job)},
                 {"User's ticket", m_userTicket},
                 {"Options", DescribeOptions(job)}});
    m_report.Finish("Page report: " + opc::ToUtf8Path(m_command.job.document.filename()), rows);
}
} // namespace host::app
