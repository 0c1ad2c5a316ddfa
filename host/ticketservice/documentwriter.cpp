#include "ticketservice/documentwriter.h"

#include <map>
#include <set>

#include "base/logging/log.h"

namespace host::ticketservice
{
namespace
{
using base::logging::FormatString;

enum class Place
{
    Text,
    Attribute
};

std::string Escape(std::string_view text, Place place)
{
    std::string escaped;
    for (const char each : text)
    {
        const bool isBrokenBlank = each == '\n' || each == '\t';
        if (each == '&')
        {
            escaped += "&amp;";
        }
        else if (each == '<')
        {
            escaped += "&lt;";
        }
        else if (each == '>')
        {
            escaped += "&gt;";
        }
        else if (each == '"' && place == Place::Attribute)
        {
            escaped += "&quot;";
        }
        else if (each == '\r' || (isBrokenBlank && place == Place::Attribute))
        {
            // As characters a parser would turn these into others.
            escaped += FormatString("&#%d;", each);
        }
        else
        {
            escaped += each;
        }
    }
    return escaped;
}

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
        for (const PrefixBinding& preferred : document.prefixes)
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

    const std::vector<PrefixBinding>& Get() const { return m_bindings; }

    std::string Write(const ExpandedName& name) const
    {
        if (name.namespaceUri.empty())
        {
            return name.local;
        }
        if (name.namespaceUri == kXmlNamespace)
        {
            return "xml:" + name.local;
        }
        return m_byNamespace.at(name.namespaceUri) + ":" + name.local;
    }

    std::string Write(const Content& content, Place place) const
    {
        const ExpandedName* const name = std::get_if<ExpandedName>(&content);
        return Escape(name != nullptr ? Write(*name) : std::get<std::string>(content), place);
    }

private:
    void Bind(const PrefixBinding& binding)
    {
        m_bindings.push_back(binding);
        m_taken.insert(binding.prefix);
        // The first prefix of a namespace is the one that its names are written with.
        m_byNamespace.emplace(binding.namespaceUri, binding.prefix);
    }

    void CoverNamesIn(const Element& element)
    {
        Cover(element.name);
        CoverContent(element.content);
        for (const Attribute& attribute : element.attributes)
        {
            Cover(attribute.name);
            CoverContent(attribute.value);
        }
        for (const Element& child : element.children)
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
        const bool isBound = name.namespaceUri.empty() || name.namespaceUri == kXmlNamespace ||
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
    std::vector<PrefixBinding> m_bindings;
    std::set<std::string> m_taken;
    std::map<std::string, std::string> m_byNamespace;
    int m_nextNumber = 0;
};

void WriteAttribute(std::string& xml, const std::string& name, const std::string& escapedValue)
{
    xml.append(" ").append(name).append("=\"").append(escapedValue).append("\"");
}

void WriteElement(std::string& xml, const Element& element, const Prefixes& prefixes, bool isRoot)
{
    const std::string tag = prefixes.Write(Framework(NameOf(element.kind)));
    xml.append("<").append(tag);
    if (isRoot)
    {
        for (const PrefixBinding& binding : prefixes.Get())
        {
            WriteAttribute(xml, "xmlns:" + binding.prefix, Escape(binding.namespaceUri, Place::Attribute));
        }
    }
    if (!element.name.local.empty())
    {
        WriteAttribute(xml, "name", Escape(prefixes.Write(element.name), Place::Attribute));
    }
    for (const Attribute& attribute : element.attributes)
    {
        WriteAttribute(
            xml, prefixes.Write(attribute.name), prefixes.Write(attribute.value, Place::Attribute));
    }
    xml.append(">").append(prefixes.Write(element.content, Place::Text));
    for (const Element& child : element.children)
    {
        WriteElement(xml, child, prefixes, false);
    }
    xml.append("</").append(tag).append(">");
}
} // namespace

std::string WriteDocument(const Document& document)
{
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
    WriteElement(xml, document.root, Prefixes(document), true);
    return xml;
}
} // namespace host::ticketservice
