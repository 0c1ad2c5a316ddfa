#include "host/pipeline/ticketpart.h"

#include "host/pipeline/partanswers.h"
#include "host/xps/xpsvocabulary.h"

namespace host::pipeline
{
STDMETHODIMP TicketPart::GetUri(BSTR* uri)
{
    return m_pJob->trace.Answer(
        "IPartPrintTicket::GetUri", m_name.Text(), [&] { return CopyPartUri(m_name, uri); });
}

STDMETHODIMP TicketPart::GetStream(IPrintReadStream** stream)
{
    return m_pJob->trace.Answer("IPartPrintTicket::GetStream", m_name.Text(), [&] {
        return m_pNewContent
                   ? E_ACCESSDENIED
                   : OpenPartContent(*m_pJob, m_name, stream, xps::kPrintTicketLimit, m_pJob->editTicket);
    });
}

STDMETHODIMP TicketPart::GetPartCompression(EXpsCompressionOptions* compression)
{
    return m_pJob->trace.Answer("IPartPrintTicket::GetPartCompression", m_name.Text(), [&] {
        return CopyCompression(m_compression, compression);
    });
}

STDMETHODIMP TicketPart::SetPartCompression(EXpsCompressionOptions compression)
{
    return m_pJob->trace.Answer("IPartPrintTicket::SetPartCompression", m_name.Text(), [&] {
        m_compression = compression;
        return S_OK;
    });
}

bool TicketPart::IsComplete() const noexcept
{
    return !m_pNewContent || (m_pNewContent->CloseCount() == 1 && !m_isStored);
}

void TicketPart::Store()
{
    if (!m_pNewContent)
    {
        ++m_pJob->ticketUses[m_name].named;
        return;
    }
    m_isStored = true;
    m_pJob->writer->AddPart(m_name, xps::kPrintTicketContentType, m_pNewContent->DetachContent());
}
} // namespace host::pipeline
