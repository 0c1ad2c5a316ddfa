#include "base/xml/xmlmarger.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "base/logging/errors.h"
#include "base/utility/bstr.h"
#include "base/utility/comptr.h"
#include "base/utility/variant.h"
#include "base/xml/attributewalk.h"

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

ComPtr<IXMLDOMElement> RootOf(IXMLDOMDocument2* document)
{
    ComPtr<IXMLDOMElement> root;
    ThrowIfFailed(document->get_documentElement(root.Receive()));
    return root;
}

/// What an element itself declares a prefix to stand for, by the name of the declaring attribute.
NamespaceDeclarations DeclarationsOf(IXMLDOMElement* element)
{
    NamespaceDeclarations declarations;
    VisitAttributes(element, [&](IXMLDOMNode* attribute) {
        // Nobody asks for a default namespace here.
        if (attribute == nullptr)
        {
            return true;
        }
        Bstr name;
        ThrowIfFailed(attribute->get_nodeName(name.Receive()));
        if (name.View().starts_with(L"xmlns:"))
        {
            Bstr uri;
            ThrowIfFailed(attribute->get_text(uri.Receive()));
            declarations.emplace(name.View(), uri.View());
        }
        return true;
    });
    return declarations;
}

void Declare(IXMLDOMElement* element, const std::wstring& name, const std::wstring& uri)
{
    ThrowIfFailed(element->setAttribute(Bstr(name).Get(), utility::Variant(Bstr(uri)).Get()));
}

/// Gives a root the declarations of another that it lacks. Answers with those that it has under another
/// meaning, which is not to be touched.
NamespaceDeclarations AddMissing(IXMLDOMElement* base, const NamespaceDeclarations& wanted)
{
    const NamespaceDeclarations present = DeclarationsOf(base);
    NamespaceDeclarations conflicting;
    for (const auto& [name, uri] : wanted)
    {
        const auto known = present.find(name);
        if (known == present.end())
        {
            Declare(base, name, uri);
        }
        else if (known->second != uri)
        {
            conflicting.emplace(name, uri);
        }
    }
    return conflicting;
}

void AppendClone(IXMLDOMNode* parent, IXMLDOMNode* original, const NamespaceDeclarations& conflicting)
{
    ComPtr<IXMLDOMNode> clone;
    ThrowIfFailed(original->cloneNode(VARIANT_TRUE, clone.Receive()));
    ComPtr<IXMLDOMElement> element;
    ThrowIfFailed(clone->QueryInterface(__uuidof(IXMLDOMElement), element.ReceiveUntyped()));
    // Before the clone has a parent: a prefix that is in scope cannot be declared anew.
    for (const auto& [name, uri] : conflicting)
    {
        if (!DeclarationsOf(element.Get()).contains(name))
        {
            Declare(element.Get(), name, uri);
        }
    }
    ComPtr<IXMLDOMNode> appended;
    ThrowIfFailed(parent->appendChild(clone.Get(), appended.Receive()));
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
        // Clones bear qualified names in attribute values, which only declarations of prefixes resolve.
        const NamespaceDeclarations conflicting =
            AddMissing(baseRoot.Get(), DeclarationsOf(targetRoot.Get()));
        MergeChildren(baseRoot.Get(), targetRoot.Get(), conflicting);
    }
}

void XmlMarger::MergeChildren(IXMLDOMNode* base,
                              IXMLDOMNode* target,
                              const NamespaceDeclarations& conflicting) const
{
    Elements unmatched = ChildElementsOf(base);
    if (HoldsElement(unmatched, L"Value"))
    {
        return;
    }
    const bool isFeature = HasLocalName(base, L"Feature");
    bool hasOption = HoldsElement(unmatched, L"Option");
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
            MergeChildren(matched.Get(), child.Get(), conflicting);
            continue;
        }
        const bool isOption = HasLocalName(child.Get(), L"Option");
        if (!isFeature || !isOption || !hasOption)
        {
            AppendClone(base, child.Get(), conflicting);
        }
        hasOption = hasOption || isOption;
    }
}
} // namespace base::xml
