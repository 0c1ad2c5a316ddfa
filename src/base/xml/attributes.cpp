#include "base/xml/attributes.h"

#include <algorithm>
#include <cwchar>
#include <string_view>
#include <utility>

#include "base/logging/errors.h"
#include "base/utility/bstr.h"

namespace base::xml
{
using exception::ThrowIfFailed;
using utility::Bstr;

namespace
{
/// What a reference stands for; empty for text that is none.
std::wstring Resolve(std::wstring_view reference)
{
    constexpr std::pair<std::wstring_view, wchar_t> entities[] = {
        {L"&amp;", L'&'}, {L"&lt;", L'<'}, {L"&gt;", L'>'}, {L"&quot;", L'"'}, {L"&apos;", L'\''}};
    for (const auto& [entity, character] : entities)
    {
        if (reference == entity)
        {
            return {character};
        }
    }
    const bool isHexadecimal = reference.starts_with(L"&#x");
    const std::wstring digits(reference.substr(reference.starts_with(L"&#") ? 2 + isHexadecimal : 0));
    const long character = std::wcstol(digits.c_str(), nullptr, isHexadecimal ? 16 : 10);
    if (character <= 0)
    {
        return {};
    }
    if (character <= 0xFFFF)
    {
        return {static_cast<wchar_t>(character)};
    }
    const long offset = character - 0x10000;
    return {static_cast<wchar_t>(0xD800 + offset / 0x400), static_cast<wchar_t>(0xDC00 + offset % 0x400)};
}

/// A value without its references. An ampersand that begins none stands for itself: the DOM of Wine does not
/// escape namespace names.
std::wstring Decode(std::wstring_view written)
{
    constexpr std::size_t longestReference = std::wstring_view(L"&#x10FFFF;").size();
    std::wstring value;
    while (!written.empty())
    {
        const std::wstring_view window = written.substr(0, longestReference);
        const std::size_t end = written.front() == L'&' ? window.find(L';') : window.npos;
        const std::wstring character = end == window.npos ? L"" : Resolve(window.substr(0, end + 1));
        value += character.empty() ? std::wstring(1, written.front()) : character;
        written.remove_prefix(character.empty() ? 1 : end + 1);
    }
    return value;
}
} // namespace

// By the element's text, since its attribute map lacks namespace declarations: MSXML has none there by name,
// that of Wine 8 withholds a default namespace's and counts another twice, that of Wine 10 leaves the first
// out. Parsing ends with the start tag. The text is the DOM's, and so well-formed.
std::vector<Attribute> ReadAttributes(IXMLDOMNode* element)
{
    constexpr std::wstring_view blanks = L" \t\r\n";
    Bstr text;
    ThrowIfFailed(element->get_xml(text.Receive()));
    std::wstring_view rest = text.View();
    rest.remove_prefix(std::min(rest.find_first_of(L" \t\r\n/>"), rest.size()));
    std::vector<Attribute> attributes;
    for (;;)
    {
        rest.remove_prefix(std::min(rest.find_first_not_of(blanks), rest.size()));
        const std::size_t equals = rest.find_first_of(L"=/>");
        if (equals == rest.npos || rest[equals] != L'=')
        {
            return attributes;
        }
        // A value ends at the quote that it began with.
        const std::size_t opening = equals + 1;
        const std::size_t closing = rest.find(rest[opening], opening + 1);
        attributes.push_back(
            {std::wstring(rest.substr(0, equals)), Decode(rest.substr(opening + 1, closing - opening - 1))});
        rest.remove_prefix(closing + 1);
    }
}
} // namespace base::xml
