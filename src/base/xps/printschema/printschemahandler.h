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
/// Queries and edits a DOM document with a print ticket or print capabilities. It finds the prefixes that the
/// document's root declares and uses them in every query and every new name, so a document may use any
/// prefixes. Names in attribute values are compared as text.
///
/// Copies share the document. Use the handlers of one document on one thread at a time. Operations without a
/// caller, and odd results, are fixed: docs/surface.md.
///
/// Construction and GetPrefix throw HresultError. All other operations throw nothing and return an HRESULT:
/// E_POINTER for a null out-pointer, node or list; E_INVALIDARG for null or empty text; kNotFound if nothing
/// matches; E_UNEXPECTED if the document lacks a prefix that a name needs; else the first failure of the DOM.
/// Out-pointers are cleared after the arguments are checked; the caller owns what they receive.
class PrintSchemaHandler
{
public:
    /// `rootName` is the local name of the document's root element. Throws E_PENDING for a null document,
    /// E_FAIL if the root does not declare a prefix of the framework namespace.
    PrintSchemaHandler(const wchar_t* rootName, utility::ComPtr<IXMLDOMDocument2> document);
    virtual ~PrintSchemaHandler() = default;
    PrintSchemaHandler(const PrintSchemaHandler&) = default;
    PrintSchemaHandler(PrintSchemaHandler&&) = default;
    PrintSchemaHandler& operator=(const PrintSchemaHandler&) = default;
    PrintSchemaHandler& operator=(PrintSchemaHandler&&) = default;

    /// The prefix with its colon. Throws E_UNEXPECTED, whatever the id is, if the prefix of the framework, of
    /// the keywords or the private prefix is empty; E_INVALIDARG for an unknown id.
    const utility::Bstr& GetPrefix(NamespaceId id) const;

    /// The prefix, with its colon, that the root itself declares for a namespace. S_FALSE and null if it
    /// declares none, E_FAIL if it is the default namespace. The root is selected with the prefix psf, so
    /// after construction this fails for a document with another prefix.
    [[nodiscard]] HRESULT DiscoverPrefix(const wchar_t* namespaceUri, BSTR* prefix) const;

    /// S_FALSE and null if nothing matches; E_PENDING without a document.
    [[nodiscard]] HRESULT SelectSingleNode(const wchar_t* xpath, IXMLDOMNode** node) const;

    /// All elements of the framework namespace with this local name. E_FAIL, not E_INVALIDARG, for an empty
    /// name.
    [[nodiscard]] HRESULT SelectNodesByLocalName(const wchar_t* localName, IXMLDOMNodeList** nodes) const;

    // Reading (printschemahandlerreading.cpp). An integer is read from the decimal digits at the start of the
    // text, 0 without digits. If reading fails, `value` is not changed.

    [[nodiscard]] HRESULT NodeExists(const wchar_t* xpath) const;

    /// The text of the selected node's Value, or of the ParameterInit that its ParameterRef names. S_OK and
    /// null for an empty value and if the ParameterInit is missing. Frees the previous value of `text`.
    [[nodiscard]] HRESULT GetValueText(const wchar_t* xpath, BSTR* text) const;
    [[nodiscard]] HRESULT GetValueInteger(const wchar_t* xpath, std::int32_t* value) const;

    /// S_FALSE and null if the node has no attributes or lacks this one.
    [[nodiscard]] static HRESULT GetAttributeText(IXMLDOMNode* node,
                                                  const wchar_t* attributeName,
                                                  BSTR* text);

    /// The local name of a feature's first option in document order, whatever its namespace: the Option's
    /// name, or the value of a scored property OptionName in the namespace `optionId`.
    [[nodiscard]] HRESULT GetOptionName(const wchar_t* featureName,
                                        BSTR* optionName,
                                        NamespaceId featureId,
                                        NamespaceId optionId) const;

    /// The first of these features with an option in one of these namespaces, which are tried in ascending
    /// order. An option without a known prefix matches any namespace; the fallback prefix matches the private
    /// one. If the query of a feature fails, the search goes on with the next; it ends only if memory runs
    /// out.
    [[nodiscard]] HRESULT FindFirstOption(const std::vector<Qname>& features,
                                          const std::set<NamespaceId>& optionNamespaces,
                                          Qname* feature,
                                          Qname* option) const;

