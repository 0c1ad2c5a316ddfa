#include "base/xps/printschema/tickets/ticketrewrite.h"

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

#include "base/logging/errors.h"
#include "base/utility/variant.h"
#include "base/xml/namespaces.h"
#include "base/xps/printschema/document/dom.h"
#include "base/xps/printschema/vocabulary/namespaceuris.h"

namespace base::xps::printschema
{
using exception::ThrowIfFailed;
using utility::Bstr;
using utility::ComPtr;

namespace
{
ComPtr<IXMLDOMElement> RootOf(IXMLDOMDocument2* ticket)
{
    ComPtr<IXMLDOMElement> root;
    ThrowIfFailed(ticket->get_documentElement(root.Receive()));
    if (!root)
    {
        ThrowIfFailed(E_FAIL);
    }
    return root;
}

ComPtr<IXMLDOMNodeList> FindAll(const PrintSchemaHandler& handler, const wchar_t* localName)
{
    ComPtr<IXMLDOMNodeList> elements;
    ThrowIfFailed(handler.SelectNodesByLocalName(localName, elements.Receive()));
    return elements;
}

void Remove(IXMLDOMNode* node)
{
    ThrowIfFailed(PrintSchemaHandler::RemoveNode(node));
}

/// Takes the parameters that no feature refers to out of the ticket: removing a feature would remove them
/// (docs/surface.md).
class UnreferencedParameters
{
public:
    explicit UnreferencedParameters(const PrintSchemaHandler& handler)
    {
        const std::set<std::wstring> referredTo = NamesOf(FindAll(handler, L"ParameterRef").Get());
        const ComPtr<IXMLDOMNodeList> parameters = FindAll(handler, L"ParameterInit");
        const long count = CountOf(parameters.Get());
        for (long index = 0; index < count; ++index)
        {
            ComPtr<IXMLDOMNode> parameter = ItemOf(parameters.Get(), index);
            if (!referredTo.contains(NameAttributeOf(parameter.Get())))
            {
                Remove(parameter.Get());
                m_parameters.push_back(std::move(parameter));
            }
        }
    }

    /// Puts the parameters back, except those with these names.
    void PutBack(IXMLDOMElement* root, const std::set<std::wstring>& replaced) const
    {
        for (const ComPtr<IXMLDOMNode>& parameter : m_parameters)
        {
            if (!replaced.contains(NameAttributeOf(parameter.Get())))
            {
                AppendChild(root, parameter.Get());
            }
        }
    }

private:
    std::vector<ComPtr<IXMLDOMNode>> m_parameters;
};

/// The parameters after the first `count` are new. Removes older ones with the same names and returns the
/// names of the new ones.
std::set<std::wstring> RemoveReplaced(const PrintSchemaHandler& handler, long count)
{
    const ComPtr<IXMLDOMNodeList> parameters = FindAll(handler, L"ParameterInit");
    std::set<std::wstring> written;
    for (long index = count; index < CountOf(parameters.Get()); ++index)
    {
        written.insert(NameAttributeOf(ItemOf(parameters.Get(), index).Get()));
    }
    for (long index = 0; index < count; ++index)
    {
        const ComPtr<IXMLDOMNode> parameter = ItemOf(parameters.Get(), index);
        if (written.contains(NameAttributeOf(parameter.Get())))
        {
            Remove(parameter.Get());
        }
    }
    return written;
}

/// Renames the option that was written last.
void NameOption(IXMLDOMElement* root, const std::wstring& name)
{
    ComPtr<IXMLDOMNode> feature;
    ThrowIfFailed(root->get_lastChild(feature.Receive()));
    ComPtr<IXMLDOMNode> option;
    ThrowIfFailed(feature->get_firstChild(option.Receive()));
    ComPtr<IXMLDOMElement> element;
    ThrowIfFailed(option->QueryInterface(__uuidof(IXMLDOMElement), element.ReceiveUntyped()));
    ThrowIfFailed(element->setAttribute(Bstr(L"name").Get(), utility::Variant(Bstr(name)).Get()));
}
} // namespace

void RewriteTicket(const ComPtr<IXMLDOMDocument2>& ticket,
                   std::span<const PrintTicketFunctionOption* const> accessors,
                   const std::wstring& privateNamespace)
{
    const ComPtr<IXMLDOMElement> root = RootOf(ticket.Get());
    xml::NamespaceDeclarations declarations = xml::DeclarationsOf(root.Get());
    for (const auto& [prefix, uri] : kPublicNamespaces)
    {
        xml::RequirePrefix(root.Get(), declarations, prefix, uri);
    }

    const auto handler = PrintSchemaDocumentHandler::ForPrintTicket(ticket);
    const UnreferencedParameters unreferenced(handler);
    for (const PrintTicketFunctionOption* accessor : accessors)
    {
        // Write appends, and a ticket must have a feature once.
        accessor->Remove(handler);
    }
    const long kept = CountOf(FindAll(handler, L"ParameterInit").Get());
    for (const PrintTicketFunctionOption* accessor : accessors)
    {
        accessor->Write(handler);
        const Qname option = accessor->GetOptionQname();
        if (option.namespaceId == NamespaceId::Private)
        {
            const std::wstring_view usual = handler.GetPrefix(NamespaceId::Private).View();
            const std::wstring prefix = xml::RequirePrefix(
                root.Get(), declarations, std::wstring(usual.substr(0, usual.size() - 1)), privateNamespace);
            NameOption(root.Get(), prefix + L':' + option.localName);
        }
    }
    unreferenced.PutBack(root.Get(), RemoveReplaced(handler, kept));
}
} // namespace base::xps::printschema
