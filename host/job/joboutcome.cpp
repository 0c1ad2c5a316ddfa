#include "host/job/joboutcome.h"

#include "host/pipeline/resulttext.h"
#include "host/tickets/ticketdocument.h"
#include "host/xml/reader.h"
#include "host/xml/text.h"
#include "host/xps/xpsdocument.h"

namespace host::job
{
namespace
{
std::string Describe(HRESULT result)
{
    return pipeline::FormatResult(result) + ": " + xml::ToOneLine(pipeline::DescribeResult(result));
}
} // namespace

void FindDocumentFault(const opc::Package& package, JobOutcome& outcome)
{
    const auto part = opc::PartName::FromItem(outcome.part);
    if (!part || !package.Has(*part))
    {
        return;
    }
    const auto requireMarkup = [&](const opc::PartName& name, const std::string& bytes) {
        if (const std::string fault = xml::FindMarkupFault(bytes); !fault.empty())
        {
            throw opc::PackageError(package.Path(),
                                    name.Text(),
                                    fault + " (the filter answered " + Describe(outcome.result) + ")");
        }
    };
    try
    {
        requireMarkup(*part, package.Read(*part));
        if (const auto ticket = xps::FindPrintTicket(package, *part))
        {
            const std::string bytes = package.Read(*ticket, xps::kPrintTicketLimit);
            requireMarkup(*ticket, bytes);
            try
            {
                tickets::ReadDocument(bytes, tickets::Kind::PrintTicket);
            }
            catch (const xml::MarkupError& fault)
            {
                outcome.ticketFault = ticket->Text() + ": " + fault.what();
            }
        }
    }
    catch (const opc::PackageError& fault)
    {
        outcome.documentFault = fault;
    }
}

std::string DescribeFailure(const JobOutcome& outcome)
{
    const std::string at = outcome.part.empty() ? "" : outcome.part + ": ";
    if (!outcome.markupFault.empty())
    {
        return at + "the filter failed with " + pipeline::FormatResult(outcome.result) + ": the new markup " +
               xml::ToOneLine(outcome.markupFault) + "; --accept-malformed takes it all the same";
    }
    const std::string what = outcome.unfinishedWork.empty() ? "failed with" : outcome.unfinishedWork + ":";
    return at + "the filter " + what + " " + Describe(outcome.result) +
           (outcome.ticketFault.empty() ? "" : "; " + xml::ToOneLine(outcome.ticketFault));
}

std::string DescribeLeaks(const JobOutcome& outcome)
{
    if (outcome.keptObjects == 0 && !outcome.isModuleInUse)
    {
        return {};
    }
    return "the filter keeps " + xml::CountOf(outcome.keptObjects, "object") + " of the pipeline" +
           (outcome.isModuleInUse ? ", and its module is still in use" : "");
}
} // namespace host::job
