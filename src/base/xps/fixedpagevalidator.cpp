#include "base/xps/fixedpagevalidator.h"

#include <atomic>
#include <new>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "base/io/printreadstreamtoistream.h"
#include "base/io/printstreambuffer.h"
#include "base/io/printwritestreamtoistream.h"
#include "base/io/scopedwritestream.h"
#include "base/logging/errors.h"
#include "base/logging/log.h"
#include "base/utility/bstr.h"
#include "base/utility/variant.h"
#include "base/xml/namespaces.h"
#include "base/xml/xmlutility.h"
#include "base/xps/fixedpagesaxconvertor.h"
#include "base/xps/markupreader.h"
#include "base/xps/page/pagedecision.h"
#include "base/xps/printschema/document/domboundary.h"
#include "base/xps/printschema/tickets/mediasizeresolver.h"
#include "base/xps/printschema/tickets/ticketdocument.h"
#include "base/xps/printschema/tickets/ticketrewrite.h"
#include "base/xps/printschema/vocabulary/mediasizetable.h"
#include "base/xps/printschema/vocabulary/namespaceprefixes.h"
#include "base/xps/printschema/vocabulary/namespaceuris.h"

namespace base::xps
{
using exception::ThrowIfFailed;
using printschema::PrintSchemaDocumentHandler;
using utility::Bstr;
using utility::ComPtr;

namespace
{
constexpr float kTurnDegrees = 270.0F;
constexpr float kTurnScale = 1.0F;

// Makes the names of new ticket parts unique in the process.
std::atomic<std::uint32_t> g_pageCounter{0};

/// Gives the resolver the tickets of the provider.
class ProviderTickets final : public printschema::TicketSource
{
public:
    explicit ProviderTickets(printschema::PrintTicketProvider& provider) noexcept : m_provider(provider) {}

