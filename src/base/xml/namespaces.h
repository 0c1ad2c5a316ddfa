#pragma once

#include <map>
#include <string>

#include "platform/msxml6.h"

// Namespace declarations of DOM elements. All functions throw HresultError if the DOM fails.
namespace base::xml
{
/// Namespaces by the name of the attribute that declares their prefix, such as "xmlns:psk".
using NamespaceDeclarations = std::map<std::wstring, std::wstring>;

/// The prefixes that an element itself declares, and the prefix of its own name, without the default
/// namespace.
NamespaceDeclarations DeclarationsOf(IXMLDOMElement* element);

/// Declares a prefix; `name` is the name of the attribute, such as "xmlns:psk".
void Declare(IXMLDOMElement* element, const std::wstring& name, const std::wstring& uri);

/// Returns the prefix that the element declares for a namespace. If it declares none, adds a declaration of
/// the preferred prefix, or of ns0001 and so on if that prefix has another namespace. `declarations` are
/// those of the element.
std::wstring RequirePrefix(IXMLDOMElement* element,
                           NamespaceDeclarations& declarations,
                           const std::wstring& preferredPrefix,
                           const std::wstring& uri);
} // namespace base::xml
