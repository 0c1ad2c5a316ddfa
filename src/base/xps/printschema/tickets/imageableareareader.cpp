#include "base/xps/printschema/tickets/imageableareareader.h"

#include <initializer_list>
#include <utility>

#include "base/logging/boundary.h"
#include "base/logging/errors.h"
#include "base/logging/log.h"
#include "base/utility/bstr.h"
#include "base/xml/xmlutility.h"
#include "base/xps/printschema/tickets/ticketdocument.h"
#include "base/xps/printschema/tickets/ticketrewrite.h"
#include "base/xps/printschema/vocabulary/namespaceuris.h"

namespace base::xps::printschema
{
using exception::ThrowIfFailed;
using utility::Bstr;
using utility::ComPtr;

namespace
{
/// Saves and loads the ticket: MSXML in Wine 8 never frees a document made by cloneNode
/// (ImageableAreaReader.LeavesNoCopyOfATicketBehind).
ComPtr<IXMLDOMDocument2> CopyOf(IXMLDOMDocument2* ticket)
{
    return LoadTicketDocument(*xml::XmlUtility::SaveDocument(ticket));
}

std::wstring TextOf(IXMLDOMDocument2* ticket)
{
    Bstr text;
    ThrowIfFailed(ticket->get_xml(text.Receive()));
    return std::wstring(text.View());
}

/// Text that identifies a sheet and an orientation.
std::wstring NameOf(const MediaSizeEntry& media, const PageOrientationData& orientation)
{
    return media.name.localName + logging::FormatWString(L" %d %d %d %d",
                                                         media.value,
                                                         media.size.widthMicrometres,
                                                         media.size.heightMicrometres,
                                                         orientation.GetOptionId());
}

/// How many times an upright sheet must be turned clockwise by 90 degrees for this orientation. In Landscape
/// the content is turned counterclockwise, so the sheet is turned clockwise.
int QuarterTurnsOf(const PageOrientationData& orientation)
{
    switch (orientation.GetOptionId())
    {
    case PageOrientationData::kLandscape:
        return 1;
    case PageOrientationData::kReversePortrait:
        return 2;
    case PageOrientationData::kReverseLandscape:
        return 3;
    default:
        return 0;
    }
}

MediaSize Turned(MediaSize size)
{
    return {size.heightMicrometres, size.widthMicrometres};
}

std::int32_t ReadInteger(const PrintSchemaHandler& capabilities, std::initializer_list<const wchar_t*> levels)
{
    const std::wstring framework(capabilities.GetPrefix(NamespaceId::Framework).View());
    const std::wstring keywords(capabilities.GetPrefix(NamespaceId::Keywords).View());
    std::wstring path;
    for (const wchar_t* level : levels)
    {
        path.append(path.empty() ? L"//" : L"/")
            .append(framework)
            .append(L"Property[@name = \"")
            .append(keywords)
            .append(level)
            .append(L"\"]");
    }
    std::int32_t value = 0;
    ThrowIfFailed(capabilities.GetValueInteger(path.c_str(), &value));
    return value;
}

ImageableSize ReadSize(const PrintSchemaHandler& capabilities)
{
    const auto sheet = [&](const wchar_t* name) {
        return ReadInteger(capabilities, {L"PageImageableSize", name});
    };
    const auto area = [&](const wchar_t* name) {
        return ReadInteger(capabilities, {L"PageImageableSize", L"ImageableArea", name});
    };
    return {{sheet(L"ImageableSizeWidth"), sheet(L"ImageableSizeHeight")},
            {area(L"OriginWidth"), area(L"OriginHeight"), area(L"ExtentWidth"), area(L"ExtentHeight")}};
}
} // namespace

std::optional<ImageableArea> ImageableAreaReader::Read(const MediaSizeEntry& media,
                                                       const PageOrientationData& orientation)
{
    ComPtr<IXMLDOMDocument2> pageTicket;
    ThrowIfFailed(m_provider.GetLevelTicket(kPTPageScope, pageTicket.Receive()));
    std::wstring key = TextOf(pageTicket.Get()) + NameOf(media, orientation);
    Area answer;
    if (const Area* known = m_byPage.Find(key))
    {
        answer = *known;
    }
    else
    {
        answer = ReadUncached(pageTicket.Get(), media, orientation);
        m_byPage.Add(std::move(key), answer);
    }
    return answer ? std::optional(answer->area) : std::nullopt;
}

ImageableAreaReader::Area ImageableAreaReader::ReadUncached(IXMLDOMDocument2* pageTicket,
                                                            const MediaSizeEntry& media,
                                                            const PageOrientationData& orientation)
{
    MediaSizeData sheet(media);
    int quarters = QuarterTurnsOf(orientation);
    const MediaSize expected = quarters % 2 == 0 ? sheet.GetSize() : Turned(sheet.GetSize());
    Area answer = ReadFor(pageTicket, sheet, orientation);
    if (answer && IsSameSheet(answer->sheet, expected))
    {
        return answer;
    }
    if (sheet.IsPortrait() && quarters == 0)
    {
        return std::nullopt;
    }
    if (!sheet.IsPortrait())
    {
        // Portrait on a turned sheet is Landscape on the upright one.
        sheet.Rotate();
        ++quarters;
    }
    answer = ReadFor(pageTicket, sheet, PageOrientationData());
    if (answer && IsSameSheet(answer->sheet, sheet.GetSize()))
    {
        return TurnClockwise(*answer, quarters % 4);
    }
    return std::nullopt;
}

ImageableAreaReader::Area ImageableAreaReader::ReadFor(IXMLDOMDocument2* pageTicket,
                                                       const MediaSizeData& media,
                                                       const PageOrientationData& orientation)
{
    const ComPtr<IXMLDOMDocument2> ticket = CopyOf(pageTicket);
    const PrintTicketFunctionOption* const accessors[] = {&media, &orientation};
    RewriteTicket(ticket, accessors, kPrivateUri);

    std::wstring key = TextOf(ticket.Get());
    if (const Area* known = m_byTicket.Find(key))
    {
        return *known;
    }
    const Area answer = ReadFromPrinter(ticket.Get());
    m_byTicket.Add(std::move(key), answer);
    return answer;
}

ImageableAreaReader::Area ImageableAreaReader::ReadFromPrinter(IXMLDOMDocument2* ticket)
{
    ImageableSize size;
    const HRESULT read = exception::AtBoundary([&] {
        ComPtr<IXMLDOMDocument2> document;
        ThrowIfFailed(m_provider.GetCapabilities(ticket, document.Receive()));
        size = ReadSize(PrintSchemaDocumentHandler::ForPrintCapabilities(document));
        return S_OK;
    });
    const bool hasExtent = size.area.widthMicrometres > 0 && size.area.heightMicrometres > 0;
    return HasSucceeded(read) && hasExtent ? Area(size) : std::nullopt;
}
} // namespace base::xps::printschema
