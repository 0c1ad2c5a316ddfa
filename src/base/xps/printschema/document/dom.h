#pragma once

#include <set>
#include <string>

#include "base/logging/errors.h"
#include "base/utility/bstr.h"
#include "base/utility/comptr.h"
#include "platform/msxml6.h"

// Single operations on a DOM. They throw HresultError if the DOM fails. An empty result means that nothing
// was found.
namespace base::xps::printschema
{
/// Compares as OLE automation does: exactly, and null equals empty.
bool AreEqual(const utility::Bstr& left, const utility::Bstr& right);

/// Reads an attribute of a node. Returns false if the node has no attributes or lacks this one.
bool ReadAttribute(IXMLDOMNode* node, const wchar_t* name, utility::Bstr& value);

/// The value of an element's "name" attribute; empty if it has none.
std::wstring NameAttributeOf(IXMLDOMNode* element);
std::set<std::wstring> NamesOf(IXMLDOMNodeList* elements);

/// The text of an element, including that of its descendants.
utility::Bstr ReadTypedValue(IXMLDOMNode* element);

long CountOf(IXMLDOMNodeList* nodes);
utility::ComPtr<IXMLDOMNode> ItemOf(IXMLDOMNodeList* nodes, long index);

/// The first node with this value of its "name" attribute.
utility::ComPtr<IXMLDOMNode> FindNamed(IXMLDOMNodeList* nodes, const utility::Bstr& name);

/// A failure is thrown with the source and line of the caller; so is that of AppendNew.
void AppendChild(IXMLDOMNode* parent,
                 IXMLDOMNode* child,
                 exception::SourceLocation where = exception::SourceLocation::Current());

/// Calls `create`, which fills an out-pointer with a new element, and appends that element to `parent`.
template <typename Create>
void AppendNew(IXMLDOMNode* parent,
               Create&& create,
               exception::SourceLocation where = exception::SourceLocation::Current())
{
    utility::ComPtr<IXMLDOMElement> element;
    exception::ThrowIfFailed(create(element.Receive()), where);
    AppendChild(parent, element.Get(), where);
}
} // namespace base::xps::printschema
