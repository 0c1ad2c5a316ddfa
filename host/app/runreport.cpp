#include "host/app/runreport.h"

#include <exception>
#include <utility>

#include "host/app/console.h"
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

std::string DescribePrinter(const job::JobSetting& setting)
{
    if (setting.printer)
    {
        return CodeOf(*setting.printer) + " of the spooler, with the platform's provider";
    }
    return setting.device ? CodeOfPath(*setting.device) : "the built-in one";
}

std::string DescribeOptions(const job::JobSetting& setting)
{
    std::string html;
    const auto add = [&](const char* option, const std::optional<std::string>& value) {
        if (value)
        {
            html += (html.empty() ? "" : " ") + CodeOf(option + (" " + *value));
        }
    };
    add("--user-ticket",
        setting.userTicket ? std::optional(opc::ToUtf8Path(*setting.userTicket)) : std::nullopt);
    add("--orientation", setting.overrides.orientation);
    add("--media", setting.overrides.media);
    add("--limits", setting.overrides.limits);
    add("--tessel-type",
        setting.tesselType ? std::optional(std::to_string(*setting.tesselType)) : std::nullopt);
    add("--ns-prefix", setting.privatePrefix);
    add("--module", setting.module ? std::optional(opc::ToUtf8Path(*setting.module)) : std::nullopt);
    if (setting.acceptsMalformed)
    {
        html += (html.empty() ? "" : " ") + CodeOf("--accept-malformed");
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

RunReport::RunReport(const RunCommand& command) : m_command(command)
{
    if (command.report)
    {
        m_report.emplace(*command.report);
    }
}

void RunReport::ShowUserTicket(const std::string& ticket)
{
    if (m_report)
    {
        const tickets::TicketOverrides& changes = m_command.setting.overrides;
        const bool isChanged = changes.orientation || changes.media || changes.limits;
        m_userTicket = std::string("<details><summary>") +
                       (m_command.setting.userTicket ? "of the file" : "the usual one") +
                       (isChanged ? ", changed by options" : "") + "</summary><pre tabindex=\"0\">" +
                       report::html::EscapeHtmlLines(tickets::ListTicket(ticket)) + "</pre></details>";
    }
}

void RunReport::Connect(job::FilterJob& job)
{
    if (!m_report)
    {
        return;
    }
    job.detail = report::Detail::All;
    job.onPage = [this, others = std::move(job.onPage)](const report::PageReport& page) {
        others(page);
        TakePage(page);
    };
    job.onCall = [this, others = std::move(job.onCall)](const pipeline::TracedCall& call) {
        if (others)
        {
            others(call);
        }
        TakeCall(call);
    };
}

void RunReport::ConnectAgain(job::FilterJob& job)
{
    m_isWritten = true;
    if (m_report)
    {
        job.onPage = [this, others = std::move(job.onPage)](const report::PageReport& page) {
            others(page);
            m_report->AddAgain(page);
        };
    }
}

void RunReport::ShowAgain(const std::string& text)
{
    m_again = EscapeHtml(text);
}

void RunReport::Finish(const job::FilterOutcome& outcome)
{
    if (m_report)
    {
        Write("done, " + DescribeCall(outcome.result),
              m_command.output ? CodeOfPath(*m_command.output) : "nothing written");
    }
}

void RunReport::Fail(const std::string& reason, const std::string& part) noexcept
{
    if (!m_report || m_report->HasFailed())
    {
        return;
    }
    try
    {
        const std::string why = xml::ToOneLine(reason);
        m_report->AddFailure({part.empty() ? m_part : part, why}, m_calls);
        std::string outcome = "<b>failed</b>, <a href=\"#failed\">" + EscapeHtml(why) + "</a>";
        if (FAILED(m_result) && why.find(pipeline::FormatResult(m_result)) == std::string::npos)
        {
            outcome += "; the filter answered " + DescribeCall(m_result);
        }
        Write(outcome, m_isWritten ? CodeOfPath(*m_command.output) : "not written");
    }
    catch (const std::exception&)
    {
        // Told by what failed in the first place.
    }
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
    if (call.method == "IXpsDocumentProvider::GetXpsPart" && !call.subject.empty())
    {
        m_part = call.subject;
    }
    if (FAILED(call.result))
    {
        const bool isAnswer = call.method == "IPrintPipelineFilter::StartOperation" ||
                              call.method == "IPrintPipelineFilter::InitializeFilter";
        m_result = isAnswer ? call.result : m_result;
        return;
    }
    if (call.method.starts_with("IXpsDocumentConsumer::Send"))
    {
        if (m_page)
        {
            m_report->AddPage(*std::exchange(m_page, std::nullopt), m_calls);
        }
        m_calls.Clear();
    }
}

void RunReport::Write(const std::string& outcome, const std::string& output)
{
    const job::JobSetting& setting = m_command.setting;
    const report::DecisionCounts& decisions = m_report->Decisions();
    std::vector<report::html::SummaryRow> rows = {
        {"Document", CodeOfPath(m_command.input)},
        {"Outcome", outcome},
        {"Output", output},
        {"Pages", std::to_string(decisions.All()) + " in all: " + decisions.Format()},
    };
    if (!m_again.empty())
    {
        rows.push_back({"Run again", m_again});
    }
    rows.insert(rows.end(),
                {{"Time", m_watch.FormatElapsed()},
                 {"Device", DescribePrinter(setting)},
                 {"User's ticket", m_userTicket},
                 {"Options", DescribeOptions(setting)}});
    m_report->Finish("Page report: " + opc::ToUtf8Path(m_command.input.filename()), rows);
}
} // namespace host::app
