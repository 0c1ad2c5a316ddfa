#include "host/tickets/ticketfacts.h"

#include "base/logging/errors.h"
#include "base/utility/utf8.h"
#include "base/xml/xmlutility.h"
#include "base/xps/printschema/tickets/ticketdocument.h"
#include "host/xml/text.h"

namespace host::tickets
{
using base::exception::ThrowIfFailed;
using base::utility::ComPtr;
using base::xps::printschema::MediaSize;
using base::xps::printschema::MediaSizeLimits;
namespace printschema = base::xps::printschema;

namespace
{
std::string OptionOf(const printschema::PrintTicketFunctionOption& feature)
{
    return base::utility::ToUtf8(feature.GetOptionQname().localName);
}

SheetFacts FactsOf(const printschema::PageOrientationData& orientation,
                   const printschema::MediaSizeData& media,
                   const printschema::ScalingData& scaling)
{
    return {OptionOf(orientation), OptionOf(media), media.GetSize(), OptionOf(scaling), scaling.GetScale()};
}
} // namespace

ComPtr<IXMLDOMDocument2> LoadBytes(const std::string& bytes)
{
    ComPtr<IStream> stream;
    ThrowIfFailed(CreateStreamOnHGlobal(nullptr, TRUE, stream.Receive()));
    ThrowIfFailed(stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr));
    return base::xps::printschema::LoadTicketDocument(*stream);
}

std::string SaveBytes(IXMLDOMDocument2* document)
{
    const ComPtr<IStream> stream = base::xml::XmlUtility::SaveDocument(document);
    STATSTG description{};
    ThrowIfFailed(stream->Stat(&description, STATFLAG_NONAME));
    std::string bytes(static_cast<std::size_t>(description.cbSize.QuadPart), '\0');
    ULONG read = 0;
    ThrowIfFailed(stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &read));
    bytes.resize(read);
    return bytes;
}

TicketFacts TicketFactsReader::Read(const ComPtr<IXMLDOMDocument2>& effectiveTicket)
{
    const auto handler = printschema::PrintSchemaDocumentHandler::ForPrintTicket(effectiveTicket);
    Features features;
    const TicketFacts own = ReadInto(features, handler);
    TicketFacts facts = ReadInto(m_features, handler);
    const auto note = [&](bool isKept, const char* feature) {
        if (isKept)
        {
            facts.keptFeatures.emplace_back(feature);
        }
    };
    note(facts.orientation != own.orientation, "PageOrientation");
    note(facts.mediaName != own.mediaName || facts.media != own.media, "PageMediaSize");
    note(facts.scaling != own.scaling, "PageScaling");
    note(facts.limits != own.limits, "PagePrintableMediaSize");
    if (facts.limits == MediaSizeLimits())
    {
        const std::wstring_view prefix = handler.GetPrefix(printschema::NamespaceId::Private).View();
        facts.prefixWithoutLimits = base::utility::ToUtf8(std::wstring(prefix.substr(0, prefix.find(L':'))));
    }
    return facts;
}

TicketFacts TicketFactsReader::ReadInto(Features& features, const printschema::PrintSchemaHandler& ticket)
{
    // In the filter's order, so that what fails there first fails here first.
    features.scaling.Read(ticket);
    features.media.Read(ticket);
    features.orientation.Read(ticket);
    features.limits.Read(ticket);
    return {
        FactsOf(features.orientation, features.media, features.scaling), features.limits.GetLimits(), {}, {}};
}

SheetFacts ReadSheetFacts(const std::string& ticket)
{
    const auto handler = printschema::PrintSchemaDocumentHandler::ForPrintTicket(LoadBytes(ticket));
    printschema::PageOrientationData orientation;
    printschema::MediaSizeData media;
    printschema::ScalingData scaling;
    orientation.Read(handler);
    media.Read(handler);
    scaling.Read(handler);
    return FactsOf(orientation, media, scaling);
}

std::string FormatSheet(MediaSize size)
{
    constexpr double micrometres = 1000.0;
    return xml::FormatNumber(size.widthMicrometres / micrometres) + "x" +
           xml::FormatNumber(size.heightMicrometres / micrometres);
}

std::string FormatLimits(const MediaSizeLimits& limits)
{
    return FormatSheet(limits.minimum) + "-" + FormatSheet(limits.maximum);
}
} // namespace host::tickets
