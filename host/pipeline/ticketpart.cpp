#include "host/pipeline/ticketpart.h"

#include "host/xps/xpsvocabulary.h"

namespace host::pipeline
{
using base::utility::MakeCom;

STDMETHODIMP TicketPart::GetStream(IPrintReadStream** stream)
{
    return Answer("GetStream", [&] {
        return m_pNewContent ? E_ACCESSDENIED : HandOut(stream, [&] {
            return OpenPartContent(*m_pJob, m_name, xps::kPrintTicketLimit, m_pJob->editTicket);
        });
    });
}

STDMETHODIMP TicketPart::GetPartCompression(EXpsCompressionOptions* compression)
{
    return Answer("GetPartCompression", [&] { return CopyOut(m_compression, compression); });
}

STDMETHODIMP TicketPart::SetPartCompression(EXpsCompressionOptions compression)
{
    return Answer("SetPartCompression", [&] { return CopyOut(compression, &m_compression); });
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

TicketSlot::TicketSlot(const PipelineJobPtr& job, const xps::JobPart& owner) : m_pJob(job), m_owner(owner)
{
    if (owner.printTicket)
    {
        ++job->ticketUses[*owner.printTicket].named;
    }
}

HRESULT TicketSlot::Get(IPartPrintTicket** ticket) const
{
    const bool hasOwn = m_owner.printTicket && !m_isDetached;
    if (ticket != nullptr && !m_pNew && !hasOwn)
    {
        *ticket = nullptr;
        return kElementNotFound;
    }
    return HandOut(ticket,
                   [&] { return m_pNew ? m_pNew : MakeCom<TicketPart>(m_pJob, *m_owner.printTicket); });
}

HRESULT TicketSlot::Set(IPartPrintTicket* ticket)
{
    auto own = Recognise<TicketPart>(ticket);
    if (!own)
    {
        return E_INVALIDARG;
    }
    m_pNew = std::move(own);
    return S_OK;
}

bool TicketSlot::Detach(const opc::PartName& name)
{
    if (m_isDetached || m_owner.printTicket != name)
    {
        return false;
    }
    m_isDetached = true;
    ++m_pJob->ticketUses[name].detached;
    return true;
}

void TicketSlot::Store()
{
    if (m_pNew && m_owner.printTicket)
    {
        // A part has one ticket: a new one replaces the old one, detached or not.
        Detach(*m_owner.printTicket);
    }
    if (!m_isDetached && !m_pNew)
    {
        return;
    }
    opc::Relationships& relationships = m_pJob->writer->EditRelationships(m_owner.name);
    if (m_isDetached)
    {
        relationships.RemoveTargets({*m_owner.printTicket});
    }
    if (m_pNew)
    {
        relationships.Add(m_pJob->vocabulary.printTicket, m_pNew->Name());
        m_pNew->Store();
    }
}
} // namespace host::pipeline
