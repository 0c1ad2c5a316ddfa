#include "base/xps/filterpipeline/xpsdocumentproviderfilterbase.h"

#include <stdexcept>

#include "base/logging/errors.h"
#include "base/utility/variant.h"
#include "base/xml/xmlutility.h"
#include "base/xps/printschema/tickets/defaulttickets.h"

namespace base::xps::filterpipeline
{
using exception::ThrowIfFailed;
using utility::ComPtr;
using utility::Variant;

XpsDocumentProviderFilterBase::XpsDocumentProviderFilterBase()
    : m_pPrintTicketProvider(std::make_unique<printschema::PrintTicketProvider>())
{
}

void XpsDocumentProviderFilterBase::RunOperation()
{
    OpenPrintTicketProvider();
    m_pReader = {};
    GetReader(&m_pReader);
    if (!m_pReader)
    {
        throw std::logic_error("m_pReader could not get.");
    }
    const std::wstring selected = printschema::SelectDefaultPrintTicket(*GetPropertyBag());
    const ComPtr<IXMLDOMDocument2> defaultTicket = xml::XmlUtility::LoadDocumentFromString(selected);
    for (;;)
    {
        ComPtr<IUnknown> part;
        ThrowIfFailed(m_pReader->GetXpsPart(part.Receive()));
        if (!part)
        {
            return;
        }
        HandlePart(part, defaultTicket.Get());
    }
}

void XpsDocumentProviderFilterBase::EndOperation()
{
    // A failure to close does not change the result of the operation.
    static_cast<void>(m_pPrintTicketProvider->Close());
    // When the filter is released, COM may no longer be initialised on the thread.
    m_pPrintTicketProvider->ReleaseTickets();
}

void XpsDocumentProviderFilterBase::CancelOperation() {}

void XpsDocumentProviderFilterBase::OpenPrintTicketProvider()
{
    IPrintPipelinePropertyBag& bag = *GetPropertyBag();
    Variant userTicket;
    Variant printerName;
    Variant userToken;
    ThrowIfFailed(bag.GetProperty(L"PerUserPrintTicket", userTicket.Receive()));
    ThrowIfFailed(bag.GetProperty(L"PrinterName", printerName.Receive()));
    ThrowIfFailed(bag.GetProperty(L"UserSecurityToken", userToken.Receive()));
    ComPtr<IPrintReadStreamFactory> factory;
    ThrowIfFailed(userTicket.QueryHeld(factory));
    ComPtr<IPrintReadStream> ticket;
    ThrowIfFailed(factory->GetStream(ticket.Receive()));
    const VARIANT& name = printerName.Get();
    ThrowIfFailed(m_pPrintTicketProvider->Open(
        ticket.Get(), name.vt == VT_BSTR ? name.bstrVal : nullptr, userToken.GetHandle()));
}

void XpsDocumentProviderFilterBase::HandlePart(const ComPtr<IUnknown>& part, IXMLDOMDocument2* defaultTicket)
{
    if (const auto document = part.TryQuery<IXpsDocument>())
    {
        OnXpsDocument(document);
    }
    else if (const auto sequence = part.TryQuery<IFixedDocumentSequence>())
    {
        ThrowIfFailed(m_pPrintTicketProvider->ApplyJobTicket(sequence.Get(), defaultTicket));
        OnFixedDocumentSequence(sequence);
    }
    else if (const auto fixedDocument = part.TryQuery<IFixedDocument>())
    {
        ThrowIfFailed(m_pPrintTicketProvider->ApplyDocumentTicket(fixedDocument.Get(), defaultTicket));
        OnFixedDocument(fixedDocument);
    }
    else if (const auto page = part.TryQuery<IFixedPage>())
    {
        ThrowIfFailed(m_pPrintTicketProvider->ApplyPageTicket(page.Get(), defaultTicket));
        OnFixedPage(page);
    }
    else
    {
        OnUnknownPart(part);
    }
}
} // namespace base::xps::filterpipeline
