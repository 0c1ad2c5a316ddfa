#include "host/tickets/ticketfacts.h"

#include "base/utility/utf8.h"
#include "host/tickets/ticketbytes.h"
#include "host/xml/text.h"

namespace host::tickets
{
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
