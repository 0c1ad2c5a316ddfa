#include "host/job/joboutcome.h"

#include <vector>

#include "host/opc/package.h"
#include "host/opc/packageerror.h"
#include "host/pipeline/resulttext.h"
#include "host/tickets/ticketreader.h"
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

void ThrowPackageFault(const std::filesystem::path& document, const JobOutcome& outcome)
{
    const opc::Package package(document);
    const auto part = opc::PartName::FromItem(outcome.part);
    if (!part || !package.Has(*part))
    {
        return;
    }
    std::vector<opc::PartName> suspects{*part};
    if (const auto ticket = xps::FindPrintTicket(package, *part))
    {
        suspects.push_back(*ticket);
    }
    for (const opc::PartName& suspect : suspects)
    {
        const std::string fault = xml::FindMarkupFault(package.Read(suspect));
        if (!fault.empty())
        {
            throw opc::PackageError(
                document, suspect.Text(), fault + " (the filter answered " + Describe(outcome.result) + ")");
        }
    }
}

std::string FindTicketFault(const opc::Package& package, const std::string& part)
{
    const auto name = opc::PartName::FromItem(part);
    const auto ticket = name && package.Has(*name) ? xps::FindPrintTicket(package, *name) : std::nullopt;
    if (!ticket || !package.Has(*ticket))
    {
        return {};
    }
    try
    {
        tickets::ReadDocument(package.Read(*ticket, xps::kPrintTicketLimit), tickets::Kind::PrintTicket);
    }
    catch (const xml::MarkupError& fault)
    {
        return ticket->Text() + ": " + fault.what();
    }
    return {};
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
