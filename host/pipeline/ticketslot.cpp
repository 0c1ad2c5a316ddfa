#include "host/pipeline/ticketslot.h"

#include <utility>

#include "host/pipeline/partanswers.h"

namespace host::pipeline
{
using base::utility::ComPtr;
using base::utility::MakeCom;

TicketSlot::TicketSlot(const PipelineJobPtr& job, const xps::JobPart& owner) : m_pJob(job), m_owner(owner)
{
    if (owner.printTicket)
    {
        ++job->ticketUses[*owner.printTicket].named;
    }
}

HRESULT TicketSlot::Get(IPartPrintTicket** ticket) const
{
    if (ticket == nullptr)
    {
        return E_POINTER;
    }
    *ticket = nullptr;
    if (m_pNew)
    {
        *ticket = ComPtr<TicketPart>(m_pNew).Detach();
        return S_OK;
    }
    if (m_isDetached || !m_owner.printTicket)
    {
        return kElementNotFound;
    }
    *ticket = MakeCom<TicketPart>(m_pJob, *m_owner.printTicket).Detach();
    return S_OK;
}

HRESULT TicketSlot::Set(IPartPrintTicket* ticket)
{
    auto own = TicketPart::Recognise(ticket);
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