    printschema::PrintSchemaHandler GetTicket(EPrintTicketScope scope) override
    {
        ComPtr<IXMLDOMDocument2> ticket;
        ThrowIfFailed(m_provider.GetLevelTicket(scope, ticket.Receive()));
        return PrintSchemaDocumentHandler::ForPrintTicket(ticket);
    }

private:
    printschema::PrintTicketProvider& m_provider;
};

printschema::MediaSizeEntry ResolveTarget(printschema::PrintTicketProvider& provider,
                                          const printschema::MediaSizeLimits& limits)
{
    ProviderTickets tickets(provider);
    return printschema::MediaSizeResolver(tickets, limits).Resolve(printschema::Scope::Document);
}

/// The name of the part that replaces `oldName`. A name without a folder is used as folder and as file
/// (docs/surface.md).
std::wstring MakeTicketName(const std::wstring& oldName)
{
    const auto separator = oldName.find_last_of(L"/\\");
    const bool hasFolder = separator != std::wstring::npos;
    const std::wstring folder = hasFolder ? oldName.substr(0, separator) : oldName;
    const std::wstring file = hasFolder ? oldName.substr(separator + 1) : oldName;
    return folder + L"\\" + logging::FormatWString(L"pagevalidator_%d_%s", ++g_pageCounter, file.c_str());
}

struct OldTicket
{
    ComPtr<IXMLDOMDocument2> document;
    std::wstring name;
    bool isOfPage = false;
};

/// Reads a part from its start. The pipeline does not specify whether each reader of a part has its own
/// position.
ComPtr<IStream> ReadFromStart(IPrintReadStream* reader)
{
    auto stream = utility::MakeCom<io::PrintReadStreamToIStream>(reader);
    ThrowIfFailed(stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr));
    return ComPtr<IStream>::Adopt(stream.Detach());
}

/// Throws std::overflow_error if the stream fails, std::runtime_error if it accepts no more bytes.
void WriteAll(std::string_view text, IPrintWriteStream& stream)
{
    io::PrintStreamBuffer buffer(&stream);
    while (!text.empty())
    {
        const std::streamsize written = buffer.sputn(text.data(), static_cast<std::streamsize>(text.size()));
        if (written == 0)
        {
            exception::Throw<std::runtime_error>("the page's markup could not be written.");
        }
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

/// Loads the page's ticket; an empty one if the page has none.
OldTicket LoadOldTicket(IFixedPage& page)
{
    ComPtr<IPartPrintTicket> part;
    if (!printschema::HasSucceeded(page.GetPrintTicket(part.Receive())) || !part)
    {
        return {printschema::CreateEmptyTicket(), L".xml", false};
    }
    ComPtr<IPrintReadStream> reader;
    ThrowIfFailed(part->GetStream(reader.Receive()));
    auto document = FixedPageValidator::LoadTicket(reader.Get());
    Bstr name;
    ThrowIfFailed(part->GetUri(name.Receive()));
    return {std::move(document), std::wstring(name.View()), true};
}

printschema::ImageableArea WholeSheet(printschema::MediaSize sheet)
{
    return {0, 0, sheet.widthMicrometres, sheet.heightMicrometres};
}

/// The namespace of the driver's private prefix in the ticket that the options were read from.
std::wstring FindPrivateNamespace(printschema::PrintTicketProvider& provider)
{
    ComPtr<IXMLDOMDocument2> ticket;
    ThrowIfFailed(provider.GetLevelTicket(kPTPageScope, ticket.Receive()));
    ComPtr<IXMLDOMElement> root;
    ThrowIfFailed(ticket->get_documentElement(root.Receive()));
    const xml::NamespaceDeclarations declarations = xml::DeclarationsOf(root.Get());
    const std::wstring_view prefix = printschema::GetPrivatePrefix().View();
    const auto bound = declarations.find(L"xmlns:" + std::wstring(prefix.substr(0, prefix.find(L':'))));
    return bound == declarations.end() ? printschema::kPrivateUri : bound->second;
}
} // namespace

FixedPageValidator::FixedPageValidator(printschema::PrintTicketProvider& provider,
                                       IXpsDocumentConsumer* consumer,
                                       IFixedPage* page,
                                       const printschema::InputBinData& inputBin,
                                       const printschema::MediaSizeData& mediaSize,
                                       const printschema::PageOrientationData& orientation,
                                       const printschema::ScalingData& scaling,
                                       const printschema::PrintableMediaSizeData& printableMediaSize,
                                       printschema::ImageableAreaReader& imageableAreas)
    : m_provider(provider),
      m_pPage(page),
      m_pConsumer(consumer),
      m_mediaSize(mediaSize),
      m_orientation(orientation),
      m_scaling(scaling),
      m_inputBin(inputBin),
      m_limits(printableMediaSize.GetLimits()),
      m_imageableAreas(imageableAreas)
{
    if (consumer == nullptr)
    {
        exception::Throw<std::invalid_argument>("pXpsDocuConsumer is null.");
    }
    if (page == nullptr)
    {
        exception::Throw<std::invalid_argument>("pPage is null.");
    }
    m_targetMedia = ResolveTarget(provider, m_limits);
    NormaliseOrientation();
}

void FixedPageValidator::Process()
{
    const bool isOriented = m_orientation.GetScope() != printschema::Scope::None;
    const bool turns = isOriented && MustTurn(m_orientation.GetOptionId(), m_mediaSize.IsPortrait());
    if (turns)
    {
        m_mediaSize.Rotate();
    }
    const bool fits = m_limits.Contains(m_mediaSize.GetSize());
    if (!fits)
    {
        FitToTarget();
    }
    if (turns || !fits)
    {
        ReplacePrintTicket();
    }
    if (turns)
    {
        RewriteMarkup();
    }
}

void FixedPageValidator::ReplacePrintTicket()
{
    const OldTicket old = LoadOldTicket(*m_pPage.Get());
    // First of all: if this fails, the page keeps its old ticket.
    WriteAccessors(old.document);
    if (old.isOfPage)
    {
        ThrowIfFailed(m_pPage->DeleteResource(Bstr(old.name).Get()));
    }

    ComPtr<IPartPrintTicket> part;
    io::ScopedWriteStream writer;
    ThrowIfFailed(m_pConsumer->GetNewEmptyPart(MakeTicketName(old.name).c_str(),
                                               __uuidof(IPartPrintTicket),
                                               part.ReceiveUntyped(),
                                               writer.Receive()));
    SaveTicket(old.document.Get(), writer.Get());
    writer.Close();
    ThrowIfFailed(m_pPage->SetPrintTicket(part.Get()));
}

void FixedPageValidator::RewriteMarkup()
{
    // Written only after all of the old markup is read: it may be malformed at its end.
    std::ostringstream output;
    {
        ComPtr<IPrintReadStream> reader;
        ThrowIfFailed(m_pPage->GetStream(reader.Receive()));
        const ComPtr<IStream> markup = ReadFromStart(reader.Get());
        ParseMarkup(*markup, *CreateContentHandler(output));
    }
    if (!output)
    {
        // A memory stream fails only when memory runs out.
        throw std::bad_alloc();
    }
    io::ScopedWriteStream writer;
    ThrowIfFailed(m_pPage->GetWriteStream(writer.Receive()));
    WriteAll(output.view(), *writer.Get());
    writer.Close();
}

ComPtr<ISAXContentHandler> FixedPageValidator::CreateContentHandler(std::ostream& output)
{
    // Angle and scale are fixed, whatever scaling the ticket has (docs/surface.md).
    return ComPtr<ISAXContentHandler>::Adopt(new FixedPageSaxConvertor(output, kTurnDegrees, kTurnScale));
}

ComPtr<IXMLDOMDocument2> FixedPageValidator::LoadTicket(IPrintReadStream* reader)
{
    if (reader == nullptr)
    {
        exception::Throw<std::invalid_argument>("pReader is null.");
    }
    const ComPtr<IStream> stream = ReadFromStart(reader);
    auto document = xml::XmlUtility::CreateDocument(CLSCTX_ALL);
    VARIANT_BOOL loaded = VARIANT_FALSE;
    ThrowIfFailed(document->load(utility::Variant(stream.Get()).Get(), &loaded));
    xml::XmlUtility::RequireLoaded(*document.Get(), loaded);
    return document;
}

void FixedPageValidator::SaveTicket(IXMLDOMDocument2* document, IPrintWriteStream* writer)
{
    if (document == nullptr)
    {
        exception::Throw<std::invalid_argument>("pDOMDocument is null.");
    }
    if (writer == nullptr)
    {
        exception::Throw<std::invalid_argument>("pWriter is null.");
    }
    const auto stream = utility::MakeCom<io::PrintWriteStreamToIStream>(writer);
    xml::XmlUtility::WriteDocument(*document, *stream.Get());
    // MSXML in Wine 8 and 10 succeeds although the stream accepts no more bytes.
    ThrowIfFailed(stream->GetResult());
}

void FixedPageValidator::NormaliseOrientation()
{
    const bool isOriented = m_orientation.GetScope() != printschema::Scope::None;
    if (isOriented && printschema::PageOrientationData::IsLandscapeOrientation(m_orientation.GetOptionId()))
    {
        m_mediaSize.Rotate();
        m_orientation.RotateOption();
    }
}

void FixedPageValidator::FitToTarget()
{
    using printschema::ScalingData;
    if (m_scaling.GetOptionId() == ScalingData::kFitMediaSizeToMediaSize)
    {
        const auto source = m_imageableAreas.Read(m_mediaSize.GetMediaSizeEntry(), m_orientation);
        const auto target = m_imageableAreas.Read(m_targetMedia, m_orientation);
        // Both areas must be measured: a measured one is not compared with a whole sheet.
        const bool areMeasured = source && target;
        m_scaling.SetOptionId(ScalingData::kCustom);
        m_scaling.SetScale(areMeasured
                               ? FitOnto(*source, *target)
                               : FitOnto(WholeSheet(m_mediaSize.GetSize()), WholeSheet(m_targetMedia.size)));
    }
    m_mediaSize.SetFromEntry(printschema::MediaSizeTable::Shared().Lookup(m_targetMedia.value));
    // The table has no size for a custom sheet.
    m_mediaSize.SetSize(m_targetMedia.size);
}

void FixedPageValidator::WriteAccessors(const ComPtr<IXMLDOMDocument2>& ticket) const
{
    const printschema::PrintTicketFunctionOption* const accessors[] = {
        &m_mediaSize, &m_orientation, &m_scaling};
    const bool hasPrivateOption = m_scaling.GetOptionQname().namespaceId == printschema::NamespaceId::Private;
    printschema::RewriteTicket(
        ticket, accessors, hasPrivateOption ? FindPrivateNamespace(m_provider) : std::wstring());
}
} // namespace base::xps
