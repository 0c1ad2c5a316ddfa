#include "support/tickets.h"

#include <sstream>

#include "base/logging/errors.h"
#include "base/utility/bstr.h"
#include "base/utility/utf8.h"
#include "base/utility/variant.h"
#include "base/xml/xmlutility.h"
#include "base/xps/printschema/dom.h"
#include "support/tickettext.h"

namespace tests
{
using base::utility::Bstr;
using base::utility::ComPtr;
using base::utility::Variant;
using base::xps::printschema::CountOf;
using base::xps::printschema::ItemOf;

namespace
{
ComPtr<IXMLDOMNodeList> Select(const Document& document, const std::wstring& xpath)
{
    ComPtr<IXMLDOMNodeList> nodes;
    base::exception::ThrowIfFailed(document->selectNodes(Bstr(xpath).Get(), nodes.Receive()));
    return nodes;
}
} // namespace

std::wstring DataPath(const std::wstring& name)
{
    return TEST_DATA L"/" + name;
}

Document MakeTicket(const std::wstring& content)
{
    const std::string markup = support::Ticket(base::utility::ToUtf8(content));
    return base::xml::XmlUtility::LoadDocumentFromString(base::utility::FromUtf8(markup));
}

Document LoadTicket(const std::wstring& name)
{
    return base::xml::XmlUtility::LoadDocumentFromFile(DataPath(L"tickets/" + name));
}

base::xps::printschema::PrintSchemaHandler HandlerOf(const Document& document)
{
    return base::xps::printschema::PrintSchemaDocumentHandler::ForPrintTicket(document);
}

Document Reload(const Document& document)
{
    const ComPtr<IStream> saved = base::xml::XmlUtility::SaveDocument(document.Get());
    Document copy = base::xml::XmlUtility::CreateDocument();
    VARIANT_BOOL loaded = VARIANT_FALSE;
    base::exception::ThrowIfFailed(copy->load(Variant(saved.Get()).Get(), &loaded));
    const Variant namespaces{
        Bstr(L"xmlns:psf='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework'")};
    base::exception::ThrowIfFailed(copy->setProperty(Bstr(L"SelectionNamespaces").Get(), namespaces.Get()));
    return copy;
}

std::wstring Feature(const std::wstring& name, const std::wstring& option, const std::wstring& content)
{
    return L"<psf:Feature name='" + name + L"'><psf:Option name='" + option + L"'>" + content +
           L"</psf:Option></psf:Feature>";
}

std::wstring Integer(const std::wstring& element, const std::wstring& name, const std::wstring& value)
{
    return L"<psf:" + element + L" name='" + name + L"'><psf:Value xsi:type='xsd:integer'>" + value +
           L"</psf:Value></psf:" + element + L">";
}

std::wstring Integers(const std::wstring& element, const std::wstring& prefix, const std::wstring& values)
{
    std::wistringstream remaining(values);
    std::wstring content;
    for (std::wstring item; remaining >> item;)
    {
        const std::size_t sign = item.find(L'=');
        content += Integer(element, prefix + item.substr(0, sign), item.substr(sign + 1));
    }
    return content;
}

long Count(const Document& document, const std::wstring& xpath)
{
    return CountOf(Select(document, xpath).Get());
}

std::wstring Names(const Document& document, const std::wstring& xpath)
{
    const ComPtr<IXMLDOMNodeList> nodes = Select(document, xpath);
    std::wstring names;
    for (long index = 0; index < CountOf(nodes.Get()); ++index)
    {
        const ComPtr<IXMLDOMNode> node = ItemOf(nodes.Get(), index);
        Bstr name;
        if (!base::xps::printschema::ReadAttribute(node.Get(), L"name", name))
        {
            base::exception::ThrowIfFailed(node->get_text(name.Receive()));
        }
        names += (names.empty() ? L"" : L" ") + std::wstring(name.View());
    }
    return names;
}
} // namespace tests
