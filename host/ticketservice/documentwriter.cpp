#include "ticketservice/documentwriter.h"

#include <algorithm>

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
        : m_bindings{{"psf", std::string(kFrameworkNamespace)},
                     {"psk", std::string(kKeywordsNamespace)},
                     {"xsi", std::string(kSchemaInstanceNamespace)},
                     {"xsd", std::string(kSchemaNamespace)}}
    {
        for (const PrefixBinding& preferred : document.prefixes)
        {
            // The default namespace stays out of use, so that a name without prefix is in no namespace.
            const bool isUsable = !preferred.prefix.empty() && !preferred.namespaceUri.empty();
            if (isUsable && preferred.prefix != "xml" && !IsTaken(preferred.prefix))
            {
                m_bindings.push_back(preferred);
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
        return Find(name.namespaceUri)->prefix + ":" + name.local;
    }

    std::string Write(const Content& content, Place place) const
    {
        const ExpandedName* const name = std::get_if<ExpandedName>(&content);
        return Escape(name != nullptr ? Write(*name) : std::get<std::string>(content), place);
    }

private:
    bool IsTaken(std::string_view prefix) const
    {
        return std::any_of(m_bindings.begin(), m_bindings.end(), [&](const PrefixBinding& each) {
            return each.prefix == prefix;
        });
    }

    std::vector<PrefixBinding>::const_iterator Find(std::string_view namespaceUri) const
    {
        return std::find_if(m_bindings.begin(), m_bindings.end(), [&](const PrefixBinding& each) {
            return each.namespaceUri == namespaceUri;
        });
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
                             Find(name.namespaceUri) != m_bindings.end();
        if (isBound)
        {
            return;
        }
        int number = 0;
        std::string prefix;
        do
        {
            prefix = FormatString("ns%04d", number++);
        } while (IsTaken(prefix));
        m_bindings.push_back({prefix, name.namespaceUri});
    }

    std::vector<PrefixBinding> m_bindings;
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
