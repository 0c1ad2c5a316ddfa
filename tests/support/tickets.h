#pragma once

#include <string>

#include "base/utility/comptr.h"
#include "base/xps/printschema/printschemahandler.h"
#include "platform/msxml6.h"

namespace tests
{
using Document = base::utility::ComPtr<IXMLDOMDocument2>;

/// A file of tests/data.
std::wstring DataPath(const std::wstring& name);

/// A ticket with `content` below the root of support::Ticket.
Document MakeTicket(const std::wstring& content);

Document LoadTicket(const std::wstring& name);

base::xps::printschema::PrintSchemaHandler HandlerOf(const Document& document);

/// The document saved and loaded again, to be queried with the framework's prefix psf.
Document Reload(const Document& document);

/// A feature with one option, both names with their prefix, and what the option holds.
std::wstring Feature(const std::wstring& name, const std::wstring& option, const std::wstring& content = L"");

/// A property or scored property, its name with its prefix, with an integer value.
std::wstring Integer(const std::wstring& element, const std::wstring& name, const std::wstring& value);

/// Several of them, given as "Name=value Name=value", with `prefix` before each name.
std::wstring Integers(const std::wstring& element, const std::wstring& prefix, const std::wstring& values);

/// How many nodes an XPath query selects, with the document's own selection namespaces.
long Count(const Document& document, const std::wstring& xpath);

/// The names of all elements that the query selects, or their text where they have none, joined by blanks.
std::wstring Names(const Document& document, const std::wstring& xpath);
} // namespace tests
