#include "base/xml/attributewalk.h"

#include "base/logging/errors.h"
#include "base/utility/bstr.h"
#include "base/utility/comptr.h"

namespace base::xml
{
using exception::ThrowIfFailed;
using utility::Bstr;
using utility::ComPtr;

namespace
{
bool HasDefaultNamespace(IXMLDOMNode* element)
{
    ComPtr<IXMLDOMNode> found;
    ThrowIfFailed(element->selectSingleNode(Bstr(L"self::node()[namespace::*[local-name() = '']]").Get(),
                                            found.Receive()));
    return static_cast<bool>(found);
}
} // namespace

void VisitAttributes(IXMLDOMNode* element, const std::function<bool(IXMLDOMNode*)>& visit)
{
    // Works around faults of Wine 8, which PrintSchemaHandlerTest and XmlMargerTest guard. By name
    // declarations cannot be had, and nextNode leaves them out, so that the walk goes by index. Where there
    // are only declarations, the first has two indexes and the count is one short, so that the walk goes on
    // until there is nothing. And the declaration of a default namespace, of which there is one, has an
    // index, or two, but cannot be had.
    int withheld = 0;
    ComPtr<IXMLDOMNamedNodeMap> attributes;
    ThrowIfFailed(element->get_attributes(attributes.Receive()));
    for (long index = 0;; ++index)
    {
        ComPtr<IXMLDOMNode> attribute;
        const HRESULT hr = attributes->get_item(index, attribute.Receive());
        if (hr == E_OUTOFMEMORY && withheld < 2 && HasDefaultNamespace(element))
        {
            ++withheld;
        }
        else
        {
            ThrowIfFailed(hr);
            if (!attribute)
            {
                return;
            }
        }
        if (!visit(attribute.Get()))
        {
            return;
        }
    }
}
} // namespace base::xml
