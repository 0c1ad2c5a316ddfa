#pragma once

#include "base/xml/xmlmarger.h"
#include "platform/msxml6.h"

namespace base::xps::printschema
{
/// Tells whether two nodes of two tickets stand for the same item: they have one qualified name and one value
/// of their "name" attribute, or both none. Values are compared as text, so that one name under two prefixes
/// is two.
class PrintTicketStructureComparator final : public xml::XmlNodeComparator
{
public:
    /// Throws HresultError where the DOM fails.
    bool IsSameNode(IXMLDOMNode* first, IXMLDOMNode* second) const override;

    /// Whether neither map has the attribute, or both have it with one value.
    bool IsSameNamedAttribute(IXMLDOMNamedNodeMap* first,
                              IXMLDOMNamedNodeMap* second,
                              const wchar_t* attributeName) const;
};
} // namespace base::xps::printschema
