#include "base/xps/printschema/printticketstructurecomparator.h"

#include "base/logging/errors.h"
#include "base/utility/bstr.h"
#include "base/utility/comptr.h"
#include "base/xps/printschema/document/dom.h"

namespace base::xps::printschema
{
using exception::ThrowIfFailed;
using utility::Bstr;
using utility::ComPtr;

bool PrintTicketStructureComparator::IsSameNode(IXMLDOMNode* first, IXMLDOMNode* second) const
{
    Bstr firstName;
    Bstr secondName;
    ThrowIfFailed(first->get_nodeName(firstName.Receive()));
    ThrowIfFailed(second->get_nodeName(secondName.Receive()));
    if (!AreEqual(firstName, secondName))
    {
        return false;
    }
    ComPtr<IXMLDOMNamedNodeMap> firstAttributes;
    ComPtr<IXMLDOMNamedNodeMap> secondAttributes;
    ThrowIfFailed(first->get_attributes(firstAttributes.Receive()));
    ThrowIfFailed(second->get_attributes(secondAttributes.Receive()));
    if (!firstAttributes || !secondAttributes)
    {
        return !firstAttributes && !secondAttributes;
    }
    return IsSameNamedAttribute(firstAttributes.Get(), secondAttributes.Get(), L"name");
}

bool PrintTicketStructureComparator::IsSameNamedAttribute(IXMLDOMNamedNodeMap* first,
                                                          IXMLDOMNamedNodeMap* second,
                                                          const wchar_t* attributeName) const
{
    const Bstr name(attributeName);
    ComPtr<IXMLDOMNode> firstAttribute;
    ComPtr<IXMLDOMNode> secondAttribute;
    ThrowIfFailed(first->getNamedItem(name.Get(), firstAttribute.Receive()));
    ThrowIfFailed(second->getNamedItem(name.Get(), secondAttribute.Receive()));
    if (!firstAttribute || !secondAttribute)
    {
        return !firstAttribute && !secondAttribute;
    }
    Bstr firstValue;
    Bstr secondValue;
    ThrowIfFailed(firstAttribute->get_text(firstValue.Receive()));
    ThrowIfFailed(secondAttribute->get_text(secondValue.Receive()));
    return AreEqual(firstValue, secondValue);
}
} // namespace base::xps::printschema
