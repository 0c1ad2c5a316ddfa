#include "base/xps/printschema/printschemahandler.h"

#include <algorithm>
#include <cwchar>
#include <utility>

#include "base/logging/errors.h"
#include "base/logging/log.h"
#include "base/utility/variant.h"
#include "base/xps/printschema/document/dom.h"
#include "base/xps/printschema/vocabulary/namespaceprefixes.h"
#include "base/xps/printschema/vocabulary/namespaceuris.h"

namespace base::xps::printschema
{
using exception::ThrowIfFailed;
using logging::FormatWString;
using utility::Bstr;
using utility::ComPtr;
using utility::Variant;

namespace
{
// As the runtime's own conversion has it: blanks before the digits are skipped, what follows them is ignored,
// and a number out of range becomes the nearest one in range.
std::int32_t ToInteger(const Bstr& text)
{
    return text.Length() == 0 ? 0 : static_cast<std::int32_t>(std::wcstol(text.Get(), nullptr, 10));
}

template <typename ReadText>
HRESULT ReadInteger(std::int32_t* value, ReadText&& readText)
{
    if (value == nullptr)
    {
        return E_POINTER;
    }
    Bstr text;
    const HRESULT hr = readText(text.Receive());
    if (SUCCEEDED(hr))
    {
        *value = ToInteger(text);
    }
    return hr;
}

// The watermark's size is the one parameter that the driver defines itself.
NamespaceId NamespaceOfParameter(std::wstring_view localName)
{
    const bool isPrivate = localName == L"PageWatermarkSizeWidth" || localName == L"PageWatermarkSizeHeight";
    return isPrivate ? NamespaceId::Private : NamespaceId::Keywords;
}

template <typename Interface>
ComPtr<Interface> Query(IUnknown* object)
{
    ComPtr<Interface> result;
    ThrowIfFailed(object->QueryInterface(__uuidof(Interface), result.ReceiveUntyped()));
    return result;
}
} // namespace

PrintSchemaHandler::PrintSchemaHandler(const wchar_t* rootName, ComPtr<IXMLDOMDocument2> document)
    : m_pDocument(std::move(document)), m_rootName(rootName)
{
    SetDocumentProperty(L"SelectionLanguage", L"XPath");
    SelectWithPrefix(L"psf");
    const std::vector<xml::Attribute> attributes = ReadRootAttributes();
    ThrowIfFailed(FindPrefix(attributes, kFrameworkUri, m_psfPrefix));
    ThrowIfFailed(FindPrefix(attributes, kKeywordsUri, m_pskPrefix));
    ThrowIfFailed(FindPrefix(attributes, kSchemaInstanceUri, m_xsiPrefix));
    ThrowIfFailed(FindPrefix(attributes, kSchemaUri, m_xsdPrefix));
    ProvideFallbackPrefixes();

    const std::wstring bare(m_psfPrefix.View().substr(0, m_psfPrefix.View().find(L':')));
    if (bare.empty())
    {
        ThrowIfFailed(E_FAIL);
    }
    // From here on queries know the document's own prefix, and no other: names of other namespaces occur in
    // attribute values only.
    SelectWithPrefix(bare);
}

const Bstr& PrintSchemaHandler::GetPrefix(NamespaceId id) const
{
    const Bstr& privatePrefix = GetPrivatePrefix();
    if (m_psfPrefix.Length() == 0 || m_pskPrefix.Length() == 0 || privatePrefix.Length() == 0)
    {
        ThrowIfFailed(E_UNEXPECTED);
    }
    if (id > NamespaceId::Fallback)
    {
        ThrowIfFailed(E_INVALIDARG);
    }
    switch (id)
    {
    case NamespaceId::Keywords:
        return m_pskPrefix;
    case NamespaceId::Framework:
        return m_psfPrefix;
    case NamespaceId::Private:
        return privatePrefix;
    case NamespaceId::Fallback:
        break;
    }
    return GetFallbackPrefix();
}

HRESULT PrintSchemaHandler::DiscoverPrefix(const wchar_t* namespaceUri, BSTR* prefix) const
{
    return AtDomBoundary([&]() -> HRESULT {
        RequirePointers(prefix);
        RequireText(namespaceUri);
        *prefix = nullptr;
        Bstr found;
        const HRESULT hr = FindPrefix(ReadRootAttributes(), namespaceUri, found);
        *prefix = found.Detach();
        return hr;
    });
}

HRESULT PrintSchemaHandler::SelectSingleNode(const wchar_t* xpath, IXMLDOMNode** node) const
{
    return AtDomBoundary([&]() -> HRESULT {
        RequirePointers(node);
        IXMLDOMDocument2& document = Document();
        *node = nullptr;
        RequireText(xpath);
        return document.selectSingleNode(Bstr(xpath).Get(), node);
    });
}

HRESULT PrintSchemaHandler::SelectNodesByLocalName(const wchar_t* localName, IXMLDOMNodeList** nodes) const
{
    return AtDomBoundary([&]() -> HRESULT {
        RequirePointers(nodes);
        if (IsEmpty(localName))
        {
            return E_FAIL;
        }
        *nodes = nullptr;
        const Bstr xpath(L"//" + FrameworkName(localName));
        return Document().selectNodes(xpath.Get(), nodes);
    });
}

HRESULT PrintSchemaHandler::NodeExists(const wchar_t* xpath) const
{
    ComPtr<IXMLDOMNode> node;
    const HRESULT hr = SelectSingleNode(xpath, node.Receive());
    return hr == S_FALSE ? kNotFound : hr;
}

HRESULT PrintSchemaHandler::GetValueText(const wchar_t* xpath, BSTR* text) const
{
    return AtDomBoundary([&]() -> HRESULT {
        RequirePointers(text);
        RequireText(xpath);
        const Bstr previous = Bstr::Adopt(std::exchange(*text, nullptr));
        ComPtr<IXMLDOMNode> node;
        ThrowIfFailed(SelectSingleNode(xpath, node.Receive()));
        Bstr value;
        if (!node || !ReadValue(node.Get(), value))
        {
            return kNotFound;
        }
        if (value.Length() != 0)
        {
            *text = value.Detach();
        }
        return S_OK;
    });
}

HRESULT PrintSchemaHandler::GetValueInteger(const wchar_t* xpath, std::int32_t* value) const
{
    return ReadInteger(value, [&](BSTR* text) { return GetValueText(xpath, text); });
}

HRESULT PrintSchemaHandler::GetAttributeText(IXMLDOMNode* node, const wchar_t* attributeName, BSTR* text)
{
    return AtDomBoundary([&]() -> HRESULT {
        RequirePointers(node, text);
        RequireText(attributeName);
        *text = nullptr;
        Bstr value;
        const bool isPresent = ReadAttribute(node, attributeName, value);
        *text = value.Detach();
        return isPresent ? S_OK : S_FALSE;
    });
}

HRESULT PrintSchemaHandler::GetOptionName(const wchar_t* featureName,
                                          BSTR* optionName,
                                          NamespaceId featureId,
                                          NamespaceId optionId) const
{
    return AtDomBoundary([&]() -> HRESULT {
        RequirePointers(optionName);
        RequireText(featureName);
        *optionName = nullptr;
        Bstr name;
        if (!ReadOptionName({featureId, featureName}, optionId, name))
        {
            return kNotFound;
        }
        *optionName = WithoutKnownPrefix(name.Get()).Detach();
        return S_OK;
    });
}

HRESULT PrintSchemaHandler::FindFirstOption(const std::vector<Qname>& features,
                                            const std::set<NamespaceId>& optionNamespaces,
                                            Qname* feature,
                                            Qname* option) const
{
    return AtDomBoundary([&]() -> HRESULT {
        RequirePointers(feature, option);
        // Without a document, or without a prefix that names need, every candidate would fail.
        static_cast<void>(Document());
        static_cast<void>(GetPrefix(NamespaceId::Keywords));
        for (const Qname& candidate : features)
        {
            for (const NamespaceId optionId : optionNamespaces)
            {
                std::optional<std::wstring> name;
                // A candidate whose query fails is passed over like one that the document lacks.
                if (HasSucceeded(AtDomBoundary([&] { name = FindOption(candidate, optionId); })) && name)
                {
                    *feature = candidate;
                    *option = {optionId, *name};
                    return S_OK;
                }
            }
        }
        return kNotFound;
    });
}

HRESULT PrintSchemaHandler::GetPropertyValue(const wchar_t* featureName,
                                             const wchar_t* propertyName,
                                             BSTR* value,
                                             NamespaceId featureId,
                                             NamespaceId propertyId,
                                             NamespaceId) const
{
    return ReadProperty(
        &FeatureQueryBuilder::AddProperty, featureName, propertyName, value, featureId, propertyId);
}

HRESULT PrintSchemaHandler::GetScoredPropertyValue(const wchar_t* featureName,
                                                   const wchar_t* propertyName,
                                                   BSTR* value,
                                                   NamespaceId featureId,
                                                   NamespaceId propertyId,
                                                   NamespaceId) const
{
    return ReadProperty(
        &FeatureQueryBuilder::AddScoredProperty, featureName, propertyName, value, featureId, propertyId);
}

HRESULT PrintSchemaHandler::GetPropertyInteger(const wchar_t* featureName,
                                               const wchar_t* propertyName,
                                               std::int32_t* value,
                                               NamespaceId featureId,
                                               NamespaceId propertyId,
                                               NamespaceId valueId) const
{
    return ReadInteger(value, [&](BSTR* text) {
        return GetPropertyValue(featureName, propertyName, text, featureId, propertyId, valueId);
    });
}

HRESULT PrintSchemaHandler::GetScoredPropertyInteger(const wchar_t* featureName,
                                                     const wchar_t* propertyName,
                                                     std::int32_t* value,
                                                     NamespaceId featureId,
                                                     NamespaceId propertyId,
                                                     NamespaceId valueId) const
{
    return ReadInteger(value, [&](BSTR* text) {
        return GetScoredPropertyValue(featureName, propertyName, text, featureId, propertyId, valueId);
    });
}

HRESULT PrintSchemaHandler::StripKnownPrefix(BSTR* value, NamespaceId) const
{
    return AtDomBoundary([&] {
        RequirePointers(value);
        Bstr stripped = WithoutKnownPrefix(*value);
        const Bstr previous = Bstr::Adopt(std::exchange(*value, stripped.Detach()));
    });
}

HRESULT PrintSchemaHandler::RemoveNode(IXMLDOMNode* node)
{
    return AtDomBoundary([&]() -> HRESULT {
        RequirePointers(node);
        ComPtr<IXMLDOMNode> parent;
        ThrowIfFailed(node->get_parentNode(parent.Receive()));
        if (!parent)
        {
            return S_FALSE;
        }
        ComPtr<IXMLDOMNode> removed;
        ThrowIfFailed(parent->removeChild(node, removed.Receive()));
        return removed ? S_OK : E_FAIL;
    });
}

HRESULT PrintSchemaHandler::RemoveAllNodes(IXMLDOMNodeList* nodes)
{
    return AtDomBoundary([&] {
        RequirePointers(nodes);
        const long count = CountOf(nodes);
        for (long index = 0; index < count; ++index)
        {
            ThrowIfFailed(RemoveNode(ItemOf(nodes, index).Get()));
        }
    });
}

HRESULT PrintSchemaHandler::RemoveFeature(const wchar_t* localName, NamespaceId id) const
{
    return AtDomBoundary([&]() -> HRESULT {
        RequireText(localName);
        FeatureQueryBuilder builder(m_psfPrefix);
        ThrowIfFailed(builder.AddFeature(GetPrefix(id).Get(), localName));
        Bstr query;
        ThrowIfFailed(builder.GetQuery(query.Receive()));
        ComPtr<IXMLDOMNodeList> features;
        ThrowIfFailed(Document().selectNodes(query.Get(), features.Receive()));
        if (CountOf(features.Get()) == 0)
        {
            return S_FALSE;
        }
        ThrowIfFailed(RemoveAllNodes(features.Get()));
        ComPtr<IXMLDOMNodeList> parameterInits;
        ThrowIfFailed(SelectNodesByLocalName(L"ParameterInit", parameterInits.Receive()));
        ComPtr<IXMLDOMNodeList> parameterRefs;
        ThrowIfFailed(SelectNodesByLocalName(L"ParameterRef", parameterRefs.Receive()));
        ThrowIfFailed(RemoveOrphanParameterInits(parameterRefs.Get(), parameterInits.Get()));
        return S_FALSE;
    });
}

HRESULT PrintSchemaHandler::RemoveOrphanParameterInits(IXMLDOMNodeList* parameterRefs,
                                                       IXMLDOMNodeList* parameterInits)
{
    return AtDomBoundary([&]() -> HRESULT {
        RequirePointers(parameterRefs, parameterInits);
        if (CountOf(parameterRefs) == 0)
        {
            return RemoveAllNodes(parameterInits);
        }
        // A set, as a user's ticket may have thousands of both.
        const std::set<std::wstring> referredTo = NamesOf(parameterRefs);
        const long count = CountOf(parameterInits);
        for (long index = 0; index < count; ++index)
        {
            const ComPtr<IXMLDOMNode> parameterInit = ItemOf(parameterInits, index);
            if (!referredTo.contains(NameAttributeOf(parameterInit.Get())))
            {
                ThrowIfFailed(RemoveNode(parameterInit.Get()));
            }
        }
        return S_OK;
    });
}

HRESULT PrintSchemaHandler::CreateElement(const wchar_t* qualifiedName,
                                          const wchar_t* namespaceUri,
                                          IXMLDOMElement** element) const
{
    if (qualifiedName == nullptr || namespaceUri == nullptr)
    {
        return E_INVALIDARG;
    }
    if (element != nullptr)
    {
        *element = nullptr;
    }
    return AtDomBoundary([&] {
        const ComPtr<IXMLDOMNode> node = NewNode(NODE_ELEMENT, qualifiedName, namespaceUri);
        if (element != nullptr)
        {
            *element = Query<IXMLDOMElement>(node.Get()).Detach();
        }
    });
}

HRESULT PrintSchemaHandler::SetAttribute(IXMLDOMElement* element,
                                         const wchar_t* qualifiedName,
                                         const wchar_t* namespaceUri,
                                         const wchar_t* value) const
{
    if (element == nullptr || qualifiedName == nullptr || value == nullptr)
    {
        return E_INVALIDARG;
    }
    return AtDomBoundary([&]() -> HRESULT {
        const ComPtr<IXMLDOMNode> node = NewNode(NODE_ATTRIBUTE, qualifiedName, namespaceUri);
        const auto attribute = Query<IXMLDOMAttribute>(node.Get());
        Variant text{Bstr(value)};
        ThrowIfFailed(attribute->put_value(text.Get()));
        ThrowIfFailed(text.Clear());
        ComPtr<IXMLDOMAttribute> replaced;
        return element->setAttributeNode(attribute.Get(), replaced.Receive());
    });
}

HRESULT PrintSchemaHandler::CreateProperty(const wchar_t* localName,
                                           IXMLDOMElement** property,
                                           NamespaceId id) const
{
    return AtDomBoundary([&] {
        ClearResults(property);
        RequireText(localName);
        *property = NewNamedElement(L"Property", Prefixed(id, localName)).Detach();
    });
}

HRESULT PrintSchemaHandler::CreatePropertyWithValue(const wchar_t* localName,
                                                    const wchar_t* type,
                                                    const wchar_t* value,
                                                    IXMLDOMElement** property,
                                                    NamespaceId id) const
{
    return AtDomBoundary([&] {
        ClearResults(property);
        RequireText(localName, type, value);
        ComPtr<IXMLDOMElement> created;
        ThrowIfFailed(CreateProperty(localName, created.Receive(), id));
        AppendChild(created.Get(), NewValue(type, value).Get());
        *property = created.Detach();
    });
}

HRESULT PrintSchemaHandler::CreateScoredProperty(const wchar_t* localName, IXMLDOMElement** property) const
{
    return AtDomBoundary([&] {
        ClearResults(property);
        RequireText(localName);
        *property = NewNamedElement(L"ScoredProperty", Prefixed(NamespaceId::Keywords, localName)).Detach();
    });
}

HRESULT PrintSchemaHandler::CreateScoredPropertyWithValue(const wchar_t* localName,
                                                          const wchar_t* type,
                                                          const wchar_t* value,
                                                          IXMLDOMElement** property) const
{
    return AtDomBoundary([&] {
        ClearResults(property);
        RequireText(localName, type, value);
        ComPtr<IXMLDOMElement> created;
        ThrowIfFailed(CreateScoredProperty(localName, created.Receive()));
        AppendChild(created.Get(), NewValue(type, value).Get());
        *property = created.Detach();
    });
}

HRESULT PrintSchemaHandler::CreateIntegerScoredProperty(const wchar_t* localName,
                                                        std::int32_t value,
                                                        IXMLDOMElement** property) const
{
    return AtDomBoundary([&]() -> HRESULT {
        const std::wstring text = FormatWString(L"%i", value);
        return CreateScoredPropertyWithValue(localName, L"integer", text.c_str(), property);
    });
}

HRESULT PrintSchemaHandler::CreateScoredPropertyWithChild(const wchar_t* localName,
                                                          IXMLDOMNode* child,
                                                          IXMLDOMElement** property) const
{
    return AtDomBoundary([&] {
        RequirePointers(child);
        ClearResults(property);
        RequireText(localName);
        ComPtr<IXMLDOMElement> created;
        ThrowIfFailed(CreateScoredProperty(localName, created.Receive()));
        AppendChild(created.Get(), child);
        *property = created.Detach();
    });
}

HRESULT PrintSchemaHandler::CreateFeatureWithOption(const wchar_t* localName,
                                                    IXMLDOMElement** feature,
                                                    IXMLDOMElement** option,
                                                    NamespaceId id) const
{
    return AtDomBoundary([&] {
        ClearResults(feature, option);
        RequireText(localName);
        ComPtr<IXMLDOMElement> newFeature = NewNamedElement(L"Feature", Prefixed(id, localName));
        ComPtr<IXMLDOMElement> newOption = NewElement(L"Option");
        AppendChild(newFeature.Get(), newOption.Get());
        *feature = newFeature.Detach();
        *option = newOption.Detach();
    });
}

HRESULT PrintSchemaHandler::CreateFeatureWithNamedOption(const wchar_t* featureName,
                                                         const wchar_t* optionName,
                                                         IXMLDOMElement** feature,
                                                         IXMLDOMElement** option,
                                                         NamespaceId featureId,
                                                         NamespaceId optionId) const
{
    return AtDomBoundary([&] {
        ClearResults(feature, option);
        RequireText(featureName, optionName);
        ComPtr<IXMLDOMElement> newFeature;
        ComPtr<IXMLDOMElement> newOption;
        ThrowIfFailed(
            CreateFeatureWithOption(featureName, newFeature.Receive(), newOption.Receive(), featureId));
        SetName(newOption.Get(), Prefixed(optionId, optionName));
        *feature = newFeature.Detach();
        *option = newOption.Detach();
    });
}

HRESULT PrintSchemaHandler::CreateParameter(const wchar_t* localName,
                                            const wchar_t* type,
                                            const wchar_t* value,
                                            IXMLDOMElement** parameterRef,
                                            IXMLDOMElement** parameterInit) const
{
    return AtDomBoundary([&] {
        ClearResults(parameterRef, parameterInit);
        RequireText(localName, type, value);
        const std::wstring name = Prefixed(NamespaceOfParameter(localName), localName);
        ComPtr<IXMLDOMElement> newRef = NewNamedElement(L"ParameterRef", name);
        ComPtr<IXMLDOMElement> newInit = NewNamedElement(L"ParameterInit", name);
        AppendChild(newInit.Get(), NewValue(type, value).Get());
        *parameterRef = newRef.Detach();
        *parameterInit = newInit.Detach();
    });
}

HRESULT PrintSchemaHandler::CreateIntegerParameter(const wchar_t* localName,
                                                   std::int32_t value,
                                                   IXMLDOMElement** parameterRef,
                                                   IXMLDOMElement** parameterInit) const
{
    return AtDomBoundary([&]() -> HRESULT {
        const std::wstring text = FormatWString(L"%i", value);
        return CreateParameter(localName, L"integer", text.c_str(), parameterRef, parameterInit);
    });
}

HRESULT PrintSchemaHandler::AppendToElement(const wchar_t* localName, IXMLDOMNode* child) const
{
    return AtDomBoundary([&]() -> HRESULT {
        RequirePointers(child);
        RequireText(localName);
        ComPtr<IXMLDOMNode> element;
        ThrowIfFailed(SelectSingleNode(FrameworkName(localName).c_str(), element.Receive()));
        if (!element)
        {
            return kNotFound;
        }
        AppendChild(element.Get(), child);
        return S_OK;
    });
}

IXMLDOMDocument2& PrintSchemaHandler::Document() const
{
    if (!m_pDocument)
    {
        ThrowIfFailed(E_PENDING);
    }
    return *m_pDocument;
}

void PrintSchemaHandler::SetDocumentProperty(const wchar_t* name, const std::wstring& value) const
{
    ThrowIfFailed(Document().setProperty(Bstr(name).Get(), Variant(Bstr(value)).Get()));
}

void PrintSchemaHandler::SelectWithPrefix(const std::wstring& prefix) const
{
    SetDocumentProperty(L"SelectionNamespaces",
                        FormatWString(L"xmlns:%s='%s'", prefix.c_str(), kFrameworkUri));
}

std::vector<xml::Attribute> PrintSchemaHandler::ReadRootAttributes() const
{
    // The root is looked up under the prefix that construction selects with, whatever its own is.
    const std::wstring xpath = FormatWString(L"//%s:%s", L"psf", m_rootName.Get());
    ComPtr<IXMLDOMNode> root;
    ThrowIfFailed(SelectSingleNode(xpath.c_str(), root.Receive()));
    return root ? xml::ReadAttributes(root.Get()) : std::vector<xml::Attribute>();
}

HRESULT PrintSchemaHandler::FindPrefix(const std::vector<xml::Attribute>& attributes,
                                       const wchar_t* namespaceUri,
                                       Bstr& prefix)
{
    const Bstr uri(namespaceUri);
    const auto found = std::ranges::find_if(
        attributes, [&](const xml::Attribute& attribute) { return AreEqual(Bstr(attribute.value), uri); });
    if (found == attributes.end())
    {
        return S_FALSE;
    }
    constexpr std::wstring_view declares = L"xmlns:";
    const std::wstring& name = found->qualifiedName;
    if (!name.starts_with(declares) || name.size() == declares.size())
    {
        return E_FAIL;
    }
    prefix = Bstr(name.substr(declares.size()) + L':');
    return S_OK;
}

std::wstring PrintSchemaHandler::Prefixed(NamespaceId id, const wchar_t* localName) const
{
    return std::wstring(GetPrefix(id).View()) + localName;
}

std::wstring PrintSchemaHandler::FrameworkName(const wchar_t* localName) const
{
    return std::wstring(m_psfPrefix.View()) + localName;
}

ComPtr<IXMLDOMNode> PrintSchemaHandler::FindChild(IXMLDOMNode* node, const wchar_t* localName) const
{
    ComPtr<IXMLDOMNode> child;
    ThrowIfFailed(node->selectSingleNode(Bstr(FrameworkName(localName)).Get(), child.Receive()));
    return child;
}

bool PrintSchemaHandler::ReadValue(IXMLDOMNode* node, Bstr& text) const
{
    ComPtr<IXMLDOMNode> holder = FindChild(node, L"Value");
    if (!holder)
    {
        const ComPtr<IXMLDOMNode> parameterRef = FindChild(node, L"ParameterRef");
        Bstr name;
        if (!parameterRef || !ReadAttribute(parameterRef.Get(), L"name", name))
        {
            return false;
        }
        ComPtr<IXMLDOMNodeList> parameterInits;
        ThrowIfFailed(SelectNodesByLocalName(L"ParameterInit", parameterInits.Receive()));
        holder = FindNamed(parameterInits.Get(), name);
    }
    if (holder)
    {
        text = ReadTypedValue(holder.Get());
    }
    return true;
}

HRESULT PrintSchemaHandler::ReadProperty(AddToQuery addProperty,
                                         const wchar_t* featureName,
                                         const wchar_t* propertyName,
                                         BSTR* value,
                                         NamespaceId featureId,
                                         NamespaceId propertyId) const
{
    return AtDomBoundary([&]() -> HRESULT {
        ClearResults(value);
        RequireText(propertyName, featureName);
        FeatureQueryBuilder builder(m_psfPrefix);
        ThrowIfFailed(builder.AddFeature(GetPrefix(featureId).Get(), featureName));
        ThrowIfFailed((builder.*addProperty)(GetPrefix(propertyId).Get(), propertyName));
        Bstr query;
        ThrowIfFailed(builder.GetQuery(query.Receive()));
        Bstr text;
        const HRESULT hr = GetValueText(query.Get(), text.Receive());
        if (hr == S_OK)
        {
            *value = WithoutKnownPrefix(text.Get()).Detach();
        }
        return hr;
    });
}

bool PrintSchemaHandler::ReadOptionName(const Qname& feature, NamespaceId optionId, Bstr& name) const
{
    FeatureQueryBuilder builder(m_psfPrefix);
    ThrowIfFailed(builder.AddFeature(GetPrefix(feature.namespaceId).Get(), feature.localName.c_str()));
    ThrowIfFailed(builder.AddOption(GetPrefix(optionId).Get()));
    Bstr query;
    ThrowIfFailed(builder.GetQuery(query.Receive()));
    ComPtr<IXMLDOMNode> node;
    ThrowIfFailed(SelectSingleNode(query.Get(), node.Receive()));
    if (!node)
    {
        return false;
    }
    if (!ReadAttribute(node.Get(), L"name", name))
    {
        name = ReadTypedValue(node.Get());
    }
    return true;
}

std::optional<std::wstring> PrintSchemaHandler::FindOption(const Qname& feature, NamespaceId optionId) const
{
    Bstr name;
    if (!ReadOptionName(feature, optionId, name) || name.Length() == 0)
    {
        return std::nullopt;
    }
    std::wstring localName(name.View());
    if (const std::optional<KnownPrefix> prefix = FindKnownPrefix(localName))
    {
        const bool isPrivate = prefix->id == NamespaceId::Private || prefix->id == NamespaceId::Fallback;
        if (optionId != (isPrivate ? NamespaceId::Private : prefix->id))
        {
            return std::nullopt;
        }
        localName.erase(prefix->position, prefix->length);
    }
    return localName;
}

Bstr PrintSchemaHandler::WithoutKnownPrefix(const wchar_t* value) const
{
    RequireText(value);
    std::wstring text = value;
    if (const std::optional<KnownPrefix> prefix = FindKnownPrefix(text))
    {
        text.erase(prefix->position, prefix->length);
    }
    return Bstr(text);
}

std::optional<PrintSchemaHandler::KnownPrefix> PrintSchemaHandler::FindKnownPrefix(
    std::wstring_view value) const
{
    for (const NamespaceId id :
         {NamespaceId::Keywords, NamespaceId::Framework, NamespaceId::Private, NamespaceId::Fallback})
    {
        const std::wstring_view prefix = GetPrefix(id).View();
        const std::size_t position = value.find(prefix);
        if (position != std::wstring_view::npos)
        {
            return KnownPrefix{position, prefix.size(), id};
        }
    }
    return std::nullopt;
}

ComPtr<IXMLDOMNode> PrintSchemaHandler::NewNode(DOMNodeType type,
                                                const wchar_t* qualifiedName,
                                                const wchar_t* namespaceUri) const
{
    const Variant nodeType(static_cast<LONG>(type));
    ComPtr<IXMLDOMNode> node;
    ThrowIfFailed(Document().createNode(
        nodeType.Get(), Bstr(qualifiedName).Get(), Bstr(namespaceUri).Get(), node.Receive()));
    return node;
}

ComPtr<IXMLDOMElement> PrintSchemaHandler::NewElement(const wchar_t* localName) const
{
    ComPtr<IXMLDOMElement> element;
    ThrowIfFailed(CreateElement(FrameworkName(localName).c_str(), kFrameworkUri, element.Receive()));
    if (!element)
    {
        ThrowIfFailed(E_FAIL);
    }
    return element;
}

ComPtr<IXMLDOMElement> PrintSchemaHandler::NewNamedElement(const wchar_t* localName,
                                                           const std::wstring& name) const
{
    ComPtr<IXMLDOMElement> element = NewElement(localName);
    SetName(element.Get(), name);
    return element;
}

ComPtr<IXMLDOMElement> PrintSchemaHandler::NewValue(const wchar_t* type, const wchar_t* value) const
{
    ComPtr<IXMLDOMElement> element = NewElement(L"Value");
    // Without a prefix there is no attribute of the instance namespace, and so no type, which a reader may
    // not insist on.
    if (m_xsiPrefix.Length() != 0)
    {
        const std::wstring attributeName = std::wstring(m_xsiPrefix.View()) + L"type";
        const std::wstring typeName = std::wstring(m_xsdPrefix.View()) + type;
        ThrowIfFailed(
            SetAttribute(element.Get(), attributeName.c_str(), kSchemaInstanceUri, typeName.c_str()));
    }
    ThrowIfFailed(element->put_text(Bstr(value).Get()));
    return element;
}

void PrintSchemaHandler::SetName(IXMLDOMElement* element, const std::wstring& name) const
{
    ThrowIfFailed(SetAttribute(element, L"name", nullptr, name.c_str()));
}

PrintSchemaDocumentHandler PrintSchemaDocumentHandler::ForPrintTicket(ComPtr<IXMLDOMDocument2> document)
{
    return {L"PrintTicket", std::move(document)};
}

PrintSchemaDocumentHandler PrintSchemaDocumentHandler::ForPrintCapabilities(ComPtr<IXMLDOMDocument2> document)
{
    return {L"PrintCapabilities", std::move(document)};
}
} // namespace base::xps::printschema
