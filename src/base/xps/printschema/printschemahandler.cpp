#include "base/xps/printschema/printschemahandler.h"

#include <algorithm>
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
    // Queries use the document's own prefix from here on. They need no other: names of other namespaces are
    // in attribute values only.
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
    // Selects the root with the prefix that construction sets, whatever prefix the root has.
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

PrintSchemaDocumentHandler PrintSchemaDocumentHandler::ForPrintTicket(ComPtr<IXMLDOMDocument2> document)
{
    return {L"PrintTicket", std::move(document)};
}

PrintSchemaDocumentHandler PrintSchemaDocumentHandler::ForPrintCapabilities(ComPtr<IXMLDOMDocument2> document)
{
    return {L"PrintCapabilities", std::move(document)};
}
} // namespace base::xps::printschema
