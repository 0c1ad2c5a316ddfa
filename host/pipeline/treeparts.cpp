#include "host/pipeline/treeparts.h"

#include <string>

#include "host/pipeline/partanswers.h"

namespace host::pipeline
{
STDMETHODIMP DocumentRootPart::GetThumbnail(IPartThumbnail** thumbnail)
{
    return m_pJob->trace.Answer("IXpsDocument::GetThumbnail", "", [&] {
        if (thumbnail == nullptr)
        {
            return E_POINTER;
        }
        *thumbnail = nullptr;
        return kElementNotFound;
    });
}

STDMETHODIMP DocumentRootPart::SetThumbnail(IPartThumbnail*)
{
    return m_pJob->trace.Answer("IXpsDocument::SetThumbnail", "", [] { return E_NOTIMPL; });
}

template <typename Interface>
TreePart<Interface>::TreePart(PipelineJobPtr job, const xps::JobPart& part)
    : m_pJob(std::move(job)), m_name(part.name), m_place(m_pJob->handedOut++), m_ticket(m_pJob, part)
{
}

template <typename Interface>
STDMETHODIMP TreePart<Interface>::GetUri(BSTR* uri)
{
    const std::string method = TreePartTraits<Interface>::kName + std::string("GetUri");
    return m_pJob->trace.Answer(method, m_name.Text(), [&] { return CopyPartUri(m_name, uri); });
}

template <typename Interface>
STDMETHODIMP TreePart<Interface>::GetPrintTicket(IPartPrintTicket** ticket)
{
    const std::string method = TreePartTraits<Interface>::kName + std::string("GetPrintTicket");
    return m_pJob->trace.Answer(method, m_name.Text(), [&] { return m_ticket.Get(ticket); });
}

template <typename Interface>
STDMETHODIMP TreePart<Interface>::SetPrintTicket(IPartPrintTicket* ticket)
{
    const std::string method = TreePartTraits<Interface>::kName + std::string("SetPrintTicket");
    return m_pJob->trace.Answer(method, m_name.Text(), [&] { return m_ticket.Set(ticket); });
}

template class TreePart<IFixedDocumentSequence>;
template class TreePart<IFixedDocument>;
} // namespace host::pipeline
