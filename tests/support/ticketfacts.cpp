#include "support/ticketfacts.h"

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
using base::xml::XmlUtility::CreateDocument;

DomDocument LoadDocument(const std::string& markup)
{
    return base::xml::XmlUtility::LoadDocumentFromString(FromUtf8(markup));
}

TicketFacts::TicketFacts(IXMLDOMDocument2* document) : m_document(CreateDocument())
{
    const ComPtr<IStream> saved = base::xml::XmlUtility::SaveDocument(document);
    VARIANT_BOOL loaded = VARIANT_FALSE;
    ThrowIfFailed(m_document->load(Variant(saved.Get()).Get(), &loaded));
    const Bstr framework(
        L"xmlns:f='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework'");
    ThrowIfFailed(
        m_document->setProperty(Bstr(L"SelectionNamespaces").Get(), Variant(Bstr(framework)).Get()));
}

std::string TicketFacts::Join(const std::string& xpath) const
{
    const ComPtr<IXMLDOMNodeList> nodes = Select(xpath);
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

int TicketFacts::Count(const std::string& xpath) const
{
    LONG count = 0;
    ThrowIfFailed(Select(xpath)->get_length(&count));
    return count;
}

std::string TicketFacts::OptionOf(const std::string& feature) const
{
    return Join("//f:Feature[@name='" + feature + "']/f:Option/@name");
}

int TicketFacts::CountFeatures(const std::string& uri, const std::string& localName) const
{
    return Count("//f:Feature[substring-after(@name, ':')='" + localName +
                 "'][namespace::*[local-name()=substring-before(../@name, ':')]='" + uri + "']");
}

ComPtr<IXMLDOMNodeList> TicketFacts::Select(const std::string& xpath) const
{
    ComPtr<IXMLDOMNodeList> nodes;
    ThrowIfFailed(m_document->selectNodes(Bstr(xpath.c_str()).Get(), nodes.Receive()));
    return nodes;
}
} // namespace support
