#pragma once

#include <string>

#include "base/utility/comptr.h"
#include "base/xps/printschema/printschemahandler.h"
#include "platform/msxml6.h"
#include "support/tickettext.h"

namespace support
{
using Document = base::utility::ComPtr<IXMLDOMDocument2>;

Document LoadDocument(const std::string& markup);

/// A ticket with `content` in its root element.
Document MakeTicket(const std::string& content);

/// Loads a file of tests/data.
Document LoadFile(const std::string& path);

base::xps::printschema::PrintSchemaHandler HandlerOf(const Document& document);

/// Properties or scored properties of integers, given as "Name=value Name=value", with `prefix` before each
/// name.
std::string Integers(const std::string& element, const std::string& prefix, const std::string& values);

// These evaluate XPath on the document after saving and loading it. The prefix of the framework is f.

/// The text of all selected nodes in document order, separated by blanks.
std::string Join(const Document& document, const std::string& xpath);

int Count(const Document& document, const std::string& xpath);

/// The names of a feature's options.
std::string OptionOf(const Document& document, const std::string& feature);

/// The number of features with a local name in a namespace, by the declarations in scope.
int CountFeatures(const Document& document, const std::string& uri, const std::string& localName);
} // namespace support
