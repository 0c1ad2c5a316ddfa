#pragma once

#include <set>
#include <string>

#include "base/logging/errors.h"
#include "base/utility/bstr.h"
#include "base/utility/comptr.h"
#include "platform/msxml6.h"

// Single steps on a DOM that throw HresultError where the DOM fails. An empty result means that there is
// nothing.
namespace base::xps::printschema
{
/// OLE automation's comparison: exact, and null equals empty.
bool AreEqual(const utility::Bstr& left, const utility::Bstr& right);

/// The value of a node's attribute; false, and nothing read, for a node without attributes or without this
/// one.
bool ReadAttribute(IXMLDOMNode* node, const wchar_t* name, utility::Bstr& value);

/// An element's "name" attribute; empty without one.
std::wstring NameAttributeOf(IXMLDOMNode* element);
std::set<std::wstring> NamesOf(IXMLDOMNodeList* elements);

/// The text of an element, those of its descendants joined.
utility::Bstr ReadTypedValue(IXMLDOMNode* element);

long CountOf(IXMLDOMNodeList* nodes);
utility::ComPtr<IXMLDOMNode> ItemOf(IXMLDOMNodeList* nodes, long index);

/// The first node whose "name" attribute has this value.
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
