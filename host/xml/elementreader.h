#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace host::xml
{
struct Attribute
{
    std::string namespaceUri;
    std::string localName;
    std::string value;
};

/// A start tag. Names and values are UTF-8.
struct Element
{
    std::string namespaceUri;
    std::string localName;
    std::vector<Attribute> attributes;
    /// 0 for the root.
    int depth;

    /// The value of an attribute without namespace; null when the element does not have it.
    const std::string* Find(std::string_view attributeName) const;
};

/// Reads markup as it stands in a part and hands over each start tag in document order. An exception of
/// `onElement` ends the reading and reaches the caller. Throws MarkupError for markup that is not
/// well-formed or is in no encoding of a package. COM must be initialised on the thread.
void ReadElements(std::string_view markup, const std::function<void(const Element&)>& onElement);

/// Why markup is not well-formed, with the line; empty when it is.
std::string FindMarkupFault(std::string_view markup);
} // namespace host::xml
