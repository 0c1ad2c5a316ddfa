#include "host/pipeline/effectivetickets.h"

#include <memory>
#include <string_view>

#include "base/logging/errors.h"
#include "base/utility/bstr.h"
#include "base/utility/utf8.h"
#include "base/xml/xmlutility.h"
#include "base/xps/printschema/mediasizedata.h"
#include "base/xps/printschema/pageorientationdata.h"
#include "base/xps/printschema/tickets/defaulttickets.h"
#include "host/pipeline/treeparts.h"
#include "host/tickets/ticketfacts.h"

namespace host::pipeline
{
using base::exception::ThrowIfFailed;
using base::utility::ComPtr;
using base::utility::MakeCom;
namespace printschema = base::xps::printschema;

namespace
{
void OpenProvider(printschema::PrintTicketProvider& provider,
                  const std::string& ticket,
                  const base::utility::Bstr& printerName,
                  HANDLE userToken)
{
    const auto stream = MakeCom<PartReadStream>(ticket);
    ThrowIfFailed(provider.Open(stream.Get(), printerName.Get(), userToken));
}

printschema::ImageableArea ReadArea(printschema::PrintTicketProvider& provider)
{
    ComPtr<IXMLDOMDocument2> ticket;
    ThrowIfFailed(provider.GetLevelTicket(kPTPageScope, ticket.Receive()));
    const auto handler = printschema::PrintSchemaDocumentHandler::ForPrintTicket(ticket);
    printschema::MediaSizeData media;
    media.Read(handler);
    printschema::PageOrientationData orientation;
    orientation.Read(handler);
    const auto area = printschema::ImageableAreaReader(provider).Read(media.GetMediaSizeEntry(), orientation);
    if (!area)
    {
        ThrowIfFailed(printschema::kNotFound);
    }
    return *area;
}
} // namespace

std::wstring DefaultTicketOf(std::optional<std::int32_t> tesselType)
{
    constexpr std::int32_t usual = 7;
    return printschema::DefaultPrintTicketOf(tesselType.value_or(usual));
}

EffectiveTickets::EffectiveTickets(const opc::Package& package, const TicketSetting& setting)
    : m_pJob(std::make_shared<PipelineJob>(package, nullptr, m_silence)),
      m_printerName(std::wstring_view(setting.printerName)),
      m_userToken(setting.userToken),
      m_defaultTicket(base::xml::XmlUtility::LoadDocumentFromString(setting.defaultTicket))
{
    m_pJob->editTicket = setting.editTicket;
    OpenProvider(m_provider, setting.userTicket, m_printerName, m_userToken);
}

void EffectiveTickets::Enter(const xps::JobPart& part)
{
    switch (part.kind)
    {
    case xps::JobPartKind::FixedDocumentSequence:
        m_level = kPTJobScope;
        ThrowIfFailed(
            m_provider.ApplyJobTicket(MakeCom<SequencePart>(m_pJob, part).Get(), m_defaultTicket.Get()));
        break;
    case xps::JobPartKind::FixedDocument:
        m_level = kPTDocumentScope;
        ThrowIfFailed(
            m_provider.ApplyDocumentTicket(MakeCom<DocumentPart>(m_pJob, part).Get(), m_defaultTicket.Get()));
        break;
    case xps::JobPartKind::FixedPage:
        m_level = kPTPageScope;
        ThrowIfFailed(
            m_provider.ApplyPageTicket(MakeCom<PagePart>(m_pJob, part).Get(), m_defaultTicket.Get()));
        break;
    }
}

ComPtr<IXMLDOMDocument2> EffectiveTickets::GetEffective()
{
    ComPtr<IXMLDOMDocument2> ticket;
    ThrowIfFailed(m_provider.GetLevelTicket(m_level, ticket.Receive()));
    return ticket;
}

printschema::ImageableArea EffectiveTickets::ReadImageableArea()
{
    return ReadArea(m_provider);
}

std::string EffectiveTickets::Validate(const std::string& ticket) const
{
    printschema::PrintTicketProvider provider;
    OpenProvider(provider, ticket, m_printerName, m_userToken);
    ComPtr<IXMLDOMDocument2> validated;
    ThrowIfFailed(provider.GetLevelTicket(kPTPageScope, validated.Receive()));
    std::string bytes = tickets::SaveBytes(validated.Get());
    ThrowIfFailed(provider.Close());
    return bytes;
}

printschema::ImageableArea EffectiveTickets::ReadImageableArea(const std::string& ticket) const
{
    printschema::PrintTicketProvider provider;
    OpenProvider(provider, ticket, m_printerName, m_userToken);
    const auto area = ReadArea(provider);
    ThrowIfFailed(provider.Close());
    return area;
}
} // namespace host::pipeline
