#include "host/pipeline/jobparts.h"

#include <string_view>

#include "base/utility/utf8.h"
#include "host/opc/packageerror.h"
#include "host/xml/markuptext.h"
#include "host/xps/xpsvocabulary.h"

namespace host::pipeline
{
using base::utility::Bstr;
using base::utility::ComPtr;
using base::utility::MakeCom;

namespace
{
// Nobody but this pipeline knows these: they tell its own parts, which filters pass around by interfaces of
// the platform.
constexpr IID kTicketPartId = {0x6B1F0C52, 0x0D0A, 0x4C55, {0x9E, 0x0B, 0x51, 0x1C, 0x2F, 0x6D, 0x83, 0xA4}};
constexpr IID kRootPartId = {0x9D3B70C6, 0x2A58, 0x4F7E, {0xA5, 0x44, 0x18, 0x6C, 0xF0, 0x2B, 0x7D, 0x93}};
constexpr IID kPagePartId = {0x0F6D7B8E, 0x64B1, 0x4E0C, {0x8A, 0x3D, 0x2E, 0x92, 0x57, 0xC1, 0x4F, 0x1B}};

template <typename Interface>
struct TreePartTraits;

template <>
struct TreePartTraits<IFixedDocumentSequence>
{
    static constexpr const char* kName = "IFixedDocumentSequence::";
    static constexpr IID kId = {0x3A8C1D44, 0x9E27, 0x4B59, {0xB6, 0x1F, 0x70, 0x83, 0xD5, 0x2A, 0x96, 0xE0}};
};

template <>
struct TreePartTraits<IFixedDocument>
{
    static constexpr const char* kName = "IFixedDocument::";
    static constexpr IID kId = {0xC5E0927B, 0x1F63, 0x4A18, {0x84, 0xD2, 0x3B, 0x6E, 0x90, 0x57, 0xA1, 0xCC}};
};

template <typename Part>
ComPtr<Part> Query(IUnknown* object, REFIID iid)
{
    ComPtr<Part> part;
    if (object != nullptr)
    {
        static_cast<void>(object->QueryInterface(iid, part.ReceiveUntyped()));
    }
    return part;
}

[[nodiscard]] HRESULT HandOutName(const opc::PartName& name, BSTR* uri)
{
    if (uri == nullptr)
    {
        return E_POINTER;
    }
    *uri = nullptr;
    *uri = Bstr(name.Text().c_str()).Detach();
    return S_OK;
}

/// The content of a part that goes to XML readers, which in Wine open the files that a document type names.
std::string ReadMarkup(const PipelineJob& job, const opc::PartName& name, std::uint64_t limit)
{
    std::string markup = job.package.Read(name, limit);
    try
    {
        xml::RefuseForeignMarkup(markup);
    }
    catch (const xml::MarkupError& fault)
    {
        throw opc::PackageError(name.Text(), fault.what());
    }
    return markup;
}

/// Answers GetStream of a part of the package.
[[nodiscard]] HRESULT HandOutContent(const PipelineJob& job,
                                     const opc::PartName& name,
                                     IPrintReadStream** stream,
                                     std::uint64_t limit = opc::Package::kPartLimit)
{
    if (stream == nullptr)
    {
        return E_POINTER;
    }
    *stream = nullptr;
    *stream = MakeCom<PartReadStream>(ReadMarkup(job, name, limit)).Detach();
    return S_OK;
}

[[nodiscard]] HRESULT HandOutCompression(EXpsCompressionOptions kept, EXpsCompressionOptions* compression)
{
    if (compression == nullptr)
    {
        return E_POINTER;
    }
    *compression = kept;
    return S_OK;
}

/// The relationship type of the vocabulary that a package is written in, told by its root.
std::string_view PrintTicketTypeOf(const opc::Package& package)
{
    const auto root = package.RelationshipsOf(opc::PartName::PackageRoot());
    for (const xps::Vocabulary& vocabulary : xps::kVocabularies)
    {
        if (root.FindTarget(vocabulary.fixedRepresentation))
        {
            return vocabulary.printTicket;
        }
    }
    return xps::kVocabularies[0].printTicket;
}

std::string Utf8OrEmpty(const wchar_t* text)
{
    return text == nullptr ? std::string() : base::utility::ToUtf8(text);
}
} // namespace

ComPtr<PartWriteStream> MakeWriteStream(const PipelineJobPtr& job, const opc::PartName& part)
{
    return MakeCom<PartWriteStream>(job->writer->NewContent(), [job, name = part.Text()] {
        job->trace.Tell("IPrintWriteStream::Close", name, S_OK);
    });
}

STDMETHODIMP TicketPart::QueryInterface(REFIID iid, void** result)
{
    if (result != nullptr && (iid == kTicketPartId || iid == __uuidof(IPartBase)))
    {
        *result = this;
        AddRef();
        return S_OK;
    }
    return ComObject::QueryInterface(iid, result);
}

STDMETHODIMP TicketPart::GetUri(BSTR* uri)
{
    return m_pJob->trace.Answer(
        "IPartPrintTicket::GetUri", m_name.Text(), [&] { return HandOutName(m_name, uri); });
}

STDMETHODIMP TicketPart::GetStream(IPrintReadStream** stream)
{
    return m_pJob->trace.Answer("IPartPrintTicket::GetStream", m_name.Text(), [&] {
        return m_pNewContent ? E_ACCESSDENIED
                             : HandOutContent(*m_pJob, m_name, stream, xps::kPrintTicketLimit);
    });
}

STDMETHODIMP TicketPart::GetPartCompression(EXpsCompressionOptions* compression)
{
    return m_pJob->trace.Answer("IPartPrintTicket::GetPartCompression", m_name.Text(), [&] {
        return HandOutCompression(m_compression, compression);
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

ComPtr<TicketPart> TicketPart::Recognise(IUnknown* object)
{
    return Query<TicketPart>(object, kTicketPartId);
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
        // A part has one ticket: a new one takes the old one's place, detached or not.
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
        relationships.Add(PrintTicketTypeOf(m_pJob->package), m_pNew->Name());
        m_pNew->Store();
    }
}

STDMETHODIMP DocumentRootPart::QueryInterface(REFIID iid, void** result)
{
    if (result != nullptr && iid == kRootPartId)
    {
        *result = this;
        AddRef();
        return S_OK;
    }
    return ComObject::QueryInterface(iid, result);
}

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

ComPtr<DocumentRootPart> DocumentRootPart::Recognise(IUnknown* object)
{
    return Query<DocumentRootPart>(object, kRootPartId);
}

template <typename Interface>
TreePart<Interface>::TreePart(PipelineJobPtr job, const xps::JobPart& part)
    : m_pJob(std::move(job)), m_name(part.name), m_place(m_pJob->handedOut++), m_ticket(m_pJob, part)
{
}

template <typename Interface>
STDMETHODIMP TreePart<Interface>::QueryInterface(REFIID iid, void** result)
{
    if (result != nullptr && iid == TreePartTraits<Interface>::kId)
    {
        *result = this;
        this->AddRef();
        return S_OK;
    }
    return base::utility::ComObject<Interface>::QueryInterface(iid, result);
}

template <typename Interface>
STDMETHODIMP TreePart<Interface>::GetUri(BSTR* uri)
{
    const std::string method = TreePartTraits<Interface>::kName + std::string("GetUri");
    return m_pJob->trace.Answer(method, m_name.Text(), [&] { return HandOutName(m_name, uri); });
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

template <typename Interface>
ComPtr<TreePart<Interface>> TreePart<Interface>::Recognise(IUnknown* object)
{
    return Query<TreePart<Interface>>(object, TreePartTraits<Interface>::kId);
}

template class TreePart<IFixedDocumentSequence>;
template class TreePart<IFixedDocument>;

PagePart::PagePart(PipelineJobPtr job, const xps::JobPart& part)
    : m_pJob(std::move(job)), m_name(part.name), m_place(m_pJob->handedOut++), m_ticket(m_pJob, part)
{
}

bool PagePart::IsComplete() const noexcept
{
    return m_ticket.IsComplete() && (!m_pNewMarkup || m_pNewMarkup->CloseCount() == 1);
}

STDMETHODIMP PagePart::QueryInterface(REFIID iid, void** result)
{
    if (result != nullptr && (iid == kPagePartId || iid == __uuidof(IPartBase)))
    {
        *result = this;
        AddRef();
        return S_OK;
    }
    return ComObject::QueryInterface(iid, result);
}

STDMETHODIMP PagePart::GetUri(BSTR* uri)
{
    return m_pJob->trace.Answer(
        "IFixedPage::GetUri", m_name.Text(), [&] { return HandOutName(m_name, uri); });
}

STDMETHODIMP PagePart::GetStream(IPrintReadStream** stream)
{
    return m_pJob->trace.Answer(
        "IFixedPage::GetStream", m_name.Text(), [&] { return HandOutContent(*m_pJob, m_name, stream); });
}

STDMETHODIMP PagePart::GetPartCompression(EXpsCompressionOptions* compression)
{
    return m_pJob->trace.Answer("IFixedPage::GetPartCompression", m_name.Text(), [&] {
        return HandOutCompression(m_compression, compression);
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

ComPtr<PagePart> PagePart::Recognise(IUnknown* object)
{
    return Query<PagePart>(object, kPagePartId);
}
} // namespace host::pipeline
