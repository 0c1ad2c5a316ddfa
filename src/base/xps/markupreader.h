#pragma once

#include "platform/msxml6.h"

namespace base::xps
{
/// Parses `markup` with the platform's SAX reader and passes the events to `handler`. Namespace declarations
/// are reported as attributes; document type declarations are refused.
///
/// An exception of the handler is rethrown after the parse; it never crosses the reader's frames. Throws
/// HresultError if the parse fails for another reason.
void ParseMarkup(IStream& markup, ISAXContentHandler& handler);
} // namespace base::xps
