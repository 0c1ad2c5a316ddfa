#include "base/xps/printschema/document/dom.h"

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

std::wstring NameAttributeOf(IXMLDOMNode* element)
{
    Bstr name;
    ReadAttribute(element, L"name", name);
    return std::wstring(name.View());
}

std::set<std::wstring> NamesOf(IXMLDOMNodeList* elements)
{
    std::set<std::wstring> names;
    const long count = CountOf(elements);
    for (long index = 0; index < count; ++index)
    {
        names.insert(NameAttributeOf(ItemOf(elements, index).Get()));
    }
    return names;
}

Bstr ReadTypedValue(IXMLDOMNode* element)
{
    Variant value;
    ThrowIfFailed(element->get_nodeTypedValue(value.Receive()));
    Variant text;
    // MinGW declares the source without const; it stays as it is.
    ThrowIfFailed(VariantChangeType(text.Receive(), const_cast<VARIANT*>(&value.Get()), 0, VT_BSTR));
    return Bstr(std::wstring_view(V_BSTR(&text.Get()), SysStringLen(V_BSTR(&text.Get()))));
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
    if (!node)
    {
        // Some lists are live: the document has lost a node since the list was counted.
        ThrowIfFailed(E_UNEXPECTED);
    }
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

void AppendChild(IXMLDOMNode* parent, IXMLDOMNode* child, exception::SourceLocation where)
{
    ComPtr<IXMLDOMNode> appended;
    ThrowIfFailed(parent->appendChild(child, appended.Receive()), where);
}
} // namespace base::xps::printschema
