#include "base/xml/xmlmarger.h"

#include <algorithm>
#include <map>
#include <stdexcept>
#include <string>
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

ComPtr<IXMLDOMElement> RootOf(IXMLDOMDocument2* document)
{
    ComPtr<IXMLDOMElement> root;
    ThrowIfFailed(document->get_documentElement(root.Receive()));
    return root;
}

/// Adds the declarations of `wanted` that `base` lacks to `base` and to `present`, the declarations that it
/// has. Returns those that conflict: `base` binds their prefix to another namespace, and keeps it.
NamespaceDeclarations AddMissing(IXMLDOMElement* base,
                                 NamespaceDeclarations& present,
                                 const NamespaceDeclarations& wanted)
{
    NamespaceDeclarations conflicting;
    for (const auto& [name, uri] : wanted)
    {
        const auto known = present.find(name);
        if (known == present.end())
        {
            Declare(base, name, uri);
            present.emplace(name, uri);
        }
        else if (known->second != uri)
        {
            conflicting.emplace(name, uri);
        }
    }
    return conflicting;
}

/// A deep copy without a parent that declares the conflicting prefixes itself.
ComPtr<IXMLDOMElement> CloneWith(const NamespaceDeclarations& conflicting, IXMLDOMNode* original)
{
    ComPtr<IXMLDOMNode> clone;
    ThrowIfFailed(original->cloneNode(VARIANT_TRUE, clone.Receive()));
    ComPtr<IXMLDOMElement> element;
    ThrowIfFailed(clone->QueryInterface(__uuidof(IXMLDOMElement), element.ReceiveUntyped()));
    // Before the clone has a parent: a prefix that is in scope cannot be declared again.
    const NamespaceDeclarations own = DeclarationsOf(element.Get());
    for (const auto& [name, uri] : conflicting)
    {
        if (!own.contains(name))
        {
            Declare(element.Get(), name, uri);
        }
    }
    return element;
}

void AppendClone(IXMLDOMNode* parent, IXMLDOMNode* original, const NamespaceDeclarations& conflicting)
{
    ComPtr<IXMLDOMNode> appended;
    ThrowIfFailed(parent->appendChild(CloneWith(conflicting, original).Get(), appended.Receive()));
}

/// The value of an element's "name" attribute.
struct QualifiedName
{
    // The name of the attribute that declares the prefix, as "xmlns:psk"; empty for a name without prefix.
    std::wstring declaration;
    std::wstring local;
};

QualifiedName NameOf(IXMLDOMNode* element)
{
    ComPtr<IXMLDOMNode> attribute;
    ThrowIfFailed(element->selectSingleNode(Bstr(L"@name").Get(), attribute.Receive()));
    if (!attribute)
    {
        return {};
    }
    Bstr text;
    ThrowIfFailed(attribute->get_text(text.Receive()));
    const std::wstring name(text.View());
    const std::size_t colon = name.find(L':');
    return colon == std::wstring::npos
               ? QualifiedName{{}, name}
               : QualifiedName{L"xmlns:" + name.substr(0, colon), name.substr(colon + 1)};
}

/// The namespace of a name in an element that is a child of a root with these declarations; empty for none.
std::wstring NamespaceOf(const QualifiedName& name, IXMLDOMNode* element, const NamespaceDeclarations& ofRoot)
{
    ComPtr<IXMLDOMElement> declaring;
    ThrowIfFailed(element->QueryInterface(__uuidof(IXMLDOMElement), declaring.ReceiveUntyped()));
    const NamespaceDeclarations own = DeclarationsOf(declaring.Get());
    for (const NamespaceDeclarations* scope : {&own, &ofRoot})
    {
        const auto bound = scope->find(name.declaration);
        if (bound != scope->end())
        {
            return bound->second;
        }
    }
    return {};
}

/// Replaces a prefix in an element and its descendants: in "name" attributes and in values of type QName.
void ChangePrefix(IXMLDOMElement* element, const std::wstring& from, const std::wstring& to)
{
    const std::wstring path = L"descendant-or-self::*/@name | descendant::*[not(*) and "
                              L"@*[local-name() = 'type' and substring-after(., ':') = 'QName']]";
    ComPtr<IXMLDOMNodeList> names;
    ThrowIfFailed(element->selectNodes(Bstr(path).Get(), names.Receive()));
    long count = 0;
    ThrowIfFailed(names->get_length(&count));
    for (long index = 0; index < count; ++index)
    {
        ComPtr<IXMLDOMNode> node;
        ThrowIfFailed(names->get_item(index, node.Receive()));
        Bstr text;
        ThrowIfFailed(node->get_text(text.Receive()));
        if (text.View().starts_with(from))
        {
            ThrowIfFailed(node->put_text(Bstr(to + std::wstring(text.View().substr(from.size()))).Get()));
        }
    }
}

