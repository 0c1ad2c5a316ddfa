#include "base/xps/printschema/printschemahandler.h"

#include <cwchar>
#include <utility>

#include "base/logging/errors.h"
#include "base/xps/printschema/document/dom.h"

namespace base::xps::printschema
{
using exception::ThrowIfFailed;
using utility::Bstr;
using utility::ComPtr;

namespace
{
// Skips blanks before the digits and ignores what follows them; a number out of range becomes the nearest in
// range.
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
} // namespace

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
                // A feature whose query fails counts as missing.
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
} // namespace base::xps::printschema
