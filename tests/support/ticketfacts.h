#pragma once

#include <string>

#include "base/utility/comptr.h"
#include "platform/msxml6.h"

namespace support
{
using DomDocument = base::utility::ComPtr<IXMLDOMDocument2>;

DomDocument LoadDocument(const std::string& markup);

/// A document as it comes back after saving, asked with XPath. The prefix f stands for the framework.
class TicketFacts
{
public:
    explicit TicketFacts(IXMLDOMDocument2* document);

    /// The text of all selected nodes in document order, blanks between them.
    std::string Join(const std::string& xpath) const;

    int Count(const std::string& xpath) const;

    /// The names of the options that a feature selects.
    std::string OptionOf(const std::string& feature) const;

    /// The count of features of a local name in a namespace, by the declarations that are in scope.
    int CountFeatures(const std::string& uri, const std::string& localName) const;

private:
    base::utility::ComPtr<IXMLDOMNodeList> Select(const std::string& xpath) const;

    DomDocument m_document;
};
} // namespace support
