#include "host/pipeline/treeparts.h"

#include <string>

#include "base/utility/utf8.h"

namespace host::pipeline
{
using base::utility::ComPtr;

namespace
{
std::string Utf8OrEmpty(const wchar_t* text)
{
    return text == nullptr ? std::string() : base::utility::ToUtf8(text);
}

/// Answers a request for an object that there is not.
template <typename Interface>
HRESULT HandOutNone(Interface** none, HRESULT result)
{
    const HRESULT cleared = HandOut(none, [] { return ComPtr<Interface>(); });
    return FAILED(cleared) ? cleared : result;
}
} // namespace

STDMETHODIMP DocumentRootPart::GetThumbnail(IPartThumbnail** thumbnail)
{
    return m_pJob->trace.Answer(
        "IXpsDocument::GetThumbnail", "", [&] { return HandOutNone(thumbnail, kElementNotFound); });
}

STDMETHODIMP DocumentRootPart::SetThumbnail(IPartThumbnail*)
{
    return m_pJob->trace.Answer("IXpsDocument::SetThumbnail", "", [] { return E_NOTIMPL; });
}

bool PagePart::IsComplete() const noexcept
{
    return m_ticket.IsComplete() && (!m_pNewMarkup || m_pNewMarkup->CloseCount() == 1);
}

STDMETHODIMP PagePart::GetStream(IPrintReadStream** stream)
{
    return Answer("GetStream",
                  [&] { return HandOut(stream, [&] { return OpenPartContent(*m_pJob, m_name); }); });
}

STDMETHODIMP PagePart::GetPartCompression(EXpsCompressionOptions* compression)
{
    return Answer("GetPartCompression", [&] { return CopyOut(m_compression, compression); });
}

STDMETHODIMP PagePart::SetPartCompression(EXpsCompressionOptions compression)
{
    return Answer("SetPartCompression", [&] { return CopyOut(compression, &m_compression); });
}

STDMETHODIMP PagePart::GetPagePart(const wchar_t* uri, IUnknown** part)
{
    const std::string reference = Utf8OrEmpty(uri);
    return AnswerAbout(reference, "GetPagePart", [&]() -> HRESULT {
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
    return Answer("GetWriteStream", [&]() -> HRESULT {
        if (m_pNewMarkup)
        {
            return HandOutNone(stream, E_UNEXPECTED);
        }
        return HandOut(stream, [&] { return m_pNewMarkup = MakeWriteStream(m_pJob, m_name); });
    });
}

STDMETHODIMP PagePart::SetPagePart(IUnknown*)
{
    return Answer("SetPagePart", [] { return E_NOTIMPL; });
}

STDMETHODIMP PagePart::DeleteResource(const wchar_t* uri)
{
    const std::string reference = Utf8OrEmpty(uri);
    return AnswerAbout(reference, "DeleteResource", [&]() -> HRESULT {
        if (uri == nullptr)
        {
            return E_POINTER;
        }
        const auto name = m_name.TryResolve(reference);
        if (!name)
        {
            return E_INVALIDARG;
        }
        const bool isDeleted = m_ticket.Owner().printTicket == name
                                   ? m_ticket.Detach(*name)
                                   : m_pJob->writer->EditRelationships(m_name).RemoveTargets({*name});
        return isDeleted ? S_OK : kElementNotFound;
    });
}

STDMETHODIMP PagePart::GetXpsPartIterator(IXpsPartIterator** iterator)
{
    return Answer("GetXpsPartIterator", [&] { return HandOutNone(iterator, E_NOTIMPL); });
}
} // namespace host::pipeline
