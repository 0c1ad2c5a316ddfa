#pragma once

#include <string_view>

#include "host/tickets/ticketdocument.h"

namespace host::tickets
{
/// Reads the bytes of a print ticket or of print capabilities, as `root` says, in UTF-8 or UTF-16, whichever
/// of the two their XML declaration names.
///
/// Names become independent of prefixes: `name` attributes, types and values of type xsd:QName are QNames in
/// content, resolved by the declarations in scope (Print Schema, "XML Attributes"). Comments, and elements
/// that the Print Schema does not have in their place, are left out. A missing version is taken to be 1.
///
/// Throws xml::MarkupError for what is no such document: not well-formed, a document type declaration,
/// another root or version, an element without the name it needs, a name with an undeclared prefix. COM must
/// be initialised on the calling thread.
Document ReadDocument(std::string_view bytes, Kind root);
} // namespace host::tickets
