#include "ticketservice/treebuilder.h"

#include <algorithm>
#include <utility>

namespace host::ticketservice
{
namespace
{
constexpr std::size_t kDeepestElement = 100;
constexpr std::string_view kBlanks = " \t\r\n";

ExpandedName Unqualified(std::string_view local)
{
    return {{}, std::string(local)};
}

const ExpandedName& TypeAttribute()
{
    static const ExpandedName name = {std::string(kSchemaInstanceNamespace), "type"};
    return name;
}

bool HasType(const Element& value, const ExpandedName& type)
{
    return std::any_of(value.attributes.begin(), value.attributes.end(), [&](const Attribute& each) {
        return each.name == TypeAttribute() && each.value == Content(type);
    });
}

/// Every element of a print ticket and of print capabilities has a name but for these.
void RequireName(const Element& element)
{
    const bool mayBeNameless = element.kind == Kind::PrintTicket || element.kind == Kind::PrintCapabilities ||
                               element.kind == Kind::Option || element.kind == Kind::Value;
    if (!mayBeNameless && element.name.local.empty())
    {
        throw FormatError("a " + std::string(NameOf(element.kind)) + " has no name");
    }
}

void RequireVersion(Element& root)
{
    const Content first = std::string("1");
    const auto version =
        std::find_if(root.attributes.begin(), root.attributes.end(), [](const Attribute& each) {
            return each.name == Unqualified("version");
        });
    if (version == root.attributes.end())
    {
        root.attributes.insert(root.attributes.begin(), {Unqualified("version"), first});
    }
    else if (version->value != first)
    {
        throw FormatError("the version is not 1");
    }
}
} // namespace

void TreeBuilder::StartPrefix(std::string prefix, std::string namespaceUri)
{
    if (m_open.empty())
    {
        m_document.prefixes.push_back({prefix, namespaceUri});
    }
    m_bindings[std::move(prefix)].push_back(std::move(namespaceUri));
}

void TreeBuilder::EndPrefix(std::string_view prefix)
{
    const auto bound = m_bindings.find(prefix);
    if (bound == m_bindings.end())
    {
        return;
    }
    bound->second.pop_back();
    if (bound->second.empty())
    {
        m_bindings.erase(bound);
    }
}

void TreeBuilder::StartElement(const ExpandedName& name, const std::vector<xml::Attribute>& attributes)
{
    if (m_leftOut > 0 || !IsWanted(name))
    {
        ++m_leftOut;
        return;
    }
    if (m_open.size() >= kDeepestElement)
    {
        throw FormatError("the elements are nested too deeply");
    }
    Element element{*FindKind(name.local)};
    for (const xml::Attribute& attribute : attributes)
    {
        TakeAttribute(element, attribute);
    }
    RequireName(element);
    if (m_open.empty())
    {
        RequireVersion(element);
    }
    m_open.push_back(std::move(element));
}

void TreeBuilder::EndElement()
{
    if (m_leftOut > 0)
    {
        --m_leftOut;
        return;
    }
    Element element = std::move(m_open.back());
    m_open.pop_back();
    if (HasType(element, {std::string(kSchemaNamespace), "QName"}))
    {
        element.content = ResolveOrThrow(std::get<std::string>(element.content));
    }
    if (m_open.empty())
    {
        m_document.root = std::move(element);
    }
    else
    {
        m_open.back().children.push_back(std::move(element));
    }
}

void TreeBuilder::AddText(std::string_view text)
{
    if (m_leftOut == 0 && !m_open.empty() && m_open.back().kind == Kind::Value)
    {
        std::get<std::string>(m_open.back().content) += text;
    }
}

Document TreeBuilder::Take()
{
    return std::move(m_document);
}

bool TreeBuilder::IsWanted(const ExpandedName& name) const
{
    const std::optional<Kind> kind =
        name.namespaceUri == kFrameworkNamespace ? FindKind(name.local) : std::nullopt;
    if (!m_open.empty())
    {
        return kind && MayHold(m_open.back().kind, *kind);
    }
    if (kind != m_rootKind)
    {
        throw FormatError("the root is not the Print Schema's " + std::string(NameOf(m_rootKind)));
    }
    return true;
}

void TreeBuilder::TakeAttribute(Element& element, const xml::Attribute& attribute) const
{
    const ExpandedName name{attribute.namespaceUri, attribute.localName};
    if (name == Unqualified("name"))
    {
        element.name = ResolveOrThrow(attribute.value);
        return;
    }
    // Types and constraints are QNames too, but carelessly written ones are common and nothing depends on
    // them.
    const bool isQname = name == TypeAttribute() || name == Unqualified("constrained");
    const std::optional<ExpandedName> qname = isQname ? Resolve(attribute.value) : std::nullopt;
    element.attributes.push_back({name, qname ? Content(*qname) : Content(attribute.value)});
}

std::optional<ExpandedName> TreeBuilder::Resolve(std::string_view lexicalName) const
{
    lexicalName.remove_prefix(std::min(lexicalName.find_first_not_of(kBlanks), lexicalName.size()));
    lexicalName = lexicalName.substr(0, lexicalName.find_last_not_of(kBlanks) + 1);
    const std::size_t colon = lexicalName.find(':');
    const bool hasPrefix = colon != std::string_view::npos;
    const std::string_view prefix = hasPrefix ? lexicalName.substr(0, colon) : std::string_view();
    const std::string_view local = hasPrefix ? lexicalName.substr(colon + 1) : lexicalName;
    // Without a prefix it takes the default namespace, as QNames in content do.
    const auto bound = m_bindings.find(prefix);
    const bool isName = !local.empty() && local.find_first_of(": \t\r\n") == std::string_view::npos;
    if (!isName || bound == m_bindings.end())
    {
        return std::nullopt;
    }
    return ExpandedName{bound->second.back(), std::string(local)};
}

ExpandedName TreeBuilder::ResolveOrThrow(std::string_view lexicalName) const
{
    if (std::optional<ExpandedName> name = Resolve(lexicalName))
    {
        return *std::move(name);
    }
    throw FormatError("\"" + std::string(lexicalName) + "\" is no name, or its prefix is not declared");
}
} // namespace host::ticketservice
