#include "base/xml/namespaces.h"

#include <algorithm>
#include <string_view>

#include "base/logging/errors.h"
#include "base/logging/log.h"
#include "base/utility/bstr.h"
#include "base/utility/variant.h"
#include "base/xml/attributes.h"

namespace base::xml
{
using exception::ThrowIfFailed;
using utility::Bstr;

namespace
{
constexpr std::wstring_view kDeclares = L"xmlns:";
}

NamespaceDeclarations DeclarationsOf(IXMLDOMElement* element)
{
    NamespaceDeclarations declarations;
    for (const auto& [name, value] : ReadAttributes(element))
    {
        if (name.starts_with(kDeclares))
        {
            declarations.emplace(name, value);
        }
    }
    return declarations;
}

void Declare(IXMLDOMElement* element, const std::wstring& name, const std::wstring& uri)
{
    ThrowIfFailed(element->setAttribute(Bstr(name).Get(), utility::Variant(Bstr(uri)).Get()));
}

std::wstring RequirePrefix(IXMLDOMElement* element,
                           NamespaceDeclarations& declarations,
                           const std::wstring& preferredPrefix,
                           const std::wstring& uri)
{
    const auto bindsUri = [&](const auto& declaration) { return declaration.second == uri; };
    const auto bound = std::find_if(declarations.begin(), declarations.end(), bindsUri);
    if (bound != declarations.end())
    {
        return bound->first.substr(kDeclares.size());
    }
    std::wstring prefix = preferredPrefix;
    for (int number = 1; declarations.contains(std::wstring(kDeclares) + prefix); ++number)
    {
        prefix = logging::FormatWString(L"ns%04d", number);
    }
    const std::wstring name = std::wstring(kDeclares) + prefix;
    Declare(element, name, uri);
    declarations.emplace(name, uri);
    return prefix;
}
} // namespace base::xml
