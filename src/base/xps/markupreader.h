#pragma once

#include "platform/msxml6.h"

namespace base::xps
{
/// Streams `markup` through the platform's SAX reader into `handler`. Namespace declarations arrive as
/// attributes; document type declarations are refused.
///
/// What the handler throws comes out of this function as it was thrown, without having crossed the reader.
/// A parse that fails otherwise throws HresultError.
void ParseMarkup(IStream& markup, ISAXContentHandler& handler);
} // namespace base::xps
