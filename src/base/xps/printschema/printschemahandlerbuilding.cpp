#include "base/xps/printschema/printschemahandler.h"

#include "base/logging/errors.h"
#include "base/logging/log.h"
#include "base/utility/variant.h"
#include "base/xps/printschema/document/dom.h"
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
// The watermark's size is the only parameter that the driver defines (docs/surface.md).
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
    // Without a prefix of the instance namespace the value gets no type; readers must not require one.
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
} // namespace base::xps::printschema
