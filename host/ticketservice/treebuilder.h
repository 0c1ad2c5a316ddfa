#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/xml/saxreader.h"
#include "ticketservice/printschema.h"

namespace host::ticketservice
{
/// Builds a document from the events of an XML reader, which come in the order of SAX: the prefixes of an
/// element before its start, and after its end. What throws FormatError ends the reading.
class TreeBuilder
{
public:
    explicit TreeBuilder(Kind root) : m_rootKind(root) {}

    void StartPrefix(std::string prefix, std::string namespaceUri);
    void EndPrefix(std::string_view prefix);
    /// `attributes` are those that declare no namespace.
    void StartElement(const ExpandedName& name, const std::vector<xml::Attribute>& attributes);
    void EndElement();
    void AddText(std::string_view text);

    /// The document, once its root has ended.
    Document Take();

private:
    bool IsWanted(const ExpandedName& name) const;
    void TakeAttribute(Element& element, const xml::Attribute& attribute) const;
    std::optional<ExpandedName> Resolve(std::string_view lexicalName) const;
    ExpandedName ResolveOrThrow(std::string_view lexicalName) const;

    Kind m_rootKind;
    Document m_document;
    /// The namespaces that the open elements bind each prefix to; the last one counts.
    std::map<std::string, std::vector<std::string>, std::less<>> m_bindings = {
        {"", {""}}, {"xml", {std::string(kXmlNamespace)}}};
    /// From the root to the innermost open element.
    std::vector<Element> m_open;
    /// How many elements are open that are left out, all of them inside the innermost open one.
    int m_leftOut = 0;
};
} // namespace host::ticketservice
