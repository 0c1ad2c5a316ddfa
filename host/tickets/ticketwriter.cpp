#include "host/tickets/ticketdocument.h"

#include <map>
#include <set>

#include "base/logging/log.h"
#include "host/xml/reader.h"
#include "host/xml/writer.h"

namespace host::tickets
{
namespace
{
using base::logging::FormatString;

/// The prefixes of one document.
class Prefixes
{
public:
    explicit Prefixes(const Document& document)
    {
        Bind({"psf", std::string(kFrameworkNamespace)});
        Bind({"psk", std::string(kKeywordsNamespace)});
        Bind({"xsi", std::string(kSchemaInstanceNamespace)});
        Bind({"xsd", std::string(kSchemaNamespace)});
        for (const xml::PrefixBinding& preferred : document.prefixes)
        {
            // The default namespace stays out of use, so that a name without prefix is in no namespace.
            const bool isUsable = !preferred.prefix.empty() && !preferred.namespaceUri.empty();
            if (isUsable && preferred.prefix != "xml" && !m_taken.contains(preferred.prefix))
            {
                Bind(preferred);
            }
        }
        CoverNamesIn(document.root);
    }

    const std::vector<xml::PrefixBinding>& Get() const { return m_bindings; }

    std::string Write(const ExpandedName& name) const
    {
        if (name.namespaceUri.empty())
        {
            return name.local;
        }
        if (name.namespaceUri == xml::kXmlNamespace)
        {
            return "xml:" + name.local;
        }
        return m_byNamespace.at(name.namespaceUri) + ":" + name.local;
    }

    std::string Write(const Content& content) const
    {
        const ExpandedName* const name = std::get_if<ExpandedName>(&content);
        return name != nullptr ? Write(*name) : std::get<std::string>(content);
    }

private:
    void Bind(const xml::PrefixBinding& binding)
    {
        m_bindings.push_back(binding);
        m_taken.insert(binding.prefix);
        // The first prefix of a namespace is the one that its names are written with.
        m_byNamespace.emplace(binding.namespaceUri, binding.prefix);
    }

    void CoverNamesIn(const Node& element)
    {
        Cover(element.name);
        CoverContent(element.content);
        for (const Attribute& attribute : element.attributes)
        {
            Cover(attribute.name);
            CoverContent(attribute.value);
        }
        for (const Node& child : element.children)
        {
            CoverNamesIn(child);
        }
    }

    void CoverContent(const Content& content)
    {
        if (const ExpandedName* const name = std::get_if<ExpandedName>(&content))
        {
            Cover(*name);
        }
    }

    void Cover(const ExpandedName& name)
    {
        const bool isBound = name.namespaceUri.empty() || name.namespaceUri == xml::kXmlNamespace ||
                             m_byNamespace.contains(name.namespaceUri);
        if (isBound)
        {
            return;
        }
        std::string prefix;
        do
        {
            prefix = FormatString("ns%04d", m_nextNumber++);
        } while (m_taken.contains(prefix));
        Bind({prefix, name.namespaceUri});
    }

    // In the order of their declarations.
    std::vector<xml::PrefixBinding> m_bindings;
    std::set<std::string> m_taken;
    std::map<std::string, std::string> m_byNamespace;
    int m_nextNumber = 0;
};

void WriteNode(xml::Writer& writer, const Node& node, const Prefixes& prefixes, bool isRoot)
{
    writer.Start(prefixes.Write(Framework(NameOf(node.kind))));
    if (isRoot)
    {
        for (const xml::PrefixBinding& binding : prefixes.Get())
        {
            writer.Attribute("xmlns:" + binding.prefix, binding.namespaceUri);
        }
    }
    if (!node.name.local.empty())
    {
        writer.Attribute("name", prefixes.Write(node.name));
    }
    for (const Attribute& attribute : node.attributes)
    {
        writer.Attribute(prefixes.Write(attribute.name), prefixes.Write(attribute.value));
    }
    writer.Text(prefixes.Write(node.content));
    for (const Node& child : node.children)
    {
        WriteNode(writer, child, prefixes, false);
    }
    writer.End();
}
} // namespace

std::string WriteDocument(const Document& document)
{
    xml::Writer writer;
    WriteNode(writer, document.root, Prefixes(document), true);
    return writer.Take();
}
} // namespace host::tickets
