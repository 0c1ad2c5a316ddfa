#include "host/pipeline/pagepart.h"

#include <string>
#include <utility>

#include "base/utility/utf8.h"
#include "host/pipeline/partanswers.h"

namespace host::pipeline
{
using base::utility::ComPtr;

namespace
{
std::string Utf8OrEmpty(const wchar_t* text)
{
    return text == nullptr ? std::string() : base::utility::ToUtf8(text);
}
} // namespace

PagePart::PagePart(PipelineJobPtr job, const xps::JobPart& part)
    : m_pJob(std::move(job)), m_name(part.name), m_place(m_pJob->handedOut++), m_ticket(m_pJob, part)
{
}

bool PagePart::IsComplete() const noexcept
{
    return m_ticket.IsComplete() && (!m_pNewMarkup || m_pNewMarkup->CloseCount() == 1);
}

STDMETHODIMP PagePart::GetUri(BSTR* uri)
{
    return m_pJob->trace.Answer(
        "IFixedPage::GetUri", m_name.Text(), [&] { return CopyPartUri(m_name, uri); });
}

STDMETHODIMP PagePart::GetStream(IPrintReadStream** stream)
{
    return m_pJob->trace.Answer(
        "IFixedPage::GetStream", m_name.Text(), [&] { return OpenPartContent(*m_pJob, m_name, stream); });
}

STDMETHODIMP PagePart::GetPartCompression(EXpsCompressionOptions* compression)
{
    return m_pJob->trace.Answer("IFixedPage::GetPartCompression", m_name.Text(), [&] {
        return CopyCompression(m_compression, compression);
    });
}

STDMETHODIMP PagePart::SetPartCompression(EXpsCompressionOptions compression)
{
    return m_pJob->trace.Answer("IFixedPage::SetPartCompression", m_name.Text(), [&] {
        m_compression = compression;
        return S_OK;
    });
}

STDMETHODIMP PagePart::GetPrintTicket(IPartPrintTicket** ticket)
{
    return m_pJob->trace.Answer(
        "IFixedPage::GetPrintTicket", m_name.Text(), [&] { return m_ticket.Get(ticket); });
}

STDMETHODIMP PagePart::GetPagePart(const wchar_t* uri, IUnknown** part)
{
    const std::string reference = Utf8OrEmpty(uri);
    return m_pJob->trace.Answer("IFixedPage::GetPagePart", reference, [&]() -> HRESULT {
        if (uri == nullptr || part == nullptr)
        {
            return E_POINTER;
        }
        *part = nullptr;
        const auto name = m_name.TryResolve(reference);
        if (!name || m_ticket.Owner().printTicket != name)
        {
            return kElementNotFound;
        }
        ComPtr<IPartPrintTicket> ticket;
        const HRESULT found = m_ticket.Get(ticket.Receive());
        *part = ticket.Detach();
        return found;
    });
}

STDMETHODIMP PagePart::GetWriteStream(IPrintWriteStream** stream)
{
    return m_pJob->trace.Answer("IFixedPage::GetWriteStream", m_name.Text(), [&] {
        if (stream == nullptr)
        {
            return E_POINTER;
        }
        *stream = nullptr;
        if (m_pNewMarkup)
        {
            return E_UNEXPECTED;
        }
        m_pNewMarkup = MakeWriteStream(m_pJob, m_name);
        *stream = ComPtr<PartWriteStream>(m_pNewMarkup).Detach();
        return S_OK;
    });
}

STDMETHODIMP PagePart::SetPrintTicket(IPartPrintTicket* ticket)
{
    return m_pJob->trace.Answer(
        "IFixedPage::SetPrintTicket", m_name.Text(), [&] { return m_ticket.Set(ticket); });
}

STDMETHODIMP PagePart::SetPagePart(IUnknown*)
{
    return m_pJob->trace.Answer("IFixedPage::SetPagePart", m_name.Text(), [] { return E_NOTIMPL; });
}

STDMETHODIMP PagePart::DeleteResource(const wchar_t* uri)
{
    const std::string reference = Utf8OrEmpty(uri);
    return m_pJob->trace.Answer("IFixedPage::DeleteResource", reference, [&]() -> HRESULT {
        if (uri == nullptr)
        {
            return E_POINTER;
        }
        const auto name = m_name.TryResolve(reference);
        if (!name)
        {
            return E_INVALIDARG;
        }
        if (m_ticket.Owner().printTicket == name)
        {
            return m_ticket.Detach(*name) ? S_OK : kElementNotFound;
        }
        return m_pJob->writer->EditRelationships(m_name).RemoveTargets({*name}) ? S_OK : kElementNotFound;
    });
}

STDMETHODIMP PagePart::GetXpsPartIterator(IXpsPartIterator** iterator)
{
    return m_pJob->trace.Answer("IFixedPage::GetXpsPartIterator", m_name.Text(), [&] {
        if (iterator == nullptr)
        {
            return E_POINTER;
        }
        *iterator = nullptr;
        return E_NOTIMPL;
    });
}
} // namespace host::pipeline
