#include "base/xps/printschema/tickets/ticketdocument.h"

#include "base/logging/errors.h"
#include "base/utility/variant.h"
#include "base/xml/xmlutility.h"

namespace base::xps::printschema
{
namespace
{
constexpr const wchar_t* kEmptyPrintTicket =
    LR"(<?xml version="1.0" encoding="UTF-8"?>)"
    LR"(<psf:PrintTicket version="1")"
    LR"( xmlns:xsd="http://www.w3.org/2001/XMLSchema")"
    LR"( xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance")"
    LR"( xmlns:psf="http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework")"
    LR"( xmlns:psk="http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords"/>)";
} // namespace

utility::ComPtr<IXMLDOMDocument2> LoadTicketDocument(IStream& stream)
{
    auto document = xml::XmlUtility::CreateDocument(CLSCTX_ALL);
    exception::ThrowIfFailed(stream.Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr));
    const utility::Variant source(&stream);
    VARIANT_BOOL loaded = VARIANT_FALSE;
    const bool failed = FAILED(document->load(source.Get(), &loaded));
    xml::XmlUtility::RequireLoaded(*document.Get(), failed ? VARIANT_FALSE : loaded);
    return document;
}

utility::ComPtr<IXMLDOMDocument2> CreateEmptyTicket()
{
    return xml::XmlUtility::LoadDocumentFromString(kEmptyPrintTicket);
}
} // namespace base::xps::printschema