    /// The value of a property at any depth below a feature, without a known prefix. E_INVALIDARG for an
    /// empty value. `valueId` is ignored: any known prefix is removed.
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

    /// Removes the first known prefix, in the order of the namespace ids, from the value, wherever it is in
    /// the value. The id is ignored.
    [[nodiscard]] HRESULT StripKnownPrefix(BSTR* value, NamespaceId ignored) const;

    // Editing (printschemahandlerediting.cpp).

    /// S_FALSE for a node without parent.
    [[nodiscard]] static HRESULT RemoveNode(IXMLDOMNode* node);
    [[nodiscard]] static HRESULT RemoveAllNodes(IXMLDOMNodeList* nodes);

    /// Removes every feature of the name, and then every parameter that no feature refers to. Returns S_FALSE
    /// on success.
    [[nodiscard]] HRESULT RemoveFeature(const wchar_t* localName, NamespaceId id) const;

    /// Removes each ParameterInit whose name no ParameterRef has.
    [[nodiscard]] static HRESULT RemoveOrphanParameterInits(IXMLDOMNodeList* parameterRefs,
                                                            IXMLDOMNodeList* parameterInits);

    /// Appends a node to the document's root, which must have this local name.
    [[nodiscard]] HRESULT AppendToElement(const wchar_t* localName, IXMLDOMNode* child) const;

    // Building (printschemahandlerbuilding.cpp). New elements belong to the document but are in no tree until
    // they are appended.

    /// `element` may be null.
    [[nodiscard]] HRESULT CreateElement(const wchar_t* qualifiedName,
                                        const wchar_t* namespaceUri,
                                        IXMLDOMElement** element) const;

    /// A null `namespaceUri` means no namespace; E_INVALIDARG for any other null argument.
    [[nodiscard]] HRESULT SetAttribute(IXMLDOMElement* element,
                                       const wchar_t* qualifiedName,
                                       const wchar_t* namespaceUri,
                                       const wchar_t* value) const;

    /// In the operations below, `type` is a local name of the XML Schema namespace, such as "integer".
    [[nodiscard]] HRESULT CreateProperty(const wchar_t* localName,
                                         IXMLDOMElement** property,
                                         NamespaceId id) const;
    [[nodiscard]] HRESULT CreatePropertyWithValue(const wchar_t* localName,
                                                  const wchar_t* type,
                                                  const wchar_t* value,
                                                  IXMLDOMElement** property,
                                                  NamespaceId id) const;

    /// The name of a scored property is always in the keywords namespace.
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

    /// The option has no name and is the feature's child.
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

    /// The reference is to be appended to an option, the parameter to the document's root.
    [[nodiscard]] HRESULT CreateParameter(const wchar_t* localName,
                                          const wchar_t* type,
                                          const wchar_t* value,
                                          IXMLDOMElement** parameterRef,
                                          IXMLDOMElement** parameterInit) const;
    [[nodiscard]] HRESULT CreateIntegerParameter(const wchar_t* localName,
                                                 std::int32_t value,
                                                 IXMLDOMElement** parameterRef,
                                                 IXMLDOMElement** parameterInit) const;

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

    // These throw; false and an empty result mean that nothing matches.
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
    // Each with its colon; empty if the root does not declare the namespace.
    utility::Bstr m_xsdPrefix;
    utility::Bstr m_xsiPrefix;
    utility::Bstr m_psfPrefix;
    utility::Bstr m_pskPrefix;
};

/// A handler for a print ticket or for print capabilities.
class PrintSchemaDocumentHandler : public PrintSchemaHandler
{
public:
    static PrintSchemaDocumentHandler ForPrintTicket(utility::ComPtr<IXMLDOMDocument2> document);
    static PrintSchemaDocumentHandler ForPrintCapabilities(utility::ComPtr<IXMLDOMDocument2> document);

private:
    using PrintSchemaHandler::PrintSchemaHandler;
};
} // namespace base::xps::printschema
