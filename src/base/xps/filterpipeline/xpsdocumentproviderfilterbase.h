#pragma once

#include <memory>

#include "base/xps/filterpipeline/xpsfilterbase.h"
#include "base/xps/printschema/tickets/printticketprovider.h"

namespace base::xps::filterpipeline
{
/// A filter that reads the parts of an XPS document to the end and calls a handler for each kind of part.
/// Before the handler runs, the print ticket provider has applied the part's ticket.
class XpsDocumentProviderFilterBase : public XpsFilterBase
{
protected:
    XpsDocumentProviderFilterBase();

    void RunOperation() override;
    void EndOperation() override;
    void CancelOperation() override;

    // A handler may keep the part or send it.
    virtual void OnUnknownPart(const utility::ComPtr<IUnknown>& part) = 0;
    virtual void OnFixedPage(const utility::ComPtr<IFixedPage>& page) = 0;
    virtual void OnFixedDocument(const utility::ComPtr<IFixedDocument>& document) = 0;
    virtual void OnFixedDocumentSequence(const utility::ComPtr<IFixedDocumentSequence>& sequence) = 0;
    virtual void OnXpsDocument(const utility::ComPtr<IXpsDocument>& document) = 0;

    printschema::PrintTicketProvider& GetPrintTicketProvider() const noexcept
    {
        return *m_pPrintTicketProvider;
    }

private:
    void OpenPrintTicketProvider();
    void HandlePart(const utility::ComPtr<IUnknown>& part, IXMLDOMDocument2* defaultTicket);

    std::unique_ptr<printschema::PrintTicketProvider> m_pPrintTicketProvider;
    utility::ComPtr<IXpsDocumentProvider> m_pReader;
};
} // namespace base::xps::filterpipeline
