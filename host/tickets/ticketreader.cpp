#include "host/tickets/ticketdocument.h"

#include <algorithm>
#include <string>
#include <utility>

#include "host/xml/reader.h"

namespace host::tickets
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

bool HasType(const Node& value, const ExpandedName& type)
{
    return std::any_of(value.attributes.begin(), value.attributes.end(), [&](const Attribute& each) {
        return each.name == TypeAttribute() && each.value == Content(type);
    });
}

/// Every element of a print ticket and of print capabilities has a name but for these.
void RequireName(const Node& element)
{
    const bool mayBeNameless = element.kind == Kind::PrintTicket || element.kind == Kind::PrintCapabilities ||
                               element.kind == Kind::Option || element.kind == Kind::Value;
    if (!mayBeNameless && element.name.local.empty())
    {
        throw xml::MarkupError("a " + std::string(NameOf(element.kind)) + " has no name");
    }
}

void RequireVersion(Node& root)
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
        throw xml::MarkupError("the version is not 1");
    }
}

/// Builds a document from what a reader finds.
class TicketListener final : public xml::Listener
{
public:
    explicit TicketListener(Kind root) : m_rootKind(root) {}

    bool WantsText() const override { return true; }

    void OnStart(xml::Element element) override
    {
        m_scope.Enter(element);
        const ExpandedName name{element.namespaceUri, element.localName};
        if (m_leftOut > 0 || !IsWanted(name))
        {
            ++m_leftOut;
            return;
        }
        if (m_open.size() >= kDeepestElement)
        {
            throw xml::MarkupError("the elements are nested too deeply");
        }
        Node node{*FindKind(name.local)};
        for (const xml::Attribute& attribute : element.attributes)
        {
            TakeAttribute(node, attribute);
        }
        RequireName(node);
        if (m_open.empty())
        {
            RequireVersion(node);
            m_document.prefixes = std::move(element.prefixes);
        }
        m_open.push_back(std::move(node));
    }

    void OnEnd() override
    {
        m_leftOut > 0 ? void(--m_leftOut) : CloseNode();
        m_scope.Leave();
    }

    void OnText(const std::string& text) override
    {
        if (m_leftOut == 0 && !m_open.empty() && m_open.back().kind == Kind::Value)
        {
            std::get<std::string>(m_open.back().content) += text;
        }
    }

    Document Take() { return std::move(m_document); }

private:
    void CloseNode()
    {
        Node element = std::move(m_open.back());
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

    bool IsWanted(const ExpandedName& name) const
    {
        const std::optional<Kind> kind =
            name.namespaceUri == kFrameworkNamespace ? FindKind(name.local) : std::nullopt;
        if (!m_open.empty())
        {
            return kind && MayHold(m_open.back().kind, *kind);
        }
        if (kind != m_rootKind)
        {
            throw xml::MarkupError("the root is not the Print Schema's " + std::string(NameOf(m_rootKind)));
        }
        return true;
    }

    void TakeAttribute(Node& element, const xml::Attribute& attribute) const
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

    std::optional<ExpandedName> Resolve(std::string_view lexicalName) const
    {
        lexicalName.remove_prefix(std::min(lexicalName.find_first_not_of(kBlanks), lexicalName.size()));
        lexicalName = lexicalName.substr(0, lexicalName.find_last_not_of(kBlanks) + 1);
        const std::size_t colon = lexicalName.find(':');
        const bool hasPrefix = colon != std::string_view::npos;
        const std::string_view prefix = hasPrefix ? lexicalName.substr(0, colon) : std::string_view();
        const std::string_view local = hasPrefix ? lexicalName.substr(colon + 1) : lexicalName;
        // Without a prefix it takes the default namespace, as QNames in content do.
        const std::string* const namespaceUri = m_scope.Find(prefix);
        const bool isName = !local.empty() && local.find_first_of(": \t\r\n") == std::string_view::npos;
        if (!isName || namespaceUri == nullptr)
        {
            return std::nullopt;
        }
        return ExpandedName{*namespaceUri, std::string(local)};
    }

    ExpandedName ResolveOrThrow(std::string_view lexicalName) const
    {
        if (std::optional<ExpandedName> name = Resolve(lexicalName))
        {
            return *std::move(name);
        }
        throw xml::MarkupError("\"" + std::string(lexicalName) +
                               "\" is no name, or its prefix is not declared");
    }

    Kind m_rootKind;
    Document m_document;
    xml::PrefixScope m_scope;
    // From the root to the innermost open node.
    std::vector<Node> m_open;
    // How many elements are open that are left out, all of them inside the innermost open node.
    int m_leftOut = 0;
};
} // namespace

Document ReadDocument(std::string_view bytes, Kind root)
{
    TicketListener listener(root);
    xml::Reader reader;
    try
    {
        reader.Read(bytes, listener);
    }
    catch (const xml::MarkupError& fault)
    {
        // Markup that is not well-formed has its place in the text already.
        const bool isContent = reader.FailedAt().line > 0;
        throw xml::MarkupError((isContent ? xml::FormatPlace(reader.FailedAt()) + ": " : "") + fault.what());
    }
    return listener.Take();
}
} // namespace host::tickets
