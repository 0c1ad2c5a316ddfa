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
/// The character of a reference such as "&amp;"; empty for other text.
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

/// Replaces the references in a value. An ampersand that begins no reference is kept: Wine's DOM does not
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

// Parses the element's markup, because its attribute map is not reliable for namespace declarations: MSXML
// finds none by name, that of Wine 8 lacks a default namespace and counts another declaration twice, that of
// Wine 10 lacks the first. Parsing ends with the start tag. The markup comes from the DOM, so it is
// well-formed.
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
        const std::size_t equals = std::min(rest.find_first_of(L"=/>"), rest.size());
        // A value ends at the quote that it began with.
        const std::wstring_view quoted = rest.substr(std::min(equals + 1, rest.size()));
        const std::size_t closing = quoted.empty() ? quoted.npos : quoted.find(quoted.front(), 1);
        if (equals == rest.size() || rest[equals] != L'=' || closing == quoted.npos)
        {
            return attributes;
        }
        attributes.push_back({std::wstring(rest.substr(0, equals)), Decode(quoted.substr(1, closing - 1))});
        rest = quoted.substr(closing + 1);
    }
}
} // namespace base::xml
