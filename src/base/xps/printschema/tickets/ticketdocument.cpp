#include "base/xps/printschema/tickets/ticketdocument.h"

#include "base/logging/errors.h"
#include "base/utility/variant.h"
#include "base/xml/xmlutility.h"

namespace base::xps::printschema
{
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
} // namespace base::xps::printschema
