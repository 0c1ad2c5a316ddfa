#include "support/tickets.h"

#include <sstream>

#include "base/logging/errors.h"
#include "base/utility/bstr.h"
#include "base/utility/utf8.h"
#include "base/utility/variant.h"
#include "base/xml/xmlutility.h"

namespace support
{
using base::exception::ThrowIfFailed;
using base::utility::Bstr;
using base::utility::ComPtr;
using base::utility::FromUtf8;
using base::utility::Variant;
namespace XmlUtility = base::xml::XmlUtility;

namespace
{
ComPtr<IXMLDOMNodeList> Select(const Document& document, const std::string& xpath)
{
    const Document copy = XmlUtility::CreateDocument();
    const ComPtr<IStream> saved = XmlUtility::SaveDocument(document.Get());
    VARIANT_BOOL loaded = VARIANT_FALSE;
    ThrowIfFailed(copy->load(Variant(saved.Get()).Get(), &loaded));
    const Variant framework(
        Bstr(L"xmlns:f='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework'"));
    ThrowIfFailed(copy->setProperty(Bstr(L"SelectionNamespaces").Get(), framework.Get()));
    ComPtr<IXMLDOMNodeList> nodes;
    ThrowIfFailed(copy->selectNodes(Bstr(xpath.c_str()).Get(), nodes.Receive()));
    return nodes;
}
} // namespace

Document LoadDocument(const std::string& markup)
{
    return XmlUtility::LoadDocumentFromString(FromUtf8(markup));
}

Document MakeTicket(const std::string& content)
{
    return LoadDocument(Ticket(content));
}

Document LoadFile(const std::string& path)
{
    return XmlUtility::LoadDocumentFromFile(FromUtf8(path));
}

base::xps::printschema::PrintSchemaHandler HandlerOf(const Document& document)
{
    return base::xps::printschema::PrintSchemaDocumentHandler::ForPrintTicket(document);
}

std::string Integers(const std::string& element, const std::string& prefix, const std::string& values)
{
    std::istringstream remaining(values);
    std::string content;
    for (std::string item; remaining >> item;)
    {
        const std::size_t sign = item.find('=');
        content += "<psf:" + element + " name='" + prefix + item.substr(0, sign) +
                   "'><psf:Value xsi:type='xsd:integer'>" + item.substr(sign + 1) +
                   "</psf:Value></psf:" + element + ">";
    }
    return content;
}

std::string Join(const Document& document, const std::string& xpath)
{
    const ComPtr<IXMLDOMNodeList> nodes = Select(document, xpath);
    std::string joined;
    for (;;)
    {
        ComPtr<IXMLDOMNode> node;
        ThrowIfFailed(nodes->nextNode(node.Receive()));
        if (!node)
        {
            return joined;
        }
        Bstr text;
        ThrowIfFailed(node->get_text(text.Receive()));
        joined.append(joined.empty() ? "" : " ").append(base::utility::ToUtf8(std::wstring(text.View())));
    }
}

int Count(const Document& document, const std::string& xpath)
{
    LONG count = 0;
    ThrowIfFailed(Select(document, xpath)->get_length(&count));
    return count;
}

std::string OptionOf(const Document& document, const std::string& feature)
{
    return Join(document, "//f:Feature[@name='" + feature + "']/f:Option/@name");
}

int CountFeatures(const Document& document, const std::string& uri, const std::string& localName)
{
    return Count(document,
                 "//f:Feature[substring-after(@name, ':')='" + localName +
                     "'][namespace::*[local-name()=substring-before(../@name, ':')]='" + uri + "']");
}
} // namespace support
