#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "base/utility/bstr.h"
#include "base/utility/comptr.h"
#include "base/xml/attributes.h"
#include "base/xps/printschema/document/domboundary.h"
#include "base/xps/printschema/document/featurequerybuilder.h"
#include "base/xps/printschema/vocabulary/qname.h"
#include "platform/msxml6.h"

namespace base::xps::printschema
{
/// Queries and edits one DOM document that holds a print ticket or print capabilities. It learns the prefixes
/// that the document's root declares and assembles every query and every new name from them, so that any
/// prefixes will do; names in attribute values are compared as text.
///
/// A small object for the stack: copies share the document, which belongs to one thread at a time.
///
/// Construction and GetPrefix throw HresultError. All other operations answer with an HRESULT and throw
/// nothing: E_POINTER for a null out-pointer, node or list, E_INVALIDARG for null or empty text, kNotFound
/// where nothing matches, E_UNEXPECTED where the document lacks a prefix that a name needs, or else the DOM's
/// own failure, the first one. Out-pointers are cleared once the arguments are found good; what they receive
/// belongs to the caller.
class PrintSchemaHandler
{
public:
    /// `rootName` is the local name of the document's root element. Throws E_PENDING for a null document,
    /// E_FAIL for one whose root does not declare the framework namespace under a prefix.
    PrintSchemaHandler(const wchar_t* rootName, utility::ComPtr<IXMLDOMDocument2> document);
    virtual ~PrintSchemaHandler() = default;
    PrintSchemaHandler(const PrintSchemaHandler&) = default;
    PrintSchemaHandler(PrintSchemaHandler&&) = default;
    PrintSchemaHandler& operator=(const PrintSchemaHandler&) = default;
    PrintSchemaHandler& operator=(PrintSchemaHandler&&) = default;

    /// The prefix with its colon. Throws E_UNEXPECTED, whatever the id, while the framework's, the keywords'
    /// or the private prefix is empty, and E_INVALIDARG for an unknown id.
    const utility::Bstr& GetPrefix(NamespaceId id) const;

    /// The prefix, with its colon, under which the root itself declares a namespace; S_FALSE and null when it
    /// does not, E_FAIL when it declares it as its default namespace. The root is looked up as psf's, which
    /// the DOM refuses once construction has found another prefix.
    [[nodiscard]] HRESULT DiscoverPrefix(const wchar_t* namespaceUri, BSTR* prefix) const;

    // Reading. Lengths and other numbers are the leading decimal digits of their text, 0 without any; a
    // failing read leaves an integer untouched.

    /// S_FALSE and null when nothing matches; E_PENDING without a document.
    [[nodiscard]] HRESULT SelectSingleNode(const wchar_t* xpath, IXMLDOMNode** node) const;

    /// All elements of the framework namespace with this local name. Answers E_FAIL, not E_INVALIDARG, for an
    /// empty name.
    [[nodiscard]] HRESULT SelectNodesByLocalName(const wchar_t* localName, IXMLDOMNodeList** nodes) const;

    [[nodiscard]] HRESULT NodeExists(const wchar_t* xpath) const;

    /// The text of the selected node's Value, or of the ParameterInit that its ParameterRef names. An empty
    /// value, and a parameter without its ParameterInit, is null with success. Frees what `text` held.
    [[nodiscard]] HRESULT GetValueText(const wchar_t* xpath, BSTR* text) const;
    [[nodiscard]] HRESULT GetValueInteger(const wchar_t* xpath, std::int32_t* value) const;

    /// S_FALSE and null for a node without attributes or without this one.
    [[nodiscard]] static HRESULT GetAttributeText(IXMLDOMNode* node,
                                                  const wchar_t* attributeName,
                                                  BSTR* text);

    /// The local name of a feature's first option, whichever namespace it lies in: the option's own name, or
    /// the value of its OptionName in the option's namespace, by document order.
    [[nodiscard]] HRESULT GetOptionName(const wchar_t* featureName,
                                        BSTR* optionName,
                                        NamespaceId featureId,
                                        NamespaceId optionId) const;

    /// The first of these features, each tried with these option namespaces in ascending order, that selects
    /// an option of that namespace. An option without one of the known prefixes counts for any namespace, the
    /// fallback prefix for the private one. A candidate whose query fails counts as one that is not there;
    /// only running out of memory ends the search.
    [[nodiscard]] HRESULT FindFirstOption(const std::vector<Qname>& features,
                                          const std::set<NamespaceId>& optionNamespaces,
                                          Qname* feature,
                                          Qname* option) const;

