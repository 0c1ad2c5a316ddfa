#include "host/tickets/ticketfacts.h"

#include "base/utility/utf8.h"
#include "base/xps/printschema/mediasizedata.h"
#include "base/xps/printschema/pageorientationdata.h"
#include "base/xps/printschema/printablemediasizedata.h"
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
template <typename Feature>
Feature ReadFeature(const printschema::PrintSchemaHandler& handler)
{
    Feature feature;
    feature.Read(handler);
    return feature;
}

std::string OptionOf(const printschema::PrintTicketFunctionOption& feature)
{
    return base::utility::ToUtf8(feature.GetOptionQname().localName);
}

SheetFacts ReadSheetFacts(const printschema::PrintSchemaHandler& handler)
{
    const auto orientation = ReadFeature<printschema::PageOrientationData>(handler);
    const auto media = ReadFeature<printschema::MediaSizeData>(handler);
    const auto scaling = ReadFeature<printschema::ScalingData>(handler);
    return {OptionOf(orientation), OptionOf(media), media.GetSize(), OptionOf(scaling), scaling.GetScale()};
}
} // namespace

TicketFacts ReadFacts(const ComPtr<IXMLDOMDocument2>& effectiveTicket)
{
    const auto handler = printschema::PrintSchemaDocumentHandler::ForPrintTicket(effectiveTicket);
    const auto limits = ReadFeature<printschema::PrintableMediaSizeData>(handler);
    return {ReadSheetFacts(handler), limits.GetLimits()};
}

SheetFacts ReadSheetFacts(const std::string& ticket)
{
    return ReadSheetFacts(printschema::PrintSchemaDocumentHandler::ForPrintTicket(LoadBytes(ticket)));
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
