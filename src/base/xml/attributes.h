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

/// Reads the attributes and namespace declarations of an element, in document order as far as the DOM keeps
/// it. For an element inside another, MSXML on Windows adds the declarations that its names need. Throws
/// HresultError if the DOM fails.
std::vector<Attribute> ReadAttributes(IXMLDOMNode* element);
} // namespace base::xml
