#pragma once

#include <string>

#include "host/tickets/ticketdocument.h"

namespace host::tickets
{
/// Writes a document as UTF-8 with an XML declaration and no white space between elements.
///
/// All prefixes are declared at the root: psf, psk, xsi and xsd for the schemas' own namespaces, then the
/// document's prefixes but for those already taken, then "ns0000", "ns0001" and so on for namespaces that
/// have none. Every name, in content too, is written with them.
std::string WriteDocument(const Document& document);
} // namespace host::tickets
