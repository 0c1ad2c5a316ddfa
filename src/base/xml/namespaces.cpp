#include "base/xml/namespaces.h"

#include <algorithm>
#include <string_view>

#include "base/logging/errors.h"
#include "base/logging/log.h"
#include "base/utility/bstr.h"
#include "base/utility/variant.h"
#include "base/xml/attributewalk.h"

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
    VisitAttributes(element, [&](IXMLDOMNode* attribute) {
        if (attribute == nullptr)
        {
            return true;
        }
        Bstr name;
        ThrowIfFailed(attribute->get_nodeName(name.Receive()));
        if (name.View().starts_with(kDeclares))
        {
            Bstr uri;
            ThrowIfFailed(attribute->get_text(uri.Receive()));
            declarations.emplace(name.View(), uri.View());
        }
        return true;
    });
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