    /// The value of a property at any depth below a feature, freed of a known prefix. An empty value is
    /// E_INVALIDARG. The value's namespace plays no part: every known prefix is taken off.
    [[nodiscard]] HRESULT GetPropertyValue(const wchar_t* featureName,
                                           const wchar_t* propertyName,
                                           BSTR* value,
                                           NamespaceId featureId,
                                           NamespaceId propertyId,
                                           NamespaceId valueId) const;
    [[nodiscard]] HRESULT GetScoredPropertyValue(const wchar_t* featureName,
                                                 const wchar_t* propertyName,
                                                 BSTR* value,
                                                 NamespaceId featureId,
                                                 NamespaceId propertyId,
                                                 NamespaceId valueId) const;
    [[nodiscard]] HRESULT GetPropertyInteger(const wchar_t* featureName,
                                             const wchar_t* propertyName,
                                             std::int32_t* value,
                                             NamespaceId featureId,
                                             NamespaceId propertyId,
                                             NamespaceId valueId) const;
    [[nodiscard]] HRESULT GetScoredPropertyInteger(const wchar_t* featureName,
                                                   const wchar_t* propertyName,
                                                   std::int32_t* value,
                                                   NamespaceId featureId,
                                                   NamespaceId propertyId,
                                                   NamespaceId valueId) const;

    /// Takes the first known prefix, in the order of the namespace ids, out of the value, wherever it stands
    /// in it. The id plays no part. A value without any stays as it is.
    [[nodiscard]] HRESULT StripKnownPrefix(BSTR* value, NamespaceId ignored) const;

    // Removing.

    /// S_FALSE for a node without parent.
    [[nodiscard]] static HRESULT RemoveNode(IXMLDOMNode* node);
    [[nodiscard]] static HRESULT RemoveAllNodes(IXMLDOMNodeList* nodes);

    /// Removes every feature of the name, with the parameters that nothing refers to any more; S_FALSE in the
    /// end.
    [[nodiscard]] HRESULT RemoveFeature(const wchar_t* localName, NamespaceId id) const;

    /// Removes each ParameterInit whose name no ParameterRef bears.
    [[nodiscard]] static HRESULT RemoveOrphanParameterInits(IXMLDOMNodeList* parameterRefs,
                                                            IXMLDOMNodeList* parameterInits);

    // Building. New elements belong to the document but stand nowhere in it until they are appended.

    /// `element` may be null.
    [[nodiscard]] HRESULT CreateElement(const wchar_t* qualifiedName,
                                        const wchar_t* namespaceUri,
                                        IXMLDOMElement** element) const;

    /// A null `namespaceUri` stands for no namespace. A null argument other than that is E_INVALIDARG.
    [[nodiscard]] HRESULT SetAttribute(IXMLDOMElement* element,
                                       const wchar_t* qualifiedName,
                                       const wchar_t* namespaceUri,
                                       const wchar_t* value) const;

    /// `type` is a local name of the XML Schema namespace, as "integer".
    [[nodiscard]] HRESULT CreateProperty(const wchar_t* localName,
                                         IXMLDOMElement** property,
                                         NamespaceId id) const;
    [[nodiscard]] HRESULT CreatePropertyWithValue(const wchar_t* localName,
                                                  const wchar_t* type,
                                                  const wchar_t* value,
                                                  IXMLDOMElement** property,
                                                  NamespaceId id) const;

    /// Scored properties always bear a name of the keywords namespace.
    [[nodiscard]] HRESULT CreateScoredProperty(const wchar_t* localName, IXMLDOMElement** property) const;
    [[nodiscard]] HRESULT CreateScoredPropertyWithValue(const wchar_t* localName,
                                                        const wchar_t* type,
                                                        const wchar_t* value,
                                                        IXMLDOMElement** property) const;
    [[nodiscard]] HRESULT CreateIntegerScoredProperty(const wchar_t* localName,
                                                      std::int32_t value,
                                                      IXMLDOMElement** property) const;
    [[nodiscard]] HRESULT CreateScoredPropertyWithChild(const wchar_t* localName,
                                                        IXMLDOMNode* child,
                                                        IXMLDOMElement** property) const;

