#pragma once

#include "platform/msxml6.h"

namespace base::xps::printschema
{
/// Tells whether two nodes of two tickets stand for the same item: they have one qualified name and one value
/// of their "name" attribute, or both none. Values are compared as text, so that one name under two prefixes
/// is two.
class PrintTicketStructureComparator
{
public:
    PrintTicketStructureComparator() = default;
    PrintTicketStructureComparator(const PrintTicketStructureComparator&) = default;
    PrintTicketStructureComparator& operator=(const PrintTicketStructureComparator&) = default;
    virtual ~PrintTicketStructureComparator() = default;

    /// Throws HresultError where the DOM fails.
    virtual bool IsSameNode(IXMLDOMNode* first, IXMLDOMNode* second) const;

    /// Whether neither map has the attribute, or both have it with one value.
    bool IsSameNamedAttribute(IXMLDOMNamedNodeMap* first,
                              IXMLDOMNamedNodeMap* second,
                              const wchar_t* attributeName) const;
};
} // namespace base::xps::printschema
