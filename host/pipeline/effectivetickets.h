#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/utility/bstr.h"
#include "base/utility/comptr.h"
#include "base/xps/printschema/tickets/imageableareareader.h"
#include "base/xps/printschema/tickets/printticketprovider.h"
#include "host/opc/package.h"
#include "host/pipeline/calltrace.h"
#include "host/pipeline/pipelinejob.h"
#include "host/xps/xpsdocument.h"
#include "platform/msxml6.h"

namespace host::pipeline
{
/// The driver's default ticket for the page-description type that its property bag has, or lacks.
std::wstring DefaultTicketOf(std::optional<std::int32_t> tesselType);

/// The tickets above a document's own, and the printer and user that they are merged for.
struct TicketSetting
{
    std::string userTicket;
    std::wstring defaultTicket;
    std::wstring printerName;
    HANDLE userToken;
    /// What becomes of the document's own tickets first; empty for nothing.
    TicketEdit editTicket = {};
};

/// The effective tickets of a job's parts, obtained as the filter obtains them: with the module's code, over
/// the print ticket library of the process. For showing them, not for printing.
///
/// Used on one thread, on which COM is initialised: providers belong to the thread that opens them.
class EffectiveTickets
{
public:
    /// Throws HresultError where the provider cannot be opened or the user's ticket cannot be read.
    EffectiveTickets(const opc::Package& package, const TicketSetting& setting);

    /// Applies the part's ticket. To be called for each part in the order of the job.
    void Enter(const xps::JobPart& part);

    /// The effective ticket at the level of the part that was entered last.
    base::utility::ComPtr<IXMLDOMDocument2> GetEffective();

    /// Where the printer can print on the sheet of the effective ticket, as the page is read: with a
    /// landscape orientation the sheet's width is the page's height. To be called at a page. Throws
    /// HresultError where the printer does not tell.
    base::xps::printschema::ImageableArea ReadImageableArea();

    /// The same for a ticket by itself, given as bytes.
    base::xps::printschema::ImageableArea ReadImageableArea(const std::string& ticket) const;

    /// A ticket by itself, validated for the printer.
    std::string Validate(const std::string& ticket) const;

private:
    CallTrace m_silence;
    PipelineJobPtr m_pJob;
    base::utility::Bstr m_printerName;
    HANDLE m_userToken;
    base::utility::ComPtr<IXMLDOMDocument2> m_defaultTicket;
    base::xps::printschema::PrintTicketProvider m_provider;
    EPrintTicketScope m_level = kPTJobScope;
};
} // namespace host::pipeline
