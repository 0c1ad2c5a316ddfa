#include "base/xps/printschema/dom.h"

#include <string>
#include <string_view>

#include "base/logging/errors.h"
#include "base/utility/variant.h"

namespace base::xps::printschema
{
using exception::ThrowIfFailed;
using utility::Bstr;
using utility::ComPtr;
using utility::Variant;

namespace
{
Bstr ToText(const Variant& value)
{
    Variant text;
    // MinGW declares the source without const; it stays as it is.
    ThrowIfFailed(VariantChangeType(text.Receive(), const_cast<VARIANT*>(&value.Get()), 0, VT_BSTR));
    return Bstr(std::wstring_view(V_BSTR(&text.Get()), SysStringLen(V_BSTR(&text.Get()))));
}

// Whether an element has a default namespace, and this one unless `uri` is empty.
bool IsDefaultNamespace(IXMLDOMNode* element, std::wstring_view uri)
{
    std::wstring xpath = L"self::node()[namespace::*[local-name() = ''";
    if (!uri.empty())
    {
        xpath += L" and . = \"" + std::wstring(uri) + L"\"";
    }
    xpath += L"]]";
    ComPtr<IXMLDOMNode> found;
    ThrowIfFailed(element->selectSingleNode(Bstr(xpath).Get(), found.Receive()));
    return static_cast<bool>(found);
}
} // namespace

bool AreEqual(const Bstr& left, const Bstr& right)
{
    const HRESULT compared = left.Compare(right.Get());
    ThrowIfFailed(compared);
    return compared == static_cast<HRESULT>(VARCMP_EQ);
}

bool ReadAttribute(IXMLDOMNode* node, const wchar_t* name, Bstr& value)
{
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    ThrowIfFailed(node->get_attributes(attributes.Receive()));
    if (!attributes)
    {
        return false;
    }
    ComPtr<IXMLDOMNode> attribute;
    ThrowIfFailed(attributes->getNamedItem(Bstr(name).Get(), attribute.Receive()));
    if (!attribute)
    {
        return false;
    }
    ThrowIfFailed(attribute->get_text(value.Receive()));
    return true;
}

Bstr ReadTypedValue(IXMLDOMNode* element)
{
    Variant value;
    ThrowIfFailed(element->get_nodeTypedValue(value.Receive()));
    return ToText(value);
}

long CountOf(IXMLDOMNodeList* nodes)
{
    long count = 0;
    ThrowIfFailed(nodes->get_length(&count));
    return count;
}

ComPtr<IXMLDOMNode> ItemOf(IXMLDOMNodeList* nodes, long index)
{
    ComPtr<IXMLDOMNode> node;
    ThrowIfFailed(nodes->get_item(index, node.Receive()));
    return node;
}

ComPtr<IXMLDOMNode> FindNamed(IXMLDOMNodeList* nodes, const Bstr& name)
{
    const long count = CountOf(nodes);
    for (long index = 0; index < count; ++index)
    {
        ComPtr<IXMLDOMNode> node = ItemOf(nodes, index);
        Bstr nodeName;
        ReadAttribute(node.Get(), L"name", nodeName);
        if (AreEqual(nodeName, name))
        {
            return node;
        }
    }
    return {};
}

Bstr FindAttributeByValue(IXMLDOMNode* element, const Bstr& value)
{
    // Three faults of Wine 8 are gone round here, which PrintSchemaHandlerTest guards. nextNode leaves
    // namespace declarations out, so that the walk goes by index. Where there are only declarations, the
    // first has two indexes and the count is one short, so that the walk goes on until there is nothing. And
    // the declaration of a default namespace has an index but cannot be had.
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    ThrowIfFailed(element->get_attributes(attributes.Receive()));
    for (long index = 0;; ++index)
    {
        ComPtr<IXMLDOMNode> attribute;
        const HRESULT hr = attributes->get_item(index, attribute.Receive());
        if (hr == E_OUTOFMEMORY && IsDefaultNamespace(element, L""))
        {
            if (IsDefaultNamespace(element, value.View()))
            {
                return Bstr(L"xmlns");
            }
            continue;
        }
        ThrowIfFailed(hr);
        if (!attribute)
        {
            return {};
        }
        Variant attributeValue;
        ThrowIfFailed(attribute->get_nodeValue(attributeValue.Receive()));
        if (AreEqual(ToText(attributeValue), value))
        {
            Bstr name;
            ThrowIfFailed(attribute->get_nodeName(name.Receive()));
            return name;
        }
    }
}

void AppendChild(IXMLDOMNode* parent, IXMLDOMNode* child)
{
    ComPtr<IXMLDOMNode> appended;
    ThrowIfFailed(parent->appendChild(child, appended.Receive()));
}
} // namespace base::xps::printschema