    /// The option, which bears no name, is the feature's child.
    [[nodiscard]] HRESULT CreateFeatureWithOption(const wchar_t* localName,
                                                  IXMLDOMElement** feature,
                                                  IXMLDOMElement** option,
                                                  NamespaceId id) const;
    [[nodiscard]] HRESULT CreateFeatureWithNamedOption(const wchar_t* featureName,
                                                       const wchar_t* optionName,
                                                       IXMLDOMElement** feature,
                                                       IXMLDOMElement** option,
                                                       NamespaceId featureId,
                                                       NamespaceId optionId) const;

    /// The reference belongs into an option, the parameter that it names under the document's root.
    [[nodiscard]] HRESULT CreateParameter(const wchar_t* localName,
                                          const wchar_t* type,
                                          const wchar_t* value,
                                          IXMLDOMElement** parameterRef,
                                          IXMLDOMElement** parameterInit) const;
    [[nodiscard]] HRESULT CreateIntegerParameter(const wchar_t* localName,
                                                 std::int32_t value,
                                                 IXMLDOMElement** parameterRef,
                                                 IXMLDOMElement** parameterInit) const;

    /// Appends a node to the document's root, which must have this local name.
    [[nodiscard]] HRESULT AppendToElement(const wchar_t* localName, IXMLDOMNode* child) const;

private:
    struct KnownPrefix
    {
        std::size_t position;
        std::size_t length;
        NamespaceId id;
    };
    using AddToQuery = HRESULT (FeatureQueryBuilder::*)(const wchar_t*, const wchar_t*);

    [[nodiscard]] HRESULT ReadProperty(AddToQuery addProperty,
                                       const wchar_t* featureName,
                                       const wchar_t* propertyName,
                                       BSTR* value,
                                       NamespaceId featureId,
                                       NamespaceId propertyId) const;

    // The inner steps throw; false and an empty result mean that nothing matches.
    IXMLDOMDocument2& Document() const;
    void SetDocumentProperty(const wchar_t* name, const std::wstring& value) const;
    void SelectWithPrefix(const std::wstring& prefix) const;
    std::vector<xml::Attribute> ReadRootAttributes() const;
    static HRESULT FindPrefix(const std::vector<xml::Attribute>& attributes,
                              const wchar_t* namespaceUri,
                              utility::Bstr& prefix);
    std::wstring Prefixed(NamespaceId id, const wchar_t* localName) const;
    std::wstring FrameworkName(const wchar_t* localName) const;
    utility::ComPtr<IXMLDOMNode> FindChild(IXMLDOMNode* node, const wchar_t* localName) const;
    bool ReadValue(IXMLDOMNode* node, utility::Bstr& text) const;
    bool ReadOptionName(const Qname& feature, NamespaceId optionId, utility::Bstr& name) const;
    std::optional<std::wstring> FindOption(const Qname& feature, NamespaceId optionId) const;
    utility::Bstr WithoutKnownPrefix(const wchar_t* value) const;
    std::optional<KnownPrefix> FindKnownPrefix(std::wstring_view value) const;
    utility::ComPtr<IXMLDOMNode> NewNode(DOMNodeType type,
                                         const wchar_t* qualifiedName,
                                         const wchar_t* namespaceUri) const;
    utility::ComPtr<IXMLDOMElement> NewElement(const wchar_t* localName) const;
    utility::ComPtr<IXMLDOMElement> NewNamedElement(const wchar_t* localName, const std::wstring& name) const;
    utility::ComPtr<IXMLDOMElement> NewValue(const wchar_t* type, const wchar_t* value) const;
    void SetName(IXMLDOMElement* element, const std::wstring& name) const;

    utility::ComPtr<IXMLDOMDocument2> m_pDocument;
    utility::Bstr m_rootName;
    // Each with its colon; empty for a namespace that the root does not declare.
    utility::Bstr m_xsdPrefix;
    utility::Bstr m_xsiPrefix;
    utility::Bstr m_psfPrefix;
    utility::Bstr m_pskPrefix;
};

/// A handler for the two kinds of documents that there are.
class PrintSchemaDocumentHandler : public PrintSchemaHandler
{
public:
    static PrintSchemaDocumentHandler ForPrintTicket(utility::ComPtr<IXMLDOMDocument2> document);
    static PrintSchemaDocumentHandler ForPrintCapabilities(utility::ComPtr<IXMLDOMDocument2> document);

private:
    using PrintSchemaHandler::PrintSchemaHandler;
};
} // namespace base::xps::printschema
