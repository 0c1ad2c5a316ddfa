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

/// A ticket with `content` below the root.
Document MakeTicket(const std::string& content);

/// A file among the data files, which the suites run beside.
Document LoadFile(const std::string& path);

base::xps::printschema::PrintSchemaHandler HandlerOf(const Document& document);

/// Properties or scored properties of integers, given as "Name=value Name=value", with `prefix` before each
/// name.
std::string Integers(const std::string& element, const std::string& prefix, const std::string& values);

// What XPath finds in a document as it comes back after saving. The prefix f stands for the framework.

/// The text of all selected nodes in document order, blanks between them.
std::string Join(const Document& document, const std::string& xpath);

int Count(const Document& document, const std::string& xpath);

/// The names of the options that a feature selects.
std::string OptionOf(const Document& document, const std::string& feature);

/// The count of features of a local name in a namespace, by the declarations that are in scope.
int CountFeatures(const Document& document, const std::string& uri, const std::string& localName);
} // namespace support
