#include "base/xps/printschema/imageableareareader.h"

#include <utility>

#include "base/logging/boundary.h"
#include "base/logging/errors.h"
#include "base/logging/log.h"
#include "base/utility/bstr.h"
#include "base/xml/xmlutility.h"
#include "base/xps/printschema/mediasizedata.h"
#include "base/xps/printschema/ticketdocument.h"

namespace base::xps::printschema
{
using exception::ThrowIfFailed;
using utility::Bstr;
using utility::ComPtr;

namespace
{
/// Through its text: MSXML in Wine 8 never frees the clone of a document
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

/// What tells a sheet from others.
std::wstring NameOf(const MediaSizeEntry& media)
{
    return media.name.localName +
           logging::FormatWString(
               L" %d %d %d", media.value, media.size.widthMicrometres, media.size.heightMicrometres);
}

std::int32_t ReadNumber(const PrintSchemaHandler& capabilities, const wchar_t* name)
{
    const std::wstring framework(capabilities.GetPrefix(NamespaceId::Framework).View());
    const std::wstring keywords(capabilities.GetPrefix(NamespaceId::Keywords).View());
    std::wstring path;
    for (const wchar_t* level : {L"PageImageableSize", L"ImageableArea", name})
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
} // namespace

ImageableArea ImageableAreaReader::Read(const MediaSizeEntry& media)
{
    ComPtr<IXMLDOMDocument2> pageTicket;
    ThrowIfFailed(m_provider.GetLevelTicket(kPTPageScope, pageTicket.Receive()));
    std::wstring request = TextOf(pageTicket.Get()) + NameOf(media);
    if (const auto known = m_byPage.Find(request))
    {
        return *known;
    }
    const ImageableArea area = ReadUnder(pageTicket.Get(), media);
    m_byPage.Add(std::move(request), area);
    return area;
}

ImageableArea ImageableAreaReader::ReadUnder(IXMLDOMDocument2* pageTicket, const MediaSizeEntry& media)
{
    const ComPtr<IXMLDOMDocument2> ticket = CopyOf(pageTicket);
    const auto handler = PrintSchemaDocumentHandler::ForPrintTicket(ticket);
    const MediaSizeData mediaSize(media);
    mediaSize.Remove(handler);
    mediaSize.Write(handler);

    std::wstring text = TextOf(ticket.Get());
    if (const auto known = m_byTicket.Find(text))
    {
        return *known;
    }
    const ImageableArea area = Ask(ticket.Get(), media.size);
    m_byTicket.Add(std::move(text), area);
    return area;
}

ImageableArea ImageableAreaReader::Ask(IXMLDOMDocument2* ticket, MediaSize sheet)
{
    const ImageableArea wholeSheet{0, 0, sheet.widthMicrometres, sheet.heightMicrometres};
    ImageableArea area;
    const HRESULT asked = exception::AtBoundary([&] {
        ComPtr<IXMLDOMDocument2> document;
        ThrowIfFailed(m_provider.GetCapabilities(ticket, document.Receive()));
        const auto capabilities = PrintSchemaDocumentHandler::ForPrintCapabilities(document);
        area = {ReadNumber(capabilities, L"OriginWidth"),
                ReadNumber(capabilities, L"OriginHeight"),
                ReadNumber(capabilities, L"ExtentWidth"),
                ReadNumber(capabilities, L"ExtentHeight")};
        return S_OK;
    });
    return HasSucceeded(asked) ? area : wholeSheet;
}
} // namespace base::xps::printschema
