#include "base/xml/attributes.h"

#include <algorithm>
#include <cwchar>
#include <string_view>
#include <utility>

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
/// The start tag as MSXML writes it, which is well-formed.
Bstr WriteStartTag(IXMLDOMNode* element)
{
    ComPtr<IXMLDOMNode> withoutContent;
    ThrowIfFailed(element->cloneNode(VARIANT_FALSE, withoutContent.Receive()));
    Bstr text;
    ThrowIfFailed(withoutContent->get_xml(text.Receive()));
    return text;
}

/// A value without its references. MSXML writes numbers for blanks only.
std::wstring Decode(std::wstring_view written)
{
    constexpr std::pair<std::wstring_view, wchar_t> entities[] = {
        {L"&amp;", L'&'}, {L"&lt;", L'<'}, {L"&gt;", L'>'}, {L"&quot;", L'"'}, {L"&apos;", L'\''}};
    std::wstring value;
    while (!written.empty())
    {
        wchar_t next = written.front();
        std::size_t length = 1;
        if (written.starts_with(L"&#"))
        {
            const bool isHexadecimal = written.starts_with(L"&#x");
            const std::wstring digits(written.substr(isHexadecimal ? 3 : 2, 8));
            next = static_cast<wchar_t>(std::wcstol(digits.c_str(), nullptr, isHexadecimal ? 16 : 10));
            length = written.find(L';') + 1;
        }
        for (const auto& [entity, character] : entities)
        {
            if (written.starts_with(entity))
            {
                next = character;
                length = entity.size();
            }
        }
        value += next;
        written.remove_prefix(length);
    }
    return value;
}
} // namespace

// By the start tag's text, since the attribute map of an element has no namespace declarations, or the wrong
// ones: that of MSXML in Wine 8 counts one twice and withholds that of a default namespace, that in Wine 10
// leaves the first out.
std::vector<Attribute> ReadAttributes(IXMLDOMNode* element)
{
    constexpr std::wstring_view blanks = L" \t\r\n";
    const Bstr startTag = WriteStartTag(element);
    std::wstring_view rest = startTag.View();
    std::vector<Attribute> attributes;
    for (;;)
    {
        // Behind the element's own name, or a value.
        const std::size_t name = rest.find_first_not_of(blanks, rest.find_first_of(blanks));
        const std::size_t equals = rest.find(L'=', name);
        if (name == rest.npos || equals == rest.npos)
        {
            return attributes;
        }
        // A value ends at the quote that it began with.
        const std::size_t opening = equals + 1;
        const std::size_t closing = rest.find(rest[opening], opening + 1);
        attributes.push_back({std::wstring(rest.substr(name, equals - name)),
                              Decode(rest.substr(opening + 1, closing - opening - 1))});
        rest.remove_prefix(closing + 1);
    }
}
} // namespace base::xml
