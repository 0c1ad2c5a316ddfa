#include "base/xps/printschema/ticketdocument.h"

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
    if (FAILED(document->load(source.Get(), &loaded)) || loaded != VARIANT_TRUE)
    {
        exception::ThrowIfFailed(E_FAIL);
    }
    return document;
}
} // namespace base::xps::printschema
