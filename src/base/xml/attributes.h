#pragma once

#include <string>
#include <vector>

#include "platform/msxml6.h"

namespace base::xml
{
struct Attribute
{
    std::wstring qualifiedName;
    std::wstring value;
};

/// The attributes and namespace declarations of an element, in document order as far as the DOM keeps it.
/// Those of an element inside another may include the declaration of its own prefix, wherever that stands.
/// Throws HresultError where the DOM fails.
std::vector<Attribute> ReadAttributes(IXMLDOMNode* element);
} // namespace base::xml
