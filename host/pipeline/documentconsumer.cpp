#include "host/pipeline/documentconsumer.h"

#include <string>
#include <utility>

#include "base/utility/comptr.h"
#include "base/utility/utf8.h"

namespace host::pipeline
{
using base::utility::ComPtr;
using base::utility::MakeCom;

namespace
{
/// Whether a filter did with a new content what is due: wrote it, if it asked for it, and closed it once.
bool IsComplete(const PartWriteStream* content)
{
    return content == nullptr || content->CloseCount() == 1;
}

bool IsComplete(const TicketSlot& ticket)
{
    return ticket.New() == nullptr || IsComplete(ticket.New()->NewContent());
}

/// "a/t.xml" and 2 make "a/t-2.xml".
std::string Numbered(const std::string& name, int number)
{
    const std::size_t folder = name.rfind('/');
    const std::size_t dot = name.rfind('.');
    const bool hasEnding = dot != std::string::npos && (folder == std::string::npos || dot > folder);
    const std::size_t end = hasEnding ? dot : name.size();
    return name.substr(0, end) + "-" + std::to_string(number) + name.substr(end);
}
} // namespace

template <typename Body>
HRESULT DocumentConsumer::Send(const char* method, Body&& body)
{
    return m_pJob->trace.Answer(method, m_pJob->currentPart, [&]() -> HRESULT {
        return m_pJob->isSenderClosed ? E_UNEXPECTED : body();
    });
}

template <typename Part, typename Interface>
HRESULT DocumentConsumer::SendTreePart(const char* method, Interface* part)
{
    return Send(method, [&]() -> HRESULT {
        const ComPtr<Part> own = Part::Recognise(part);
        if (!own)
        {
            return E_INVALIDARG;
        }
        if (!IsComplete(own->Ticket()))
        {
            return E_UNEXPECTED;
        }
        m_onSent({own->Ticket().Owner(), nullptr, own->Ticket().New()});
        own->Ticket().Store();
        return S_OK;
    });
}

STDMETHODIMP DocumentConsumer::SendXpsUnknown(IUnknown* part)
{
    return Send("IXpsDocumentConsumer::SendXpsUnknown", [&] { return part == nullptr ? E_POINTER : S_OK; });
}

STDMETHODIMP DocumentConsumer::SendXpsDocument(IXpsDocument* document)
{
    return Send("IXpsDocumentConsumer::SendXpsDocument", [&] {
        if (document == nullptr)
        {
            return E_POINTER;
        }
        return std::exchange(m_rootSent, true) ? E_UNEXPECTED : S_OK;
    });
}

STDMETHODIMP DocumentConsumer::SendFixedDocumentSequence(IFixedDocumentSequence* sequence)
{
    constexpr const char* method = "IXpsDocumentConsumer::SendFixedDocumentSequence";
    if (std::exchange(m_sequenceSent, true))
    {
        return Send(method, [] { return E_UNEXPECTED; });
    }
    return SendTreePart<SequencePart>(method, sequence);
}

STDMETHODIMP DocumentConsumer::SendFixedDocument(IFixedDocument* document)
{
    return SendTreePart<DocumentPart>("IXpsDocumentConsumer::SendFixedDocument", document);
}

STDMETHODIMP DocumentConsumer::SendFixedPage(IFixedPage* page)
{
    return Send("IXpsDocumentConsumer::SendFixedPage", [&] { return TakePage(page); });
}

STDMETHODIMP DocumentConsumer::CloseSender()
{
    return m_pJob->trace.Answer("IXpsDocumentConsumer::CloseSender", "", [&] {
        // A second time is no failure: a cancelled job closes here and again at its end.
        m_pJob->isSenderClosed = true;
        return S_OK;
    });
}

STDMETHODIMP DocumentConsumer::GetNewEmptyPart(const wchar_t* uri,
                                               REFIID iid,
                                               void** newPart,
                                               IPrintWriteStream** stream)
{
    const std::string wanted = uri == nullptr ? std::string() : base::utility::ToUtf8(uri);
    return m_pJob->trace.Answer("IXpsDocumentConsumer::GetNewEmptyPart", wanted, [&]() -> HRESULT {
        if (newPart == nullptr || stream == nullptr)
        {
            return E_POINTER;
        }
        *newPart = nullptr;
        *stream = nullptr;
        if (iid != __uuidof(IPartPrintTicket))
        {
            return E_NOINTERFACE;
        }
        if (!opc::PartName::FromItem(wanted))
        {
            return E_INVALIDARG;
        }
        auto content = MakeCom<PartWriteStream>(m_pJob->writer->NewContent());
        *newPart = MakeCom<TicketPart>(m_pJob, ReserveName(wanted), content).Detach();
        *stream = content.Detach();
        return S_OK;
    });
}

HRESULT DocumentConsumer::TakePage(IFixedPage* page)
{
    const ComPtr<PagePart> own = PagePart::Recognise(page);
    if (!own)
    {
        return E_INVALIDARG;
    }
    if (!IsComplete(own->NewMarkup()) || !IsComplete(own->Ticket()))
    {
        return E_UNEXPECTED;
    }
    m_onSent({own->Ticket().Owner(), own->NewMarkup(), own->Ticket().New()});
    own->Ticket().Store();
    if (own->NewMarkup() != nullptr)
    {
        m_pJob->writer->ReplacePart(own->Ticket().Owner().name, own->NewMarkup()->DetachContent());
    }
    return S_OK;
}

opc::PartName DocumentConsumer::ReserveName(const std::string& wanted)
{
    opc::PartName name = *opc::PartName::FromItem(wanted);
    const std::string text = name.Text();
    for (int number = 2; m_pJob->package.Has(name) || m_pJob->newParts.contains(name); ++number)
    {
        name = *opc::PartName::FromItem(Numbered(text, number));
    }
    m_pJob->newParts.insert(name);
    return name;
}
} // namespace host::pipeline
