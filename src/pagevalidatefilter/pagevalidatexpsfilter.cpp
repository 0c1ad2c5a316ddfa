#include "pagevalidatefilter/pagevalidatexpsfilter.h"

#include <mutex>
#include <stdexcept>

#include "base/logging/errors.h"
#include "base/xps/fixedpagevalidator.h"

namespace pagevalidatefilter
{
using base::exception::Throw;
using base::exception::ThrowIfFailed;
using base::utility::ComPtr;
namespace printschema = base::xps::printschema;

PageValidateXpsFilter::PageValidateXpsFilter() : m_imageableAreas(GetPrintTicketProvider()) {}

void PageValidateXpsFilter::RunOperation()
{
    ComPtr<IXpsDocumentConsumer> writer;
    GetWriter(&writer);
    if (!writer)
    {
        Throw<std::logic_error>("m_pWriter could not get.");
    }
    {
        const std::lock_guard lock(m_writerLock);
        m_pWriter = writer;
    }
    XpsDocumentProviderFilterBase::RunOperation();
}

void PageValidateXpsFilter::EndOperation()
{
    XpsDocumentProviderFilterBase::EndOperation();
    CloseWriter();
}

void PageValidateXpsFilter::CancelOperation()
{
    XpsDocumentProviderFilterBase::CancelOperation();
    CloseWriter();
}

void PageValidateXpsFilter::OnUnknownPart(const ComPtr<IUnknown>& part)
{
    if (!part)
    {
        Throw<std::invalid_argument>("pUnknown is null.");
    }
    ThrowIfFailed(m_pWriter->SendXpsUnknown(part.Get()));
}

void PageValidateXpsFilter::OnFixedPage(const ComPtr<IFixedPage>& page)
{
    if (!page)
    {
        Throw<std::invalid_argument>("pFixedPage is null.");
    }
    ReadTicket(kPTPageScope);
    base::xps::FixedPageValidator validator(GetPrintTicketProvider(),
                                            m_pWriter.Get(),
                                            page.Get(),
                                            m_inputBinData,
                                            m_mediaSizeData,
                                            m_orientationData,
                                            m_scalingData,
                                            m_printableMediaSizeData,
                                            m_imageableAreas);
    validator.Process();
    ThrowIfFailed(m_pWriter->SendFixedPage(page.Get()));
}

void PageValidateXpsFilter::OnFixedDocument(const ComPtr<IFixedDocument>& document)
{
    if (!document)
    {
        Throw<std::invalid_argument>("pFixedDoc is null.");
    }
    ReadTicket(kPTDocumentScope);
    ThrowIfFailed(m_pWriter->SendFixedDocument(document.Get()));
}

void PageValidateXpsFilter::OnFixedDocumentSequence(const ComPtr<IFixedDocumentSequence>& sequence)
{
    if (!sequence)
    {
        Throw<std::invalid_argument>("pFixedDocSequence is null.");
    }
    ReadTicket(kPTJobScope);
    ThrowIfFailed(m_pWriter->SendFixedDocumentSequence(sequence.Get()));
}

void PageValidateXpsFilter::OnXpsDocument(const ComPtr<IXpsDocument>& document)
{
    if (!document)
    {
        Throw<std::invalid_argument>("pXpsDocument is null.");
    }
    ThrowIfFailed(m_pWriter->SendXpsDocument(document.Get()));
}

void PageValidateXpsFilter::ReadTicket(EPrintTicketScope scope)
{
    ComPtr<IXMLDOMDocument2> ticket;
    ThrowIfFailed(GetPrintTicketProvider().GetLevelTicket(scope, ticket.Receive()));
    const auto handler = printschema::PrintSchemaDocumentHandler::ForPrintTicket(ticket);
    printschema::PrintTicketFunctionOption* accessors[] = {
        &m_scalingData, &m_inputBinData, &m_mediaSizeData, &m_orientationData, &m_printableMediaSizeData};
    for (auto* accessor : accessors)
    {
        accessor->Read(handler);
    }
}

void PageValidateXpsFilter::CloseWriter() const
{
    ComPtr<IXpsDocumentConsumer> writer;
    {
        const std::lock_guard lock(m_writerLock);
        writer = m_pWriter;
    }
    // Not reset: a cancelled operation closes the sender again when it ends (docs/surface.md).
    if (writer)
    {
        ThrowIfFailed(writer->CloseSender());
    }
}
} // namespace pagevalidatefilter
