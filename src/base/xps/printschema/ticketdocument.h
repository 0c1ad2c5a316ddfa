#pragma once

#include "base/utility/comptr.h"
#include "platform/msxml6.h"

namespace base::xps::printschema
{
/// Loads a print ticket, or print capabilities, from the start of a stream. Throws HresultError: the stream's
/// failure to go to its start, or E_FAIL when what it holds cannot be loaded.
utility::ComPtr<IXMLDOMDocument2> LoadTicketDocument(IStream& stream);
} // namespace base::xps::printschema
