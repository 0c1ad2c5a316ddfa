#pragma once

#include "base/xml/xmlmarger.h"
#include "platform/msxml6.h"

namespace base::xps::printschema
{
/// Decides whether two nodes of two tickets are the same item: their qualified names are equal, and so are
/// their "name" attributes, or both have none. Values are compared as text, so a name under another prefix is
/// another item.
class PrintTicketStructureComparator final : public xml::XmlNodeComparator
{
public:
    /// Throws HresultError if the DOM fails.
    bool IsSameNode(IXMLDOMNode* first, IXMLDOMNode* second) const override;

    /// Whether both maps have the attribute with the same value, or neither has it.
    bool IsSameNamedAttribute(IXMLDOMNamedNodeMap* first,
                              IXMLDOMNamedNodeMap* second,
                              const wchar_t* attributeName) const;
};
} // namespace base::xps::printschema
