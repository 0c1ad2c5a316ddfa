#include "host/app/runreport.h"

#include <utility>

#include "host/opc/files.h"
#include "host/pipeline/resulttext.h"
#include "host/report/html/htmltext.h"
#include "host/tickets/ticketlisting.h"

namespace host::app
{
using report::html::CodeOf;

namespace
{
std::string DescribePrinter(const job::Job& job)
{
    if (job.printer)
    {
        return CodeOf(*job.printer) + " of the spooler, with the platform's provider";
    }
    return job.device ? CodeOfPath(*job.device) : "the built-in one";
}

std::string DescribeUserTicket(const job::Job& job, const std::string& ticket)
{
    if (ticket.empty())
    {
        return "could not be read";
    }
    const tickets::TicketOverrides& changes = job.overrides;
    const bool isChanged = changes.orientation || changes.media || changes.limits;
    return std::string("<details><summary>") + (job.userTicket ? "of the file" : "the usual one") +
           (isChanged ? ", changed by options" : "") + "</summary><pre tabindex=\"0\">" +
           report::html::EscapeHtml(tickets::FormatListing(tickets::ListTicket(ticket)), true) +
           "</pre></details>";
}

std::string DescribeOptions(const job::Job& job)
{
    std::string html;
    const auto addFlag = [&](const std::string& option, bool isSet) {
        html += isSet ? (html.empty() ? "" : " ") + CodeOf(option) : "";
    };
    const auto add = [&](const std::string& option, const std::optional<std::string>& value) {
        addFlag(option + " " + value.value_or(""), value.has_value());
    };
    const auto addFile = [&](const std::string& option, const std::optional<std::filesystem::path>& file) {
        addFlag(option + " " + opc::ToUtf8Path(file.value_or("")), file.has_value());
    };
    addFile("--user-ticket", job.userTicket);
    add("--orientation", job.overrides.orientation);
    add("--media", job.overrides.media);
    add("--limits", job.overrides.limits);
    add("--paper", job.paper);
    addFlag("--tessel-type " + std::to_string(job.tesselType.value_or(0)), job.tesselType.has_value());
    add("--ns-prefix", job.privatePrefix);
    addFile("--module", job.module);
    addFlag("--override", job.overridesDocument);
    addFlag("--accept-malformed", job.acceptsMalformed);
    return html.empty() ? "none" : html;
}
} // namespace

std::vector<report::html::SummaryRow> DescribeSetUp(const job::Job& job, const std::string& userTicket)
{
    return {{"Device", DescribePrinter(job)},
            {"User's ticket", DescribeUserTicket(job, userTicket)},
            {"Options", DescribeOptions(job)}};
}

std::string CodeOfPath(const std::filesystem::path& path)
{
    return CodeOf(opc::ToUtf8Path(path));
}

std::string CodeOfResult(HRESULT result)
{
    const std::string meaning = pipeline::DescribeResult(result);
    return CodeOf(pipeline::FormatResult(result)) +
           (meaning.empty() ? "" : " (" + report::html::EscapeHtml(meaning) + ")");
}
} // namespace host::app
