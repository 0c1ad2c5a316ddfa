#include "host/tickets/ticketbytes.h"

#include "base/logging/errors.h"
#include "base/utility/comobject.h"
#include "base/xml/xmlutility.h"
#include "base/xps/printschema/tickets/ticketdocument.h"

namespace host::tickets
{
using base::exception::ThrowIfFailed;
using base::utility::ComPtr;

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
} // namespace host::tickets
