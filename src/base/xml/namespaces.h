#pragma once

#include <map>
#include <string>

#include "platform/msxml6.h"

// Namespace declarations of DOM elements. All functions throw HresultError where the DOM fails.
namespace base::xml
{
/// What prefixes stand for, by the name of the declaring attribute, as "xmlns:psk".
using NamespaceDeclarations = std::map<std::wstring, std::wstring>;

/// The prefixes that an element itself declares, and its own; its default namespace is left out.
NamespaceDeclarations DeclarationsOf(IXMLDOMElement* element);

/// `name` is that of the declaring attribute.
void Declare(IXMLDOMElement* element, const std::wstring& name, const std::wstring& uri);

/// The prefix under which the element declares a namespace. Without one it is declared under the preferred
/// prefix, or under ns0001 and so on where that stands for something else. `declarations` are the element's.
std::wstring RequirePrefix(IXMLDOMElement* element,
                           NamespaceDeclarations& declarations,
                           const std::wstring& preferredPrefix,
                           const std::wstring& uri);
} // namespace base::xml
