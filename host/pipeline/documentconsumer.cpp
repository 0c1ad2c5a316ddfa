#include "host/pipeline/documentconsumer.h"

#include <optional>
#include <string>
#include <utility>

#include "base/utility/comptr.h"
#include "base/utility/utf8.h"
#include "host/pipeline/part.h"
#include "host/pipeline/treeparts.h"

namespace host::pipeline
{
using base::utility::ComPtr;
using base::utility::MakeCom;

namespace
{
/// The name that a new part is asked for by; empty where it names no part, or one that holds relationships.
std::optional<opc::PartName> ReadName(const std::string& wanted)
{
    auto name = opc::PartName::FromItem(wanted);
    return name && !name->RelationshipsSource() ? name : std::nullopt;
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

template <typename Part, typename Store>
HRESULT DocumentConsumer::Send(const char* method, IUnknown* object, Store&& store)
{
    const ComPtr<Part> part = Recognise<Part>(object);
    return m_pJob->trace.Answer(
        method,
        part ? part->Subject() : std::string_view(),
        [&]() -> HRESULT {
            if (!part)
            {
                return object == nullptr ? E_POINTER : E_INVALIDARG;
            }
            if (m_pJob->isSenderClosed || part->Place() != m_pJob->sent || !part->IsComplete())
            {
                return E_UNEXPECTED;
            }
            const HRESULT stored = store(*part);
            m_pJob->sent += SUCCEEDED(stored) ? 1 : 0;
            return stored;
        },
        CallRole::TakesPart);
}

template <typename Part>
HRESULT DocumentConsumer::SendTreePart(const char* method, IUnknown* object)
{
    return Send<Part>(method, object, [this](Part& part) {
        m_onSent({part.Ticket().Owner(), nullptr, part.Ticket().New(), false});
        part.Ticket().Store();
        return S_OK;
    });
}

STDMETHODIMP DocumentConsumer::SendXpsUnknown(IUnknown* part)
{
    return m_pJob->trace.Answer(
        "IXpsDocumentConsumer::SendXpsUnknown",
        "",
        [&] {
            if (part == nullptr)
            {
                return E_POINTER;
            }
            return m_pJob->isSenderClosed ? E_UNEXPECTED : S_OK;
        },
        CallRole::TakesPart);
}

STDMETHODIMP DocumentConsumer::SendXpsDocument(IXpsDocument* document)
{
    return Send<DocumentRootPart>(
        "IXpsDocumentConsumer::SendXpsDocument", document, [](const DocumentRootPart&) { return S_OK; });
}

STDMETHODIMP DocumentConsumer::SendFixedDocumentSequence(IFixedDocumentSequence* sequence)
{
    return SendTreePart<SequencePart>("IXpsDocumentConsumer::SendFixedDocumentSequence", sequence);
}

STDMETHODIMP DocumentConsumer::SendFixedDocument(IFixedDocument* document)
{
    return SendTreePart<DocumentPart>("IXpsDocumentConsumer::SendFixedDocument", document);
}

STDMETHODIMP DocumentConsumer::SendFixedPage(IFixedPage* page)
{
    return Send<PagePart>("IXpsDocumentConsumer::SendFixedPage", page, [this](PagePart& own) {
        PartWriteStream* const written = own.NewMarkup();
        std::optional<xps::PageMarkup> markup;
        if (written != nullptr)
        {
            markup = xps::ReadPage(written->Content().ReadStart(written->Content().Size()));
        }
        const bool isRefused = markup && !markup->fault.empty() && !m_pJob->acceptsMalformed;
        m_onSent({own.Ticket().Owner(), markup ? &*markup : nullptr, own.Ticket().New(), isRefused});
        if (isRefused)
        {
            m_pJob->refusal = {own.Name().Text(), markup->fault};
            return E_INVALIDARG;
        }
        own.Ticket().Store();
        if (written != nullptr)
        {
            m_pJob->writer->ReplacePart(own.Name(), written->DetachContent());
        }
        return S_OK;
    });
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
        const auto read = ReadName(wanted);
        if (!read)
        {
            return E_INVALIDARG;
        }
        const opc::PartName name = Reserve(*read);
        auto content = MakeWriteStream(m_pJob, name);
        *newPart = MakeCom<TicketPart>(m_pJob, name, content).Detach();
        *stream = content.Detach();
        return S_OK;
    });
}

opc::PartName DocumentConsumer::Reserve(opc::PartName name)
{
    const std::string text = name.Text();
    for (int number = 2; m_pJob->package.Has(name) || m_pJob->newParts.contains(name); ++number)
    {
        name = *opc::PartName::FromItem(Numbered(text, number));
    }
    m_pJob->newParts.insert(name);
    return name;
}
} // namespace host::pipeline
