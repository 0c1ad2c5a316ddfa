#pragma once

#include <functional>

#include "platform/msxml6.h"

namespace base::xml
{
/// Calls `visit` with the attributes of an element, namespace declarations included, until it answers false.
/// A declaration of a default namespace that the DOM does not hand out comes as null. Throws HresultError
/// where the DOM fails.
void VisitAttributes(IXMLDOMNode* element, const std::function<bool(IXMLDOMNode*)>& visit);
} // namespace base::xml
