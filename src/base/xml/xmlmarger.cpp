#include "base/xml/xmlmarger.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "base/logging/errors.h"
#include "base/utility/bstr.h"
#include "base/utility/comptr.h"
#include "base/utility/variant.h"

namespace base::xml
{
namespace
{
using exception::ThrowIfFailed;
using utility::Bstr;
using utility::ComPtr;
using Elements = std::vector<ComPtr<IXMLDOMNode>>;

Elements ChildElementsOf(IXMLDOMNode* parent)
{
    Elements elements;
    ComPtr<IXMLDOMNode> child;
    ThrowIfFailed(parent->get_firstChild(child.Receive()));
    while (child)
    {
        DOMNodeType type = NODE_INVALID;
        ThrowIfFailed(child->get_nodeType(&type));
        if (type == NODE_ELEMENT)
        {
            elements.push_back(child);
        }
        ComPtr<IXMLDOMNode> next;
        ThrowIfFailed(child->get_nextSibling(next.Receive()));
        child = next;
    }
    return elements;
}

bool HasLocalName(IXMLDOMNode* element, std::wstring_view expected)
{
    Bstr name;
    ThrowIfFailed(element->get_baseName(name.Receive()));
    return name.View() == expected;
}

bool HoldsElement(const Elements& elements, std::wstring_view localName)
{
    return std::any_of(elements.begin(), elements.end(), [localName](const ComPtr<IXMLDOMNode>& element) {
        return HasLocalName(element.Get(), localName);
    });
}

void AppendClone(IXMLDOMNode* parent, IXMLDOMNode* original)
{
    ComPtr<IXMLDOMNode> clone;
    ThrowIfFailed(original->cloneNode(VARIANT_TRUE, clone.Receive()));
    ComPtr<IXMLDOMNode> appended;
    ThrowIfFailed(parent->appendChild(clone.Get(), appended.Receive()));
}

ComPtr<IXMLDOMElement> RootOf(IXMLDOMDocument2* document)
{
    ComPtr<IXMLDOMElement> root;
    ThrowIfFailed(document->get_documentElement(root.Receive()));
    return root;
}

/// Clones bear qualified names in attribute values, which only the declarations of prefixes resolve. One
/// that the base lacks comes along; one that it has under another meaning stays the base's.
void AddMissingNamespaces(IXMLDOMElement* base, IXMLDOMElement* target)
{
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    ThrowIfFailed(target->get_attributes(attributes.Receive()));
    LONG count = 0;
    ThrowIfFailed(attributes->get_length(&count));
    for (LONG index = 0; index < count; ++index)
    {
        ComPtr<IXMLDOMNode> attribute;
        ThrowIfFailed(attributes->get_item(index, attribute.Receive()));
        Bstr name;
        ThrowIfFailed(attribute->get_nodeName(name.Receive()));
        if (!name.View().starts_with(L"xmlns:"))
        {
            continue;
        }
        ComPtr<IXMLDOMAttribute> present;
        ThrowIfFailed(base->getAttributeNode(name.Get(), present.Receive()));
        if (!present)
        {
            utility::Variant uri;
            ThrowIfFailed(attribute->get_nodeValue(uri.Receive()));
            ThrowIfFailed(base->setAttribute(name.Get(), uri.Get()));
        }
    }
}
} // namespace

void XmlMarger::Merge(IXMLDOMDocument2* base, IXMLDOMDocument2* target) const
{
    if (base == nullptr)
    {
        exception::Throw<std::invalid_argument>("pBase is null.");
    }
    if (target == nullptr)
    {
        exception::Throw<std::invalid_argument>("pTarget is null.");
    }
    const ComPtr<IXMLDOMElement> baseRoot = RootOf(base);
    const ComPtr<IXMLDOMElement> targetRoot = RootOf(target);
    if (baseRoot && targetRoot)
    {
        AddMissingNamespaces(baseRoot.Get(), targetRoot.Get());
        MergeChildren(baseRoot.Get(), targetRoot.Get());
    }
}

void XmlMarger::MergeChildren(IXMLDOMNode* base, IXMLDOMNode* target) const
{
    Elements unmatched = ChildElementsOf(base);
    if (HoldsElement(unmatched, L"Value"))
    {
        return;
    }
    const bool selectsOption = HasLocalName(base, L"Feature") && HoldsElement(unmatched, L"Option");
    for (const ComPtr<IXMLDOMNode>& child : ChildElementsOf(target))
    {
        const auto match =
            std::find_if(unmatched.begin(), unmatched.end(), [&](const ComPtr<IXMLDOMNode>& candidate) {
                return m_comparator.IsSameNode(candidate.Get(), child.Get());
            });
        if (match != unmatched.end())
        {
            const ComPtr<IXMLDOMNode> matched = *match;
            unmatched.erase(match);
            MergeChildren(matched.Get(), child.Get());
        }
        else if (!selectsOption || !HasLocalName(child.Get(), L"Option"))
        {
            AppendClone(base, child.Get());
        }
    }
}
} // namespace base::xml