std::wstring PrefixOf(const QualifiedName& name)
{
    return name.declaration.substr(name.declaration.find(L':') + 1) + L':';
}

/// Finds the children of the base's root that match one of `wanted`, children of the target's root, but use
/// another prefix for the same namespace. Such a child is removed from `wanted`, as the base has it. If the
/// base's root binds the target's prefix to another namespace, the base's element is changed to use the
/// target's prefix, which it declares itself, and stays in `wanted`, to be completed like any match.
void MatchRenamed(IXMLDOMNode* baseRoot,
                  const NamespaceDeclarations& ofBase,
                  Elements& wanted,
                  const NamespaceDeclarations& ofTarget,
                  const NamespaceDeclarations& conflicting)
{
    std::map<std::wstring, ComPtr<IXMLDOMNode>> byLocalName;
    for (const ComPtr<IXMLDOMNode>& element : wanted)
    {
        byLocalName.emplace(NameOf(element.Get()).local, element);
    }
    for (const ComPtr<IXMLDOMNode>& present : ChildElementsOf(baseRoot))
    {
        const QualifiedName name = NameOf(present.Get());
        const auto twin = byLocalName.find(name.local);
        if (twin == byLocalName.end())
        {
            continue;
        }
        const QualifiedName wantedName = NameOf(twin->second.Get());
        const std::wstring uri = NamespaceOf(wantedName, twin->second.Get(), ofTarget);
        if (name.declaration == wantedName.declaration || uri.empty() ||
            NamespaceOf(name, present.Get(), ofBase) != uri)
        {
            continue;
        }
        if (!conflicting.contains(wantedName.declaration))
        {
            std::erase_if(wanted,
                          [&](const ComPtr<IXMLDOMNode>& each) { return each.Get() == twin->second.Get(); });
            continue;
        }
        const ComPtr<IXMLDOMElement> renamed = CloneWith({{wantedName.declaration, uri}}, present.Get());
        ChangePrefix(renamed.Get(), PrefixOf(name), PrefixOf(wantedName));
        ComPtr<IXMLDOMNode> replaced;
        ThrowIfFailed(baseRoot->replaceChild(renamed.Get(), present.Get(), replaced.Receive()));
    }
}

/// Whether a Feature's Option has properties or parameters of its own.
bool IsComplete(const Elements& childrenOfFeature)
{
    return std::any_of(
        childrenOfFeature.begin(), childrenOfFeature.end(), [](const ComPtr<IXMLDOMNode>& child) {
            return HasLocalName(child.Get(), L"Option") && !ChildElementsOf(child.Get()).empty();
        });
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
        // Clones hold qualified names in attribute values, whose prefixes must be declared.
        NamespaceDeclarations ofBase = DeclarationsOf(baseRoot.Get());
        const NamespaceDeclarations ofTarget = DeclarationsOf(targetRoot.Get());
        const NamespaceDeclarations conflicting = AddMissing(baseRoot.Get(), ofBase, ofTarget);
        Elements wanted = ChildElementsOf(targetRoot.Get());
        MatchRenamed(baseRoot.Get(), ofBase, wanted, ofTarget, conflicting);
        Complete(baseRoot.Get(), wanted, conflicting);
    }
}

void XmlMarger::Complete(IXMLDOMNode* base,
                         const Nodes& wanted,
                         const NamespaceDeclarations& conflicting) const
{
    Elements unmatched = ChildElementsOf(base);
    const bool isFeature = HasLocalName(base, L"Feature");
    if (HoldsElement(unmatched, L"Value") || (isFeature && IsComplete(unmatched)))
    {
        return;
    }
    bool hasOption = HoldsElement(unmatched, L"Option");
    for (const ComPtr<IXMLDOMNode>& child : wanted)
    {
        const auto match =
            std::find_if(unmatched.begin(), unmatched.end(), [&](const ComPtr<IXMLDOMNode>& candidate) {
                return m_comparator.IsSameNode(candidate.Get(), child.Get());
            });
        if (match != unmatched.end())
        {
            const ComPtr<IXMLDOMNode> matched = *match;
            unmatched.erase(match);
            Complete(matched.Get(), ChildElementsOf(child.Get()), conflicting);
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
