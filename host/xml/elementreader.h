#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/xml/saxreader.h"

namespace host::xml
{
/// A prefix of names and the namespace that it stands for; the empty one is that of plain names.
struct PrefixBinding
{
    std::string prefix;
    std::string namespaceUri;
};

/// A start tag. Names and values are UTF-8.
struct Element
{
    std::string namespaceUri;
    std::string localName;
    /// Those that declare no namespace.
    std::vector<Attribute> attributes;
    /// 0 for the root.
    int depth;
    /// What the tag itself declares.
    std::vector<PrefixBinding> prefixes;

    /// The value of an attribute without namespace; null when the element does not have it.
    const std::string* Find(std::string_view attributeName) const;
};

/// Reads markup as it stands in a part and hands over each start tag in document order. An exception of
/// `onElement` ends the reading and reaches the caller. Throws MarkupError for markup that is not
/// well-formed or is in no encoding of a package. COM must be initialised on the thread.
void ReadElements(std::string_view markup, const std::function<void(const Element&)>& onElement);

/// The same with the text between the tags: all character data between two tags, whether or not comments
/// stand in it, and the depth of the element that it belongs to.
void ReadMarkup(std::string_view markup,
                const std::function<void(const Element&)>& onElement,
                const std::function<void(const std::string& text, int depth)>& onText);

/// Why markup is not well-formed, with the line; empty when it is.
std::string FindMarkupFault(std::string_view markup);
} // namespace host::xml
