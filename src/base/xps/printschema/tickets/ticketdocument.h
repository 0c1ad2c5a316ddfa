#pragma once

#include "base/utility/comptr.h"
#include "platform/msxml6.h"

namespace base::xps::printschema
{
/// Loads a print ticket or print capabilities from the start of a stream. Throws HresultError: the stream's
/// code if seeking fails, or E_FAIL if loading fails.
utility::ComPtr<IXMLDOMDocument2> LoadTicketDocument(IStream& stream);

/// Creates a print ticket without any feature.
utility::ComPtr<IXMLDOMDocument2> CreateEmptyTicket();
} // namespace base::xps::printschema
